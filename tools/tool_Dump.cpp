#include "tool_Dump.h"

#include <charconv>
#include <cstring>
#include <vector>

#include "tool_Common.h"
#include "tool_Progress.h"

namespace {

// Rows are gathered in a buffer written out a megabyte at a time.
class CsvOut {
 public:
  explicit CsvOut(std::FILE* out) : m_out(out) { m_buffer.reserve(kFlushAt + 4096); }
  ~CsvOut() { Flush(); }
  void Text(const std::string& s) { m_buffer.append(s); }
  void Char(char c) { m_buffer.push_back(c); }
  void Int(int n) {
    char text[16];
    m_buffer.append(text, std::to_chars(text, text + sizeof text, n).ptr);
  }
  // The shortest text that reads back as the same float.
  void Float(float x) {
    char text[32];
    m_buffer.append(text, std::to_chars(text, text + sizeof text, x).ptr);
  }
  void EndRow() {
    m_buffer.push_back('\n');
    if (m_buffer.size() >= kFlushAt) Flush();
  }
  void Flush() {
    if (!m_buffer.empty() &&
        std::fwrite(m_buffer.data(), 1, m_buffer.size(), m_out) != m_buffer.size())
      throw tool_Error(std::string("cannot write the output: ") + std::strerror(errno));
    m_buffer.clear();
  }

 private:
  static constexpr std::size_t kFlushAt = 1 << 20;
  std::FILE* m_out;
  std::string m_buffer;
};

std::vector<std::string> PositionsOf(const odb_FieldOutput& field) {
  std::vector<std::string> names;
  const odb_SequenceFieldBulkData& blocks = field.bulkDataBlocks();
  for (int b = 0; b < blocks.size(); ++b) {
    const std::string p = tool_PositionName(blocks[b].position());
    bool known = false;
    for (const std::string& n : names) known = known || n == p;
    if (!known) names.push_back(p);
  }
  return names;
}

// The blocks the request covers; ELEMENT_NODAL and CENTROID values that the field does not
// hold are extrapolated from its integration points where the element types allow it.
odb_FieldOutput Selected(const odb_FieldOutput& field, const tool_DumpRequest& request,
                         odb_Enum::odb_ResultPositionEnum* position) {
  if (request.position.empty()) return field;
  if (!tool_ParsePosition(request.position, position))
    throw tool_Error("unknown position \"" + request.position +
                     "\"; the field's positions are: " + tool_Join(PositionsOf(field)));
  const odb_SequenceFieldBulkData& blocks = field.bulkDataBlocks();
  for (int b = 0; b < blocks.size(); ++b)
    if (blocks[b].position() == *position) return field;
  if (*position == odb_Enum::ELEMENT_NODAL || *position == odb_Enum::CENTROID) {
    odb_FieldOutput derived = field.getSubset(*position);
    if (!derived.bulkDataBlocks().isEmpty()) return derived;
  }
  throw tool_Error("field \"" + request.field + "\" has no values at " + request.position +
                   "; its positions are: " + tool_Join(PositionsOf(field)));
}

}  // namespace

void tool_Dump(const tool_DumpRequest& request, std::FILE* out) {
  odb_Odb& odb = tool_Open(request.path);
  const odb_Step step = tool_FindStep(odb, request.step);
  const odb_Frame frame = tool_FindFrame(step, request.frame);
  const odb_FieldOutput stored = tool_FindField(frame, request.field);
  if (!request.instance.empty()) tool_FindInstance(odb, request.instance);
  odb_Enum::odb_ResultPositionEnum position = odb_Enum::UNDEFINED_POSITION;
  const odb_FieldOutput field = Selected(stored, request, &position);
  const odb_SequenceFieldBulkData& blocks = field.bulkDataBlocks();

  CsvOut csv(out);
  csv.Text("instance,position,element,node,integration_point,section_point");
  const odb_SequenceString labels = field.componentLabels();
  if (labels.size() == 0) csv.Text("," + request.field);
  for (int c = 0; c < labels.size(); ++c) csv.Text("," + tool_Str(labels[c]));
  csv.EndRow();

  tool_Progress progress("dump", "block", blocks.size(), request.quiet);
  tool_Buffer<int> blockLabels;
  tool_Buffer<float> data;
  for (int b = 0; b < blocks.size(); ++b) {
    const odb_FieldBulkData& block = blocks[b];
    const odb_Instance& instance = block.instance();
    const std::string instanceName = tool_Str(instance.name());
    if ((!request.position.empty() && block.position() != position) ||
        (!request.instance.empty() && instanceName != request.instance)) {
      progress.done();
      continue;
    }
    const int perLabel = block.valuesPerElement(), width = block.width();
    block.readLabels(blockLabels.view(static_cast<std::size_t>(block.numberOfLabels())));
    block.readData(data.view(static_cast<std::size_t>(block.length()) * width));
    progress.addBytes((blockLabels.size() + data.size()) * 4);

    const odb_Enum::odb_ResultPositionEnum where = block.position();
    const std::string prefix = instanceName + "," + tool_PositionName(where) + ",";
    const int sectionPoint = block.sectionPoint().number();
    const float* row = data.data();
    for (std::size_t i = 0; i < blockLabels.size(); ++i) {
      // The connectivity gives the node of each element-nodal value.
      odb_Element element;
      if (where == odb_Enum::ELEMENT_NODAL) element = instance.getElementFromLabel(blockLabels[i]);
      for (int k = 0; k < perLabel; ++k, row += width) {
        csv.Text(prefix);
        if (where != odb_Enum::NODAL) csv.Int(blockLabels[i]);
        csv.Char(',');
        if (where == odb_Enum::NODAL) csv.Int(blockLabels[i]);
        if (where == odb_Enum::ELEMENT_NODAL && k < element.numberOfNodes())
          csv.Int(static_cast<int>(element.nodeLabels()[k]));
        csv.Char(',');
        if (where == odb_Enum::INTEGRATION_POINT) csv.Int(k + 1);
        csv.Char(',');
        if (sectionPoint > 0) csv.Int(sectionPoint);
        for (int c = 0; c < width; ++c) {
          csv.Char(',');
          csv.Float(row[c]);
        }
        csv.EndRow();
      }
    }
    progress.done();
  }
  csv.Flush();
  progress.finish();
  closeOdb(odb);
}
