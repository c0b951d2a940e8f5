#include "odb_FieldBulkData.h"

#include <utility>

#include "odb_Exception.h"
#include "odb_SubFieldData.h"

odb_FieldBulkData::odb_FieldBulkData(std::shared_ptr<odb_SubFieldData> block)
    : m_block(std::move(block)) {
  if (m_block) {
    m_length = static_cast<int>(m_block->Locations());
    m_width = m_block->width;
  }
}

odb_SubFieldData& odb_FieldBulkData::Block() const {
  static odb_SubFieldData empty;
  if (!m_block) return empty;
  m_block->Refuse(odb_SubFieldView::BULK_DATA);
  m_block->Load();
  return *m_block;
}

odb_Enum::odb_ResultPositionEnum odb_FieldBulkData::position() const {
  return Block().position;
}
odb_Enum::odb_DataTypeEnum odb_FieldBulkData::type() const {
  return Block().type;
}
const odb_Instance& odb_FieldBulkData::instance() const {
  return Block().instance;
}
odb_String odb_FieldBulkData::baseElementType() const {
  return Block().elementType;
}
odb_SectionPoint odb_FieldBulkData::sectionPoint() const {
  return Block().sectionPoint;
}
int odb_FieldBulkData::numberOfElements() const {
  odb_SubFieldData& b = Block();
  return b.position == odb_Enum::NODAL ? 0 : static_cast<int>(b.labels.size());
}
int odb_FieldBulkData::valuesPerElement() const {
  return Block().perLabel;
}
const float* odb_FieldBulkData::data() const {
  return Block().data.data();
}
const float* odb_FieldBulkData::conjugateData() const {
  odb_SubFieldData& b = Block();
  return b.complex ? b.conjugate.data() : nullptr;
}
const float* odb_FieldBulkData::localCoordSystem() const {
  odb_SubFieldData& b = Block();
  return b.orientationWidth ? b.orientation.data() : nullptr;
}
int odb_FieldBulkData::orientationWidth() const {
  return Block().orientationWidth;
}
const int* odb_FieldBulkData::elementLabels() const {
  return Block().ElementLabels().data();
}
const int* odb_FieldBulkData::nodeLabels() const {
  return Block().NodeLabels().data();
}
const int* odb_FieldBulkData::integrationPoints() const {
  return Block().IntegrationPoints().data();
}
const float* odb_FieldBulkData::mises() const {
  return Block().Mises().data();
}

const odb_FieldBulkData& odb_SequenceFieldBulkData::constGet(int i) const {
  if (i < 0 || i >= size())
    odb_ThrowMessage("Index out of range.", "odb/impl/odb_FieldBulkData", 80);
  return m_blocks[static_cast<std::size_t>(i)];
}
