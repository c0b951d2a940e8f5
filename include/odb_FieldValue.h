// odb_FieldValue: one value of a field output at one location: a node, or an element's
// integration point, node, centroid or whole element, at one section point.
//
// A plain value: it owns its floats (inline, no allocation for up to nine) and shares its part
// instance's handle, so copying costs a few tens of nanoseconds. Values are built on request by
// the field's value sequence (odb_SequenceFieldValue) from its stored blocks; changing a copy
// changes nothing stored. The invariants are computed on each call from the components, in
// double precision, and are 0.0 for data types they do not apply to. One thread at a time.
#ifndef ODB_FIELDVALUE_H
#define ODB_FIELDVALUE_H

#include "odb_Enum.h"
#include "odb_Export.h"
#include "odb_FieldValueData.h"
#include "odb_Instance.h"
#include "odb_SectionPoint.h"
#include "odb_Sequence.h"
#include "odb_String.h"

class QTVODB_EXPORT odb_FieldValue {
 public:
  // A value of no location: UNDEFINED_POSITION, SCALAR, labels -1, no data.
  odb_FieldValue() = default;

  odb_Enum::odb_ResultPositionEnum position() const { return m_position; }
  odb_Enum::odb_DataTypeEnum type() const { return m_type; }
  const odb_Instance& instance() const { return m_instance; }
  // Labels of the location; -1 where they do not apply (no node for an integration point...).
  int elementLabel() const { return m_elementLabel; }
  int nodeLabel() const { return m_nodeLabel; }
  // 1-based; -1 for values not at an integration point.
  int integrationPoint() const { return m_integrationPoint; }
  const odb_SectionPoint& sectionPoint() const { return m_sectionPoint; }
  // The element type the value belongs to ("" for nodal values).
  const odb_String& baseElementType() const { return m_baseElementType; }

  // The components (one for SCALAR).
  const odb_FieldValueData& fieldValueData() const { return m_data; }
  odb_SequenceFloat data() const { return m_data.sequence(); }
  // The imaginary parts of complex values; empty for real ones.
  const odb_FieldValueData& conjugateFieldValueData() const { return m_conjugate; }
  odb_SequenceFloat conjugateData() const { return m_conjugate.sequence(); }
  // The orientation the components are given in: 2 floats (a rotation in the plane, a planar
  // quaternion) or 4 (a quaternion); empty for values in the global system.
  const odb_FieldValueData& orientation() const { return m_orientation; }
  // The direction cosines of that orientation's inverse, one sequence per axis; empty when the
  // value carries none.
  odb_SequenceSequenceFloat localCoordSystem() const;

  float magnitude() const;
  float mises() const;
  float tresca() const;
  float press() const;
  float inv3() const;
  float maxPrincipal() const;
  float midPrincipal() const;
  float minPrincipal() const;
  float maxInPlanePrincipal() const;
  float minInPlanePrincipal() const;
  float outOfPlanePrincipal() const;
  // Any of the above by its enumerator.
  float invariant(odb_Enum::odb_InvariantEnum which) const;

  // Replace the components.
  void SetData(float value) { m_data.assign(&value, 1); }
  void SetData(const float* values, int count) { m_data.assign(values, count); }

  // Filled by the library's value sequences and field arithmetic.
  void SetLocation(odb_Enum::odb_ResultPositionEnum position, odb_Enum::odb_DataTypeEnum type,
                   const odb_Instance& instance, int elementLabel, int nodeLabel,
                   int integrationPoint, const odb_SectionPoint& sectionPoint,
                   const odb_String& baseElementType);
  void SetConjugateData(const float* values, int count) { m_conjugate.assign(values, count); }
  void SetOrientation(const float* values, int count) { m_orientation.assign(values, count); }
  void SetType(odb_Enum::odb_DataTypeEnum type) { m_type = type; }

 private:
  odb_Enum::odb_ResultPositionEnum m_position = odb_Enum::UNDEFINED_POSITION;
  odb_Enum::odb_DataTypeEnum m_type = odb_Enum::SCALAR;
  odb_Instance m_instance;
  int m_elementLabel = -1;
  int m_nodeLabel = -1;
  int m_integrationPoint = -1;
  odb_SectionPoint m_sectionPoint;
  odb_FieldValueData m_orientation;
  odb_FieldValueData m_data;
  odb_FieldValueData m_conjugate;
  odb_String m_baseElementType;
};

#endif
