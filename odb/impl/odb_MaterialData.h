// odb_MaterialData: what a material handle shares with its copies; internal.
#ifndef ODB_MATERIALDATA_H
#define ODB_MATERIALDATA_H

#include <cstdint>
#include <memory>

#include "ddb_DdbData.h"
#include "odb_MaterialRepository.h"
#include "odb_String.h"
#include "store_Database.h"

struct odb_MaterialData {
  std::shared_ptr<store_Database> store;
  std::int64_t id = 0;  // material.id
  odb_String name;
  // A property not given is NULL in the file and false here; its numbers are then unused.
  bool hasElastic = false;
  double youngsModulus = 0.0;
  double poissonsRatio = 0.0;
  bool hasDensity = false;
  double density = 0.0;
};

// Reaches the internals of materials and of their repository from the implementation.
struct odb_MaterialAccess {
  static odb_Material Make(std::shared_ptr<odb_MaterialData> data) {
    return odb_Material(std::move(data));
  }
};

struct odb_MaterialRepositoryAccess {
  // The repository of the database file `store`.
  static odb_MaterialRepository Make(std::shared_ptr<store_Database> store) {
    odb_MaterialRepository repository;
    repository.m_ddb = ddb_DdbAccess::Make(std::move(store));
    return repository;
  }
  // Adds every stored material not yet held, with the properties stored for it.
  static void Load(odb_MaterialRepository& repository) { repository.Load(); }
};

#endif
