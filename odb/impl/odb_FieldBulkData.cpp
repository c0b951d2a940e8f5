#include "odb_FieldBulkData.h"

#include <algorithm>
#include <string>
#include <utility>

#include "odb_Exception.h"
#include "odb_Message.h"
#include "odb_SubFieldData.h"
#include "odb_Util.h"

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

odb_SubFieldData& odb_FieldBulkData::Described() const {
  static odb_SubFieldData empty;
  if (!m_block) return empty;
  m_block->Refuse(odb_SubFieldView::BULK_DATA);
  return *m_block;
}

namespace {

// Refuses a caller's array that does not hold exactly `wanted` values.
void CheckRoom(const char* call, std::size_t given, std::size_t wanted) {
  if (given == wanted) return;
  odb_ThrowMessage(odb_FormatMessage("%1$s(): the array holds %2$s values; the block gives %3$s.",
                                     {call, odb_FromText(std::to_string(given)),
                                      odb_FromText(std::to_string(wanted))}),
                   "odb/impl/odb_FieldBulkData", __LINE__);
}

}  // namespace

int odb_FieldBulkData::numberOfLabels() const {
  return static_cast<int>(Described().LabelCount());
}

void odb_FieldBulkData::readLabels(odb_MutableArrayView<int> into) const {
  odb_SubFieldData& b = Described();
  CheckRoom("readLabels", into.size(), b.LabelCount());
  if (m_block) b.ReadInto(odb_SubFieldData::Part::LABELS, into.data());
}

void odb_FieldBulkData::readData(odb_MutableArrayView<float> into) const {
  odb_SubFieldData& b = Described();
  CheckRoom("readData", into.size(), b.Locations() * static_cast<std::size_t>(b.width));
  if (m_block) b.ReadInto(odb_SubFieldData::Part::DATA, into.data());
}

void odb_FieldBulkData::readConjugateData(odb_MutableArrayView<float> into) const {
  odb_SubFieldData& b = Described();
  if (!b.complex)
    odb_ThrowMessage("readConjugateData(): the block holds real data.",
                     "odb/impl/odb_FieldBulkData", __LINE__);
  CheckRoom("readConjugateData", into.size(), b.Locations() * static_cast<std::size_t>(b.width));
  b.ReadInto(odb_SubFieldData::Part::CONJUGATE, into.data());
}

void odb_FieldBulkData::readLocalCoordSystem(odb_MutableArrayView<float> into) const {
  odb_SubFieldData& b = Described();
  if (!b.orientationWidth)
    odb_ThrowMessage("readLocalCoordSystem(): the block holds no orientations.",
                     "odb/impl/odb_FieldBulkData", __LINE__);
  CheckRoom("readLocalCoordSystem", into.size(),
            b.Locations() * static_cast<std::size_t>(b.orientationWidth));
  b.ReadInto(odb_SubFieldData::Part::ORIENTATION, into.data());
}

odb_Enum::odb_ResultPositionEnum odb_FieldBulkData::position() const {
  return Described().position;
}
odb_Enum::odb_DataTypeEnum odb_FieldBulkData::type() const {
  return Described().type;
}
const odb_Instance& odb_FieldBulkData::instance() const {
  return Described().instance;
}
odb_String odb_FieldBulkData::baseElementType() const {
  return Described().elementType;
}
odb_SectionPoint odb_FieldBulkData::sectionPoint() const {
  return Described().sectionPoint;
}
int odb_FieldBulkData::numberOfElements() const {
  odb_SubFieldData& b = Described();
  return b.position == odb_Enum::NODAL ? 0 : static_cast<int>(b.LabelCount());
}
int odb_FieldBulkData::valuesPerElement() const {
  return Described().perLabel;
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
  return Described().orientationWidth;
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
