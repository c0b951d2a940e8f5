#include "odb_SectionRepository.h"

#include <cmath>
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
#include "store_Section.h"

namespace {

const char kSource[] = "odb/impl/odb_SectionRepository";

[[noreturn]] void Throw(odb_SectionEnm code, int site, std::initializer_list<odb_String> args) {
  odb_ThrowMessage(odb_CatalogueMessage(code, args), kSource, site);
}

}  // namespace

void odb_SectionRepository::Load() {
  const std::shared_ptr<store_Database>& store = ddb_DdbAccess::Store(m_ddb);
  if (!store) return;
  const char* what = "the sections";
  const std::vector<store_SectionRecord> stored =
      odb_Reading(what, [&] { return store_Sections(*store); });
  std::vector<std::shared_ptr<odb_SectionData>> found;
  for (const store_SectionRecord& record : stored) {
    const odb_String name = odb_FromText(record.name);
    if (record.damagedDimensions) Throw(odb_Section_DAMAGED_DIMENSIONS, 66, {name});
    auto data = std::make_shared<odb_SectionData>();
    data->name = name;
    data->kind = static_cast<odb_Section::Kind>(
        odb_CheckedCode(*store, record.kind, odb_Section::HOMOGENEOUS_SOLID, odb_Section::BEAM,
                        what, "section", "kind"));
    data->material = odb_FromText(record.material);
    data->thickness = record.thickness.value_or(0.0);
    data->integrationPoints = record.integrationPoints.value_or(0);
    data->profile = odb_FromText(record.profile);
    if (record.dimensions)
      data->dimensions = odb_SequenceDouble(record.dimensions->data(),
                                            static_cast<int>(record.dimensions->size()));
    found.push_back(std::move(data));
  }
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
  store_SectionRecord record;
  record.name = odb_ToText(section->name);
  record.kind = static_cast<int>(section->kind);
  record.material = odb_ToText(section->material);
  record.profile = odb_ToText(section->profile);
  // The values that the kind does not use stay absent, which stores them as NULL.
  if (section->kind == odb_Section::HOMOGENEOUS_SHELL) {
    record.thickness = section->thickness;
    record.integrationPoints = section->integrationPoints;
  }
  if (section->kind == odb_Section::BEAM) {
    record.dimensions.emplace();
    for (int i = 0; i < section->dimensions.size(); ++i)
      record.dimensions->push_back(section->dimensions[i]);
  }
  store_AddSection(store, record);
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
