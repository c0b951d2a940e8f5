#include "store_Field.h"

#include <sqlite3.h>

#include <limits>
#include <sstream>
#include <stdexcept>

#include "store_Database.h"
#include "store_Statement.h"

namespace {

// Component labels are joined by newlines, which no label holds; invariants by commas.
std::string JoinLabels(const std::vector<std::string>& labels) {
  std::string text;
  for (std::size_t i = 0; i < labels.size(); ++i) text += (i ? "\n" : "") + labels[i];
  return text;
}

std::vector<std::string> SplitLabels(const std::string& text) {
  std::vector<std::string> labels;
  if (text.empty()) return labels;
  std::istringstream in(text);
  for (std::string label; std::getline(in, label);) labels.push_back(label);
  if (text.back() == '\n') labels.emplace_back();
  return labels;
}

std::string JoinInts(const std::vector<int>& values) {
  std::string text;
  for (std::size_t i = 0; i < values.size(); ++i)
    text += (i ? "," : "") + std::to_string(values[i]);
  return text;
}

// Numbers joined by commas; false for anything else (a damaged text).
bool SplitInts(const std::string& text, std::vector<int>& values) {
  std::istringstream in(text);
  for (std::string item; std::getline(in, item, ',');) {
    std::size_t used = 0;
    try {
      values.push_back(std::stoi(item, &used));
    } catch (const std::logic_error&) {
      return false;
    }
    if (used != item.size()) return false;
  }
  return true;
}

}  // namespace

std::vector<store_FieldRecord> store_Fields(store_Database& db, std::int64_t stepId,
                                            int frameIndex) {
  std::vector<store_FieldRecord> fields;
  store_Statement q = db.Sql(
      "SELECT id, field_index, name, description, type, component_labels, invariants "
      "FROM field_output WHERE step_id = ?1 AND frame_index = ?2 ORDER BY field_index");
  q.Bind(1, stepId).Bind(2, frameIndex);
  while (q.Step()) {
    q.RequireNotNull("field_output", {"id", "field_index", "name", "description", "type",
                                      "component_labels", "invariants"});
    store_FieldRecord r;
    r.id = q.Int64(0);
    r.index = q.Int(1);
    r.name = q.Text(2);
    r.description = q.Text(3);
    r.type = q.Int(4);
    r.componentLabels = SplitLabels(q.Text(5));
    if (!SplitInts(q.Text(6), r.invariants))
      store_ThrowBadValue(db, "field_output", "invariants", "'" + q.Text(6) + "'");
    // Fields are numbered from 0 without gaps: a gap is a field lost.
    if (r.index != static_cast<int>(fields.size()))
      store_ThrowBadValue(db, "field_output", "field_index", std::to_string(r.index));
    fields.push_back(std::move(r));
  }
  return fields;
}

void store_AddField(store_Database& db, std::int64_t stepId, int frameIndex,
                    store_FieldRecord& record) {
  db.Sql(
        "INSERT INTO field_output(step_id, frame_index, field_index, name, description, type, "
        "component_labels, invariants) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8)")
      .Bind(1, stepId)
      .Bind(2, frameIndex)
      .Bind(3, record.index)
      .Bind(4, record.name)
      .Bind(5, record.description)
      .Bind(6, record.type)
      .Bind(7, JoinLabels(record.componentLabels))
      .Bind(8, JoinInts(record.invariants))
      .Run();
  record.id = sqlite3_last_insert_rowid(db.Connection());
}

std::vector<store_FieldBlockRecord> store_FieldBlocks(store_Database& db, std::int64_t fieldId) {
  std::vector<store_FieldBlockRecord> blocks;
  store_Statement q = db.Sql(
      "SELECT position, instance, element_type, section_category, section_point, "
      "section_point_description, set_name, count, per_label, width, orientation_width, labels, "
      "data, conjugate, orientation, block FROM field_block WHERE field_id = ?1 ORDER BY block");
  q.Bind(1, fieldId);
  while (q.Step()) {
    q.RequireNotNull("field_block",
                     {"position", "instance", "element_type", "section_category", "section_point",
                      "section_point_description", "set_name", "count", "per_label", "width",
                      "orientation_width", "labels", "data"});
    // Blocks are numbered from 0 without gaps: a gap is a block lost.
    if (q.Int64(15) != static_cast<std::int64_t>(blocks.size()))
      store_ThrowBadValue(db, "field_block", "block", std::to_string(q.Int64(15)));
    // Widths the reader cannot use are refused by it, with their own messages; here only what
    // would make its sizes overflow.
    if (q.Int64(7) < 0 || q.Int64(8) < 1 || q.Int64(9) < 1 || q.Int64(10) < 0 ||
        q.Int64(7) > std::numeric_limits<int>::max() ||
        q.Int64(8) > std::numeric_limits<int>::max() ||
        q.Int64(9) > std::numeric_limits<int>::max() ||
        q.Int64(10) > std::numeric_limits<int>::max())
      store_ThrowBadValue(db, "field_block", "count, per_label, width or orientation_width",
                          std::to_string(q.Int64(7)) + ", " + std::to_string(q.Int64(8)) + ", " +
                              std::to_string(q.Int64(9)) + ", " + std::to_string(q.Int64(10)));
    store_FieldBlockRecord b;
    b.position = q.Int(0);
    b.instance = q.Text(1);
    b.elementType = q.Text(2);
    b.sectionCategory = q.Text(3);
    b.sectionPoint = q.Int(4);
    b.sectionPointDescription = q.Text(5);
    b.setName = q.Text(6);
    b.count = q.Int(7);
    b.perLabel = q.Int(8);
    b.width = q.Int(9);
    b.orientationWidth = q.Int(10);
    b.labels = q.Int64(11);
    b.data = q.Int64(12);
    b.conjugate = q.Int64(13);  // NULL reads as 0
    b.orientation = q.Int64(14);
    blocks.push_back(std::move(b));
  }
  return blocks;
}

void store_AddFieldBlock(store_Database& db, std::int64_t fieldId,
                         const store_FieldBlockRecord& b) {
  int block = 0;
  {
    store_Statement q = db.Sql("SELECT COUNT(*) FROM field_block WHERE field_id = ?1");
    q.Bind(1, fieldId);
    if (q.Step()) block = q.Int(0);
  }
  store_Statement q = db.Sql(
      "INSERT INTO field_block(field_id, block, position, instance, element_type, "
      "section_category, section_point, section_point_description, set_name, count, per_label, "
      "width, orientation_width, labels, data, conjugate, orientation) "
      "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14, ?15, ?16, ?17)");
  q.Bind(1, fieldId)
      .Bind(2, block)
      .Bind(3, b.position)
      .Bind(4, b.instance)
      .Bind(5, b.elementType)
      .Bind(6, b.sectionCategory)
      .Bind(7, b.sectionPoint)
      .Bind(8, b.sectionPointDescription)
      .Bind(9, b.setName)
      .Bind(10, b.count)
      .Bind(11, b.perLabel)
      .Bind(12, b.width)
      .Bind(13, b.orientationWidth)
      .Bind(14, b.labels)
      .Bind(15, b.data);
  if (b.conjugate) q.Bind(16, b.conjugate);
  if (b.orientation) q.Bind(17, b.orientation);
  q.Run();
}

int store_StepFieldBlockCount(store_Database& db, std::int64_t stepId) {
  store_Statement q = db.Sql(
      "SELECT COUNT(*) FROM field_block JOIN field_output ON field_output.id = "
      "field_block.field_id "
      "WHERE field_output.step_id = ?1");
  q.Bind(1, stepId);
  return q.Step() ? q.Int(0) : 0;
}
