#include "odb_SectionRepository.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include "odb_Damage.h"
#include "odb_Exception.h"
#include "odb_Message.h"
#include "odb_SectionData.h"
#include "odb_StoreWrite.h"
#include "odb_Util.h"
#include "store_Database.h"
#include "store_Statement.h"

namespace {

const char kSource[] = "odb/impl/odb_SectionRepository";

[[noreturn]] void Throw(odb_SectionEnm code, int site, std::initializer_list<odb_String> args) {
  odb_ThrowMessage(odb_CatalogueMessage(code, args), kSource, site);
}

// Dimensions are stored as float64 values in little-endian byte order, whatever the byte order
// of the machine, so that a file reads the same everywhere.
std::vector<unsigned char> DimensionBytes(const odb_SequenceDouble& dimensions) {
  std::vector<unsigned char> bytes;
  bytes.reserve(static_cast<std::size_t>(dimensions.size()) * 8);
  for (int i = 0; i < dimensions.size(); ++i) {
    std::uint64_t bits;
    const double value = dimensions[i];
    std::memcpy(&bits, &value, sizeof bits);
    for (int b = 0; b < 8; ++b) bytes.push_back(static_cast<unsigned char>(bits >> (8 * b)));
  }
  return bytes;
}

odb_SequenceDouble DimensionsOf(const void* blob, int size) {
  const auto* bytes = static_cast<const unsigned char*>(blob);
  odb_SequenceDouble dimensions(size / 8);
  for (int at = 0; at + 8 <= size; at += 8) {
    std::uint64_t bits = 0;
    for (int b = 7; b >= 0; --b) bits = (bits << 8) | bytes[at + b];
    double value;
    std::memcpy(&value, &bits, sizeof value);
    dimensions.append(value);
  }
  return dimensions;
}

}  // namespace

void odb_SectionRepository::Load() {
  if (!ddb_DdbAccess::Store(m_ddb)) return;
  const char* what = "the sections";
  std::vector<std::shared_ptr<odb_SectionData>> found;
  odb_Reading(what, [&] {
    store_Statement q = ddb_DdbAccess::Store(m_ddb)->Sql(
        "SELECT name, kind, material, coalesce(thickness, 0), coalesce(integration_points, 0), "
        "profile, dimensions FROM section");
    while (q.Step()) {
      q.RequireNotNull("section", {"name", "kind", "material"});
      const odb_String name = odb_FromText(q.Text(0));
      if (q.Bytes(6) % 8 != 0) Throw(odb_Section_DAMAGED_DIMENSIONS, 66, {name});
      auto data = std::make_shared<odb_SectionData>();
      data->name = name;
      data->kind = static_cast<odb_Section::Kind>(
          odb_CheckedCode(*ddb_DdbAccess::Store(m_ddb), q.Int(1), odb_Section::HOMOGENEOUS_SOLID,
                          odb_Section::BEAM, what, "section", "kind"));
      data->material = odb_FromText(q.Text(2));
      data->thickness = q.Double(3);
      data->integrationPoints = q.Int(4);
      data->profile = odb_FromText(q.Text(5));
      data->dimensions = DimensionsOf(q.Blob(6), q.Bytes(6));
      found.push_back(std::move(data));
    }
  });
  for (std::shared_ptr<odb_SectionData>& data : found) {
    const odb_String name = data->name;
    if (!isMember(name)) insert(name, odb_SectionAccess::Make(std::move(data)));
  }
}

std::shared_ptr<odb_SectionData> odb_SectionRepository::NewSection(
    const odb_String& name, odb_Section::Kind kind, const odb_String& materialName) const {
  if (name.Empty()) Throw(odb_Section_INVALID_NAME, 81, {});
  if (isMember(name)) Throw(odb_Section_ALREADY_EXISTS, 82, {name});
  if (materialName.Empty()) Throw(odb_Section_NO_MATERIAL, 83, {name});
  auto section = std::make_shared<odb_SectionData>();
  section->name = name;
  section->kind = kind;
  section->material = materialName;
  return section;
}

odb_Section& odb_SectionRepository::Add(const std::shared_ptr<const odb_SectionData>& section) {
  store_Database& store = odb_WritableStore(
      ddb_DdbAccess::Store(m_ddb), "The section repository belongs to no database.", kSource, 88);
  const std::vector<unsigned char> dimensions = DimensionBytes(section->dimensions);
  // The values that the kind does not use are left unbound, which stores them as NULL.
  store_Statement q = store.Sql(
      "INSERT INTO section(name, kind, material, thickness, integration_points, profile, "
      "dimensions) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7)");
  q.Bind(1, odb_ToText(section->name))
      .Bind(2, static_cast<int>(section->kind))
      .Bind(3, odb_ToText(section->material))
      .Bind(6, odb_ToText(section->profile));
  if (section->kind == odb_Section::HOMOGENEOUS_SHELL)
    q.Bind(4, section->thickness).Bind(5, section->integrationPoints);
  if (section->kind == odb_Section::BEAM)
    q.BindBlob(7, dimensions.data(), static_cast<int>(dimensions.size()));
  q.Run();
  insert(section->name, odb_SectionAccess::Make(section));
  return get(section->name);
}

odb_Section& odb_SectionRepository::HomogeneousSolidSection(const odb_String& name,
                                                            const odb_String& materialName) {
  return Add(NewSection(name, odb_Section::HOMOGENEOUS_SOLID, materialName));
}

odb_Section& odb_SectionRepository::HomogeneousShellSection(const odb_String& name,
                                                            const odb_String& materialName,
                                                            double thickness,
                                                            int integrationPoints) {
  std::shared_ptr<odb_SectionData> section =
      NewSection(name, odb_Section::HOMOGENEOUS_SHELL, materialName);
  if (!(std::isfinite(thickness) && thickness > 0.0))
    Throw(odb_Section_BAD_THICKNESS, 123, {odb_String(thickness), name});
  if (integrationPoints < 1)
    Throw(odb_Section_BAD_POINTS, 125, {odb_String(integrationPoints), name});
  section->thickness = thickness;
  section->integrationPoints = integrationPoints;
  return Add(section);
}

odb_Section& odb_SectionRepository::BeamSection(const odb_String& name,
                                                const odb_String& materialName,
                                                const odb_String& profile,
                                                const odb_SequenceDouble& dimensions) {
  std::shared_ptr<odb_SectionData> section = NewSection(name, odb_Section::BEAM, materialName);
  if (profile.Empty()) Throw(odb_Section_NO_PROFILE, 140, {name});
  if (dimensions.isEmpty()) Throw(odb_Section_NO_DIMENSIONS, 141, {name});
  for (int i = 0; i < dimensions.size(); ++i)
    if (!std::isfinite(dimensions[i]))
      Throw(odb_Section_BAD_DIMENSION, 144, {odb_String(dimensions[i]), name});
  section->profile = profile;
  section->dimensions = dimensions;
  return Add(section);
}
