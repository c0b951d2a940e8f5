// odb_SectionData: what a section handle shares with its copies; internal. Fixed once the
// section is stored.
#ifndef ODB_SECTIONDATA_H
#define ODB_SECTIONDATA_H

#include <memory>
#include <utility>

#include "ddb_DdbData.h"
#include "odb_Section.h"
#include "odb_SectionRepository.h"
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

// Reaches the internals of sections and of their repository from the implementation.
struct odb_SectionAccess {
  static odb_Section Make(std::shared_ptr<const odb_SectionData> data) {
    return odb_Section(std::move(data));
  }
};

struct odb_SectionRepositoryAccess {
  // The repository of the database file `store`.
  static odb_SectionRepository Make(std::shared_ptr<store_Database> store) {
    odb_SectionRepository repository;
    repository.m_ddb = ddb_DdbAccess::Make(std::move(store));
    return repository;
  }
  // Adds every stored section not yet held; see odb_SectionRepository::Load.
  static void Load(odb_SectionRepository& repository) { repository.Load(); }
};

#endif
