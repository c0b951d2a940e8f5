#include "odb_FieldValue.h"

#include <vector>

#include "store_Tensor.h"

void odb_FieldValue::SetLocation(odb_Enum::odb_ResultPositionEnum position,
                                 odb_Enum::odb_DataTypeEnum type, const odb_Instance& instance,
                                 int elementLabel, int nodeLabel, int integrationPoint,
                                 const odb_SectionPoint& sectionPoint,
                                 const odb_String& baseElementType) {
  m_position = position;
  m_type = type;
  m_instance = instance;
  m_elementLabel = elementLabel;
  m_nodeLabel = nodeLabel;
  m_integrationPoint = integrationPoint;
  m_sectionPoint = sectionPoint;
  m_baseElementType = baseElementType;
}

odb_SequenceSequenceFloat odb_FieldValue::localCoordSystem() const {
  odb_SequenceSequenceFloat axes;
  for (const std::vector<float>& axis :
       store_DirectionCosines(m_orientation.data(), m_orientation.size()))
    axes.append(odb_SequenceFloat(axis.data(), static_cast<int>(axis.size())));
  return axes;
}

float odb_FieldValue::invariant(odb_Enum::odb_InvariantEnum which) const {
  return store_Invariant(which, m_type, m_data.data(), m_data.size());
}

float odb_FieldValue::magnitude() const {
  return invariant(odb_Enum::MAGNITUDE);
}
float odb_FieldValue::mises() const {
  return invariant(odb_Enum::MISES);
}
float odb_FieldValue::tresca() const {
  return invariant(odb_Enum::TRESCA);
}
float odb_FieldValue::press() const {
  return invariant(odb_Enum::PRESS);
}
float odb_FieldValue::inv3() const {
  return invariant(odb_Enum::INV3);
}
float odb_FieldValue::maxPrincipal() const {
  return invariant(odb_Enum::MAX_PRINCIPAL);
}
float odb_FieldValue::midPrincipal() const {
  return invariant(odb_Enum::MID_PRINCIPAL);
}
float odb_FieldValue::minPrincipal() const {
  return invariant(odb_Enum::MIN_PRINCIPAL);
}
float odb_FieldValue::maxInPlanePrincipal() const {
  return invariant(odb_Enum::MAX_INPLANE_PRINCIPAL);
}
float odb_FieldValue::minInPlanePrincipal() const {
  return invariant(odb_Enum::MIN_INPLANE_PRINCIPAL);
}
float odb_FieldValue::outOfPlanePrincipal() const {
  return invariant(odb_Enum::OUTOFPLANE_PRINCIPAL);
}
