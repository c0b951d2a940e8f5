#include "store_Section.h"

#include <cstring>
#include <map>

#include "store_Database.h"
#include "store_Statement.h"

namespace {

// Dimensions are stored as float64 values in little-endian byte order, whatever the byte order
// of the machine, so that a file reads the same everywhere.
std::vector<unsigned char> DimensionBytes(const std::vector<double>& dimensions) {
  std::vector<unsigned char> bytes;
  bytes.reserve(dimensions.size() * 8);
  for (double value : dimensions) {
    std::uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    for (int b = 0; b < 8; ++b) bytes.push_back(static_cast<unsigned char>(bits >> (8 * b)));
  }
  return bytes;
}

std::vector<double> DimensionsOf(const void* blob, int size) {
  const auto* bytes = static_cast<const unsigned char*>(blob);
  std::vector<double> dimensions;
  dimensions.reserve(size / 8);
  for (int at = 0; at + 8 <= size; at += 8) {
    std::uint64_t bits = 0;
    for (int b = 7; b >= 0; --b) bits = (bits << 8) | bytes[at + b];
    double value;
    std::memcpy(&value, &bits, sizeof value);
    dimensions.push_back(value);
  }
  return dimensions;
}

}  // namespace

std::vector<store_SectionCategoryRecord> store_SectionCategories(store_Database& db) {
  std::map<std::int64_t, store_SectionCategoryRecord> found;
  {
    store_Statement q = db.Sql("SELECT id, name, description FROM section_category");
    while (q.Step()) {
      q.RequireNotNull("section_category", {"id", "name", "description"});
      store_SectionCategoryRecord& record = found[q.Int64(0)];
      record.id = q.Int64(0);
      record.name = q.Text(1);
      record.description = q.Text(2);
    }
  }
  std::vector<store_SectionCategoryRecord> categories;
  if (found.empty()) return categories;
  // All points in one walk of the table's key order, which is by category, then by number.
  store_Statement q =
      db.Sql("SELECT category_id, number, description FROM section_point ORDER BY 1, 2");
  while (q.Step()) {
    q.RequireNotNull("section_point", {"category_id", "number", "description"});
    auto category = found.find(q.Int64(0));
    if (category != found.end()) category->second.points.push_back({q.Int(1), q.Text(2)});
  }
  categories.reserve(found.size());
  for (auto& entry : found) categories.push_back(std::move(entry.second));
  return categories;
}

std::int64_t store_AddSectionCategory(store_Database& db, const std::string& name,
                                      const std::string& description) {
  db.Sql("INSERT INTO section_category(name, description) VALUES (?1, ?2)")
      .Bind(1, name)
      .Bind(2, description)
      .Run();
  return sqlite3_last_insert_rowid(db.Connection());
}

void store_AddSectionPoint(store_Database& db, std::int64_t categoryId,
                           const store_SectionPointRecord& point) {
  db.Sql("INSERT INTO section_point(category_id, number, description) VALUES (?1, ?2, ?3)")
      .Bind(1, categoryId)
      .Bind(2, point.number)
      .Bind(3, point.description)
      .Run();
}

std::vector<store_SectionRecord> store_Sections(store_Database& db) {
  std::vector<store_SectionRecord> sections;
  store_Statement q = db.Sql(
      "SELECT name, kind, material, thickness, integration_points, profile, dimensions "
      "FROM section");
  while (q.Step()) {
    q.RequireNotNull("section", {"name", "kind", "material"});
    store_SectionRecord record;
    record.name = q.Text(0);
    record.kind = q.Int(1);
    record.material = q.Text(2);
    if (!q.IsNull(3)) record.thickness = q.Double(3);
    if (!q.IsNull(4)) record.integrationPoints = q.Int(4);
    record.profile = q.Text(5);
    if (q.Bytes(6) % 8 != 0)
      record.damagedDimensions = true;
    else if (!q.IsNull(6))
      record.dimensions = DimensionsOf(q.Blob(6), q.Bytes(6));
    sections.push_back(std::move(record));
  }
  return sections;
}

void store_AddSection(store_Database& db, const store_SectionRecord& section) {
  std::vector<unsigned char> dimensions;
  if (section.dimensions) dimensions = DimensionBytes(*section.dimensions);
  // The values that the section does not have are left unbound, which stores them as NULL.
  store_Statement q = db.Sql(
      "INSERT INTO section(name, kind, material, thickness, integration_points, profile, "
      "dimensions) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7)");
  q.Bind(1, section.name).Bind(2, section.kind).Bind(3, section.material).Bind(6, section.profile);
  if (section.thickness) q.Bind(4, *section.thickness);
  if (section.integrationPoints) q.Bind(5, *section.integrationPoints);
  if (section.dimensions) q.BindBlob(7, dimensions.data(), static_cast<int>(dimensions.size()));
  q.Run();
}
