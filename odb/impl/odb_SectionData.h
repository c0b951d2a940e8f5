// odb_SectionData: what a section handle shares with its copies; internal. Fixed once the
// section is stored.
#ifndef ODB_SECTIONDATA_H
#define ODB_SECTIONDATA_H

#include "odb_Section.h"
#include "odb_Sequence.h"
#include "odb_String.h"

struct odb_SectionData {
  odb_String name;
  odb_Section::Kind kind = odb_Section::HOMOGENEOUS_SOLID;
  odb_String material;
  double thickness = 0.0;         // shells only; NULL in the file for other kinds
  int integrationPoints = 0;      // shells only; NULL in the file for other kinds
  odb_String profile;             // beams only
  odb_SequenceDouble dimensions;  // beams only; NULL in the file for other kinds
};

#endif
