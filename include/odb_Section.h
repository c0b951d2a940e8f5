// odb_Section: a named section of the model, as a handle: what kind of body it describes, the
// material it is made of, and the numbers of its kind (a shell's thickness and integration
// points, a beam's profile and its dimensions).
//
// Section assignments give regions of parts a section. A section is written once, by its
// repository's creators (odb_SectionRepository), and never changes after; the handle holds a
// shared, read-only copy of it, so copying costs O(1). The database owns the stored section.
// Numbers are stored as given, in the analysis' own units.
//
// The material is named, not held: the section does not check that the database holds a
// material of that name (see odb_SectionRepository).
//
// A default-constructed section is an empty handle: empty name and material, kind
// HOMOGENEOUS_SOLID, and the neutral values noted below.
//
// One thread at a time for a section and its copies.
#ifndef ODB_SECTION_H
#define ODB_SECTION_H

#include "odb_Export.h"
#include "odb_Sequence.h"
#include "odb_String.h"
#include "uti_LabelMap.h"
#include "uti_SharedPtr.h"

// The messages of sections and their repository.
enum odb_SectionEnm : int {
  odb_Section_INVALID_NAME = 0,       //
  odb_Section_ALREADY_EXISTS = 1,     // %s: the section's name
  odb_Section_NO_MATERIAL = 2,        // %s: the section's name
  odb_Section_BAD_THICKNESS = 3,      // %1$s: the value, %2$s: the section's name
  odb_Section_BAD_POINTS = 4,         // %1$s: the number given, %2$s: the section's name
  odb_Section_NO_PROFILE = 5,         // %s: the section's name
  odb_Section_NO_DIMENSIONS = 6,      // %s: the section's name
  odb_Section_BAD_DIMENSION = 7,      // %1$s: the value, %2$s: the section's name
  odb_Section_DAMAGED_DIMENSIONS = 8  // %s: the section's name
};

template <>
struct QTVODB_EXPORT uti_LabelTable<odb_SectionEnm, 1> {
  static const uti_LabelRow<odb_SectionEnm> rows[];
};

struct odb_SectionData;

class QTVODB_EXPORT odb_Section {
 public:
  // What a section describes; stored in database files by number. A number this release does
  // not know (a file of a newer release) is given back as stored.
  enum Kind : int { HOMOGENEOUS_SOLID = 0, HOMOGENEOUS_SHELL = 1, BEAM = 2 };

  // An empty handle.
  odb_Section();

  odb_String name() const;
  Kind kind() const;
  // The name of the material the section is made of.
  odb_String material() const;
  // Shells: the thickness (above 0); 0 for other kinds.
  double thickness() const;
  // Shells: the number of section points through the thickness (at least 1); 0 for other kinds.
  int integrationPoints() const;
  // Beams: the profile's name, for example "RECT" or "CIRC"; empty for other kinds.
  odb_String profile() const;
  // Beams: the profile's dimensions in the order the profile defines them (for example width,
  // then height); empty for other kinds. A shared copy: O(1).
  odb_SequenceDouble dimensions() const;

  // True for a default-constructed handle.
  bool isEmpty() const { return !m_data; }

 private:
  friend struct odb_SectionAccess;

  explicit odb_Section(std::shared_ptr<const odb_SectionData> data);

  std::shared_ptr<const odb_SectionData> m_data;
};

#endif
