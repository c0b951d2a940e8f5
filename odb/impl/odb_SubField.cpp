#include "odb_SubField.h"

#include <utility>

#include "odb_Message.h"
#include "odb_SubFieldData.h"

const uti_LabelRow<odb_SubFieldEnm> uti_LabelTable<odb_SubFieldEnm, 1>::rows[] = {
    {"Unable to determine mesh index for field\nField results on assembly level meshes are not "
     "currently supported.",
     "odb_SubField_MSGID_00", odb_SubField_NO_MESH_INDEX},
    {"Transformation not allowed for scalar, vector or matrix data.", "odb_SubField_MSGID_01",
     odb_SubField_TRANSFORM_NOT_ALLOWED},
    {"Subfield spanning subsets is invalid.", "odb_SubField_MSGID_02",
     odb_SubField_SPANNING_SUBSETS},
    {"Section Point number %s.", "odb_SubField_MSGID_03", odb_SubField_SECTION_POINT_NUMBER},
    {"Section point not valid for elements.", "odb_SubField_MSGID_04",
     odb_SubField_SECTION_POINT_INVALID},
    {"Quaternions result not read.", "odb_SubField_MSGID_05", odb_SubField_QUATERNIONS_NOT_READ},
    {"WHOLE_REGION data are not read.", "odb_SubField_MSGID_06", odb_SubField_WHOLE_REGION},
    {"WHOLE_PART_INSTANCE data are not read.", "odb_SubField_MSGID_07",
     odb_SubField_WHOLE_PART_INSTANCE},
    {"WHOLE_MODEL data are not read.", "odb_SubField_MSGID_08", odb_SubField_WHOLE_MODEL},
    {"GENERAL_PARTICLE data are not read.", "odb_SubField_MSGID_09", odb_SubField_GENERAL_PARTICLE},
    {"Results at unknown location not read.", "odb_SubField_MSGID_10",
     odb_SubField_UNKNOWN_LOCATION},
    {"Unable to determine part instance for field.\n Assembly level results are not currently "
     "supported.",
     "odb_SubField_MSGID_11", odb_SubField_NO_PART_INSTANCE},
    {"Quaternion results not processed.", "odb_SubField_MSGID_12",
     odb_SubField_QUATERNIONS_NOT_PROCESSED},
    {"Unknown datatype not processed.", "odb_SubField_MSGID_13", odb_SubField_UNKNOWN_DATATYPE},
    {"Invalid data: must be float tensor.", "odb_SubField_MSGID_14", odb_SubField_FLOAT_TENSOR},
    {"Double tensor data expected.", "odb_SubField_MSGID_15", odb_SubField_DOUBLE_TENSOR},
    {"Unable to determine mesh index for field %s.\n Assembly level results are not currently "
     "supported.",
     "odb_SubField_MSGID_16", odb_SubField_NO_MESH_INDEX_NAMED},
    {"Unable to determine mesh index for field %s", "odb_SubField_MSGID_17",
     odb_SubField_MESH_INDEX_NAMED},
    {"Unknown Set type.", "odb_SubField_MSGID_18", odb_SubField_UNKNOWN_SET_TYPE},
    {"Length of data sequence incorrect. Data at %1$s locations expected. Data at %2$s locations "
     "provided.",
     "odb_SubField_MSGID_19", odb_SubField_LENGTH},
    {"Nodal data request failed.", "odb_SubField_MSGID_20", odb_SubField_NODAL_FAILED},
    {"Element data request failed. Element type is %s", "odb_SubField_MSGID_21",
     odb_SubField_ELEMENT_FAILED},
    {". Data at %s integration points per element expected.", "odb_SubField_MSGID_22",
     odb_SubField_PER_POINT},
    {". Data at %s nodes per element expected.", "odb_SubField_MSGID_23", odb_SubField_PER_NODE},
    {". Data at 1 location per element expected.", "odb_SubField_MSGID_24",
     odb_SubField_PER_ELEMENT},
    {"Invalid results type for field.", "odb_SubField_MSGID_25", odb_SubField_BAD_TYPE},
    {"SCALAR data should be of length 1.", "odb_SubField_MSGID_26", odb_SubField_SCALAR_LENGTH},
    {"Data items should be of length %s", "odb_SubField_MSGID_27", odb_SubField_ITEM_LENGTH},
    {"Tensor type not implemented.", "odb_SubField_MSGID_28", odb_SubField_TENSOR_NOT_IMPLEMENTED},
    {"orphaned field", "odb_SubField_MSGID_29", odb_SubField_ORPHANED},
    {nullptr, nullptr, {}}};

namespace {

const char* const kSource = "odb/impl/odb_SubField";

// A sub-field handle that holds no group belongs to no field: it has no set and no locations.
[[noreturn]] void Orphaned(int site) {
  odb_ThrowMessage(odb_CatalogueMessage(odb_SubField_ORPHANED), kSource, site);
}

}  // namespace

odb_SubField::odb_SubField(std::shared_ptr<odb_SubFieldData> data) : m_data(std::move(data)) {}

odb_Enum::odb_ResultPositionEnum odb_SubField::position() const {
  return m_data ? m_data->position : odb_Enum::UNDEFINED_POSITION;
}
odb_Enum::odb_DataTypeEnum odb_SubField::type() const {
  return m_data ? m_data->type : odb_Enum::SCALAR;
}
const odb_Instance& odb_SubField::instance() const {
  static const odb_Instance none;
  return m_data ? m_data->instance : none;
}
odb_String odb_SubField::elementType() const {
  return m_data ? m_data->elementType : odb_String();
}
odb_String odb_SubField::sectionCategoryName() const {
  return m_data ? m_data->sectionCategory : odb_String();
}
odb_SectionPoint odb_SubField::sectionPoint() const {
  return m_data ? m_data->sectionPoint : odb_SectionPoint();
}
odb_String odb_SubField::setName() const {
  if (!m_data) Orphaned(__LINE__);
  return m_data->setName;
}
int odb_SubField::size() const {
  return m_data ? static_cast<int>(m_data->Locations()) : 0;
}
odb_SequenceInt odb_SubField::getSubsetIndices() const {
  if (!m_data) Orphaned(__LINE__);
  if (m_data->derived)
    odb_ThrowMessage(odb_CatalogueMessage(odb_SubField_SPANNING_SUBSETS), kSource, __LINE__);
  odb_SequenceInt indices;
  if (!m_data->subsetIndices.empty())
    return odb_SequenceInt(m_data->subsetIndices.data(),
                           static_cast<int>(m_data->subsetIndices.size()));
  for (int i = 0; i < size(); ++i) indices.append(i);
  return indices;
}
