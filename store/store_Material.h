// store_Material: the materials of a file, one row each, with the elastic constants and the
// density that a material may be given after it is made.
//
// Free functions over an open store_Database, each one statement inside the database's open
// transaction. A property not given is NULL in the file. One thread at a time.
#ifndef STORE_MATERIAL_H
#define STORE_MATERIAL_H

#include <cstdint>
#include <string>
#include <vector>

class store_Database;

struct store_MaterialRecord {
  std::int64_t id = 0;  // assigned by the store
  std::string name;
  // Elasticity counts as given only when both of its constants are; a property not given reads
  // as false with its numbers 0.
  bool hasElastic = false;
  double youngsModulus = 0.0;
  double poissonsRatio = 0.0;
  bool hasDensity = false;
  double density = 0.0;
};

// Every stored material.
std::vector<store_MaterialRecord> store_Materials(store_Database& db);
// Adds a material with no properties given and returns its id.
std::int64_t store_AddMaterial(store_Database& db, const std::string& name);
void store_SetElastic(store_Database& db, std::int64_t id, double youngsModulus,
                      double poissonsRatio);
void store_SetDensity(store_Database& db, std::int64_t id, double density);

#endif
