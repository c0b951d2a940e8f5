// odb_SectionPoint: one point through the thickness of a shell or across the profile of a beam,
// at which results are given (field output names it to say where through the section a value
// lies).
//
// A value: a number, counted from 1 within its section category, and a description such as
// "Top" or "Bottom". The default-constructed point has number -1 and an empty description and
// stands for "no section point": it is what values of elements without section points carry.
// Copying shares the description's characters and costs O(1). Section points are created through
// their category (odb_SectionCategory::SectionPoint), which stores them. A point and its copies
// belong to one thread at a time.
#ifndef ODB_SECTIONPOINT_H
#define ODB_SECTIONPOINT_H

#include "odb_Export.h"
#include "odb_Sequence.h"
#include "odb_String.h"

class QTVODB_EXPORT odb_SectionPoint {
 public:
  // No section point: number -1, empty description.
  odb_SectionPoint();
  odb_SectionPoint(int number, const odb_String& description);

  // The point's number within its category, 1-based; -1 for no section point.
  int number() const { return m_number; }
  const odb_String& description() const { return m_description; }

 private:
  int m_number;
  odb_String m_description;
};

// Points are equal when their numbers and descriptions are.
QTVODB_EXPORT bool operator==(const odb_SectionPoint& a, const odb_SectionPoint& b);
inline bool operator!=(const odb_SectionPoint& a, const odb_SectionPoint& b) {
  return !(a == b);
}

using odb_SequenceSectionPoint = odb_Sequence<odb_SectionPoint>;

#endif
