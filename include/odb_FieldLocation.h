// odb_FieldLocation: where in the mesh the values of a field output lie: a position and the
// section points it is given at (none, one, or several).
//
// A plain value, cheap to copy. A field's locations (odb_FieldOutput::locations) list each
// distinct position once, with the section points its sub-fields are written at, in the order
// they were first written. One thread at a time.
#ifndef ODB_FIELDLOCATION_H
#define ODB_FIELDLOCATION_H

#include "odb_Enum.h"
#include "odb_Export.h"
#include "odb_SectionPoint.h"
#include "uti_Array.h"

class QTVODB_EXPORT odb_FieldLocation {
 public:
  odb_FieldLocation() = default;
  explicit odb_FieldLocation(odb_Enum::odb_ResultPositionEnum position) : m_position(position) {}
  odb_FieldLocation(odb_Enum::odb_ResultPositionEnum position,
                    const odb_SectionPoint& sectionPoint);
  odb_FieldLocation(odb_Enum::odb_ResultPositionEnum position,
                    const odb_SequenceSectionPoint& sectionPoints)
      : m_position(position), m_sectionPoints(sectionPoints) {}

  odb_Enum::odb_ResultPositionEnum position() const { return m_position; }
  const odb_SequenceSectionPoint& sectionPoint() const { return m_sectionPoints; }
  // Adds a section point unless it is held already.
  void addSectionPoint(const odb_SectionPoint& point);

 private:
  odb_Enum::odb_ResultPositionEnum m_position = odb_Enum::UNDEFINED_POSITION;
  odb_SequenceSectionPoint m_sectionPoints;
};

// Same position and the same section points in the same order.
QTVODB_EXPORT bool operator==(const odb_FieldLocation& a, const odb_FieldLocation& b);

class QTVODB_EXPORT odb_SequenceFieldLocation {
 public:
  int size() const { return m_locations.size(); }
  bool isEmpty() const { return m_locations.empty(); }
  // Location i, 0-based; throws "Index out of range." outside 0..size()-1.
  const odb_FieldLocation& get(int i) const { return constGet(i); }
  const odb_FieldLocation& constGet(int i) const;
  const odb_FieldLocation& operator[](int i) const { return constGet(i); }
  // Whether a location of the same position holds (at least) the given section points.
  bool isMember(const odb_FieldLocation& location) const;
  // Merges into the location of the same position, or adds one.
  void append(const odb_FieldLocation& location);
  void append(const odb_SequenceFieldLocation& locations);
  void append(odb_Enum::odb_ResultPositionEnum position);
  void append(odb_Enum::odb_ResultPositionEnum position, const odb_SectionPoint& point);
  void append(odb_Enum::odb_ResultPositionEnum position, const odb_SequenceSectionPoint& points);
  void clearAll() { m_locations.clear(); }

 private:
  uti_Array<odb_FieldLocation> m_locations;
};

#endif
