// odb_FieldOutput: copying all data of another field into this one, sub-field by sub-field.
#include <string>

#include "odb_EntityData.h"
#include "odb_FieldData.h"
#include "odb_FieldOutput.h"
#include "odb_Message.h"
#include "odb_Util.h"
#include "store_Mesh.h"

namespace {

const char* const kSource = "odb/impl/odb_FieldOutput";

[[noreturn]] void Fail(odb_FieldOutputEnm code, std::initializer_list<odb_String> args, int site) {
  odb_ThrowMessage(odb_CatalogueMessage(code, args), kSource, site);
}

// Checks that the target instance can take a source sub-field: its labels exist there, as
// elements of the same type and section category that define the section point.
void CheckTarget(const odb_SubFieldData& sub, const odb_Instance& target) {
  odb_MeshData& meshData = *odb_DiscreteEntityAccess::Data(target)->mesh;
  store_Mesh& mesh = *meshData.mesh;
  const bool nodal = sub.position == odb_Enum::NODAL;
  for (std::size_t i = 0; i < sub.labels.size(); ++i) {
    const int at = nodal ? mesh.NodePosition(sub.labels[i]) : mesh.ElementPosition(sub.labels[i]);
    if (at < 0) Fail(odb_FieldOutput_TARGET_SET, {sub.setName}, 30);
    if (nodal) continue;
    const store_ElementBlock& block = mesh.BlockOf(at);
    if (odb_FromText(block.type) != sub.elementType ||
        odb_FromText(block.sectionCategory) != sub.sectionCategory)
      Fail(odb_FieldOutput_TARGET_ELEMENTS, {sub.elementType, sub.sectionCategory, sub.setName},
           36);
  }
  const int point = sub.sectionPoint.number();
  if (nodal || point < 0) return;
  const odb_SectionCategory category =
      meshData.categories ? meshData.categories(sub.sectionCategory) : odb_SectionCategory();
  if (category.isEmpty() || !category.hasSectionPoint(point))
    Fail(odb_FieldOutput_TARGET_SECTION_POINT,
         {odb_String(std::to_string(point).c_str()), sub.elementType, sub.sectionCategory,
          sub.setName},
         45);
}

}  // namespace

void odb_FieldOutput::addData(const odb_FieldOutput& field) {
  if (IsOrphan()) Fail(odb_FieldOutput_ORPHAN_WRITE, {}, 52);
  odb_FieldData& source = *field.m_data;
  source.ReadBlocks();
  if (source.type != m_data->type || source.Width() != m_data->Width())
    Fail(odb_FieldOutput_INCOMPATIBLE, {}, 56);
  std::shared_ptr<odb_AssemblyData> assembly = m_data->assembly ? m_data->assembly() : nullptr;
  if (assembly) assembly->ReadInstances();
  for (const auto& subField : std::vector<std::shared_ptr<odb_SubFieldData>>(source.subFields)) {
    odb_SubFieldData& sub = *subField;
    sub.Load();
    if (!sub.subsetIndices.empty()) Fail(odb_FieldOutput_INCOMPATIBLE, {}, 62);
    if (!assembly || !assembly->instances.isMember(sub.instanceName))
      Fail(odb_FieldOutput_TARGET_INSTANCE, {sub.instanceName}, 64);
    const odb_Instance target = assembly->instances.get(sub.instanceName);
    CheckTarget(sub, target);
    const int rows = static_cast<int>(sub.Locations());
    addData(sub.position, target, static_cast<int>(sub.labels.size()), sub.labels.data(), rows,
            sub.width, sub.data.data(), sub.sectionPoint,
            sub.complex ? sub.conjugate.data() : nullptr, sub.orientationWidth ? rows : 0,
            sub.orientationWidth, sub.orientationWidth ? sub.orientation.data() : nullptr);
  }
}
