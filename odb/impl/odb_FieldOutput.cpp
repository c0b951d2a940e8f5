#include "odb_FieldOutput.h"

#include <utility>

#include "odb_Damage.h"
#include "odb_FieldData.h"
#include "odb_Message.h"
#include "odb_Util.h"
#include "store_Field.h"
#include "store_Tensor.h"

const uti_LabelRow<odb_FieldOutputEnm> uti_LabelTable<odb_FieldOutputEnm, 1>::rows[] = {
    {"addData() not valid for an orphaned object.", "odb_FieldOutput_MSGID_01",
     odb_FieldOutput_ORPHAN_WRITE},
    // "does not exists": the wording is matched on as it stands.
    {"Instance '%s' does not exists in this odb.", "odb_FieldOutput_MSGID_02",
     odb_FieldOutput_NO_INSTANCE},
    {"Transformation not allowed for scalar data.", "odb_FieldOutput_MSGID_03",
     odb_FieldOutput_TRANSFORM_SCALAR},
    {"Invalid results position for field.", "odb_FieldOutput_MSGID_04",
     odb_FieldOutput_BAD_POSITION},
    {"Section Point number %s.", "odb_FieldOutput_MSGID_05", odb_FieldOutput_SECTION_POINT_NUMBER},
    {"Section point not valid for all elements.", "odb_FieldOutput_MSGID_06",
     odb_FieldOutput_SECTION_POINT_SOME},
    {"field.addData() request not processed correctly. %1$s data sequences written from the %2$s "
     "supplied. Write data for each element position, element type, and section definition "
     "separately for more detailed error messages.",
     "odb_FieldOutput_MSGID_07", odb_FieldOutput_NOT_PROCESSED},
    {"Length of data sequence incorrect. Data at %1$s locations expected. Data at %2$s locations "
     "provided.",
     "odb_FieldOutput_MSGID_08", odb_FieldOutput_LENGTH},
    {"Nodal data request failed.", "odb_FieldOutput_MSGID_09", odb_FieldOutput_NODAL_FAILED},
    {"Element data request failed. Element type is %s", "odb_FieldOutput_MSGID_10",
     odb_FieldOutput_ELEMENT_FAILED},
    {". Data at %s integration points per element expected.", "odb_FieldOutput_MSGID_11",
     odb_FieldOutput_PER_POINT},
    {". Data at %s nodes per element expected.", "odb_FieldOutput_MSGID_12",
     odb_FieldOutput_PER_NODE},
    {". Data at 1 location per element expected.", "odb_FieldOutput_MSGID_13",
     odb_FieldOutput_PER_ELEMENT},
    {"Invalid results type for field.", "odb_FieldOutput_MSGID_14", odb_FieldOutput_BAD_TYPE},
    {"SCALAR data should be of length 1.", "odb_FieldOutput_MSGID_15",
     odb_FieldOutput_SCALAR_LENGTH},
    {"Coordinate system definition should be of length 0, 1, or the same length as the data "
     "array.",
     "odb_FieldOutput_MSGID_16", odb_FieldOutput_CSYS_LENGTH},
    {"Fields are not compatible. They are either associated with different structural models or "
     "have incompatible attributes.",
     "odb_FieldOutput_MSGID_17", odb_FieldOutput_INCOMPATIBLE},
    {"No Instance named \"%s\" found in the target database.", "odb_FieldOutput_MSGID_18",
     odb_FieldOutput_TARGET_INSTANCE},
    {"No set named \"%s\" found in the target database.", "odb_FieldOutput_MSGID_19",
     odb_FieldOutput_TARGET_SET},
    {"No elements with type \"%1$s\" and sectionCategory \"%2$s\" in set \"%3$s\" found in the "
     "target database.",
     "odb_FieldOutput_MSGID_20", odb_FieldOutput_TARGET_ELEMENTS},
    {"No sectionPoint numbered \"%1$s\" for element type \"%2$s\" and sectionCategory \"%3$s\" in "
     "set \"%4$s\" found in the target database.",
     "odb_FieldOutput_MSGID_21", odb_FieldOutput_TARGET_SECTION_POINT},
    {"Field not found:", "odb_FieldOutput_MSGID_22", odb_FieldOutput_NOT_FOUND},
    {"Insufficient data sequences provided.", "odb_FieldOutput_MSGID_23", odb_FieldOutput_FEW_DATA},
    {"Insufficient coordSystem sequences provided.", "odb_FieldOutput_MSGID_24",
     odb_FieldOutput_FEW_CSYS},
    {"Invalid invariant", "odb_FieldOutput_MSGID_25", odb_FieldOutput_BAD_INVARIANT},
    {"Incorrect tensor data length", "odb_FieldOutput_MSGID_26", odb_FieldOutput_TENSOR_LENGTH},
    {"Third component of coordinate system must be normal to 2D part", "odb_FieldOutput_MSGID_27",
     odb_FieldOutput_CSYS_NORMAL},
    {"Deformation results for part instance not found.", "odb_FieldOutput_MSGID_28",
     odb_FieldOutput_NO_DEFORMATION},
    {"The deformation field must be a NODAL VECTOR field requested for the whole analysis model.",
     "odb_FieldOutput_MSGID_29", odb_FieldOutput_DEFORMATION_KIND},
    {"The specified coordinate system is dynamic; therefore, a deformation field must be "
     "supplied.",
     "odb_FieldOutput_MSGID_30", odb_FieldOutput_DYNAMIC_CSYS},
    {"The specified coordinate system follows a 6-DOF node; it requires both the deformation and "
     "rotation fields.",
     "odb_FieldOutput_MSGID_31", odb_FieldOutput_SIX_DOF_CSYS},
    {"The element labels passed into field.addData() method contain some undefined labels.",
     "odb_FieldOutput_MSGID_32", odb_FieldOutput_UNDEFINED_LABELS},
    {"Data and ConjugateData must have the same length.", "odb_FieldOutput_MSGID_33",
     odb_FieldOutput_CONJUGATE_LENGTH},
    {"%1$s label %2$s is given more than once in one addData() call (%3$s data of instance "
     "\"%4$s\").",
     "odb_FieldOutput_MSGID_34", odb_FieldOutput_REPEATED_LABEL},
    {"addData() was told of %1$s labels, but the label array holds %2$s.",
     "odb_FieldOutput_MSGID_35", odb_FieldOutput_LABEL_ARRAY},
    {"addData() was told of %1$s %2$s of %3$s floats (%4$s), but the %5$s array holds %6$s.",
     "odb_FieldOutput_MSGID_36", odb_FieldOutput_FLOAT_ARRAY},
    {nullptr, nullptr, {}}};

int odb_FieldData::Width() const {
  if (type == odb_Enum::SCALAR) return 1;
  const int components = store_TensorComponentCount(type);
  return components > 0 ? components : componentLabels.size();
}

void odb_FieldData::ReadBlocks() {
  if (blocksRead) return;
  if (!store || !id) {
    blocksRead = true;
    return;
  }
  std::shared_ptr<odb_AssemblyData> asm_ = assembly ? assembly() : nullptr;
  if (asm_) asm_->ReadInstances();
  // Nothing is kept from a read that fails: the next read fails the same way.
  const std::string what = "the data of " + subject;
  const std::vector<store_FieldBlockRecord> blocks =
      odb_Reading(what, [&] { return store_FieldBlocks(*store, id); });
  for (const store_FieldBlockRecord& b : blocks)
    odb_CheckedCode(*store, b.position, odb_Enum::NODAL, odb_Enum::WHOLE_ELEMENT, what,
                    "field_block", "position");
  blocksRead = true;
  for (const store_FieldBlockRecord& b : blocks) {
    std::shared_ptr<odb_SubFieldData> target;
    for (const auto& sub : subFields)
      if (sub->Holds(b)) target = sub;
    if (!target) {
      const odb_String instance = odb_FromText(b.instance);
      const bool known = asm_ && asm_->instances.isMember(instance);
      target = odb_SubFieldData::FromBlock(
          b, type, known ? asm_->instances.get(instance) : odb_Instance(), store);
      target->subject = what;
      target->Check(name, Width(), known);
      assemblyLevel = assemblyLevel || target->AssemblyLevel();
      subFields.push_back(target);
    }
    target->AddBlock(b);
  }
}

void odb_FieldData::BuildViews() {
  ReadBlocks();
  if (viewsBuilt) return;
  values.clearAll();
  bulk.clearAll();
  locations.clearAll();
  for (const auto& sub : subFields) {
    values.append(odb_SubFieldAccess::Make(sub));
    bulk.append(odb_FieldBulkDataAccess::Make(sub));
    locations.append(sub->position, sub->sectionPoint);
  }
  viewsBuilt = true;
}

std::shared_ptr<odb_FieldData> odb_FieldData::EmptyCopy() const {
  auto copy = std::make_shared<odb_FieldData>();
  copy->name = name;
  copy->description = description;
  copy->type = type;
  copy->componentLabels = componentLabels;
  copy->validInvariants = validInvariants;
  copy->assembly = assembly;
  copy->blocksRead = true;
  return copy;
}

odb_FieldOutput::odb_FieldOutput() : m_data(std::make_shared<odb_FieldData>()) {
  m_data->blocksRead = true;
}

odb_FieldOutput::odb_FieldOutput(std::shared_ptr<odb_FieldData> data) : m_data(std::move(data)) {}

odb_FieldOutput::odb_FieldOutput(const odb_String& name, const odb_String& description,
                                 odb_Enum::odb_DataTypeEnum type,
                                 const odb_SequenceString& componentLabels,
                                 const odb_SequenceInvariant& validInvariants)
    : odb_FieldOutput() {
  m_data->name = name;
  m_data->description = description;
  m_data->type = type;
  m_data->componentLabels = componentLabels;
  m_data->validInvariants = validInvariants;
}

odb_String odb_FieldOutput::name() const {
  return m_data->name;
}
odb_String odb_FieldOutput::description() const {
  return m_data->description;
}
odb_Enum::odb_DataTypeEnum odb_FieldOutput::type() const {
  return m_data->type;
}
odb_SequenceString odb_FieldOutput::componentLabels() const {
  return m_data->componentLabels;
}
odb_SequenceInvariant odb_FieldOutput::validInvariants() const {
  return m_data->validInvariants;
}
int odb_FieldOutput::width() const {
  return m_data->Width();
}
bool odb_FieldOutput::IsOrphan() const {
  return m_data->orphan;
}

const odb_SequenceFieldValue& odb_FieldOutput::values() const {
  m_data->BuildViews();
  return m_data->values;
}

const odb_SequenceFieldBulkData& odb_FieldOutput::bulkDataBlocks() const {
  m_data->BuildViews();
  return m_data->bulk;
}

const odb_SequenceFieldLocation& odb_FieldOutput::locations() const {
  m_data->BuildViews();
  if (m_data->assemblyLevel)
    odb_ThrowMessage(odb_CatalogueMessage(odb_SubField_NO_MESH_INDEX), "odb/impl/odb_SubField",
                     __LINE__);
  return m_data->locations;
}
