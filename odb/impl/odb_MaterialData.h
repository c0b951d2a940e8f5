// odb_MaterialData: what a material handle shares with its copies; internal.
#ifndef ODB_MATERIALDATA_H
#define ODB_MATERIALDATA_H

#include <cstdint>
#include <memory>

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

#endif
