// odb_LoadCase: a named load case of a step, the label that ties frames of one loading together.
//
// A value holding only its name (an odb_String, so copying shares the characters and costs O(1)).
// The default-constructed load case has the empty name and stands for "no load case": it is what
// frames without a load case report and what the frame searches of a step take as "any frame".
// Load cases are created through their step (odb_Step::LoadCase), which stores them. A load case
// and its copies belong to one thread at a time.
#ifndef ODB_LOADCASE_H
#define ODB_LOADCASE_H

#include "odb_Export.h"
#include "odb_String.h"

class QTVODB_EXPORT odb_LoadCase {
 public:
  // No load case.
  odb_LoadCase() = default;
  explicit odb_LoadCase(const odb_String& name) : m_name(name) {}

  const odb_String& name() const { return m_name; }
  // True for the default (no load case).
  bool isEmpty() const { return m_name.Empty(); }

 private:
  odb_String m_name;
};

// Load cases are equal when their names are (byte-wise, case-sensitive).
inline bool operator==(const odb_LoadCase& a, const odb_LoadCase& b) {
  return a.name() == b.name();
}
inline bool operator!=(const odb_LoadCase& a, const odb_LoadCase& b) {
  return !(a == b);
}

#endif
