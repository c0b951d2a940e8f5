// store_DatumCsys: the datum coordinate systems of the assembly, one row each.
//
// Free functions over an open store_Database, each one or two statements inside the database's
// open transaction. The table is made with the first system written, so files that never held
// one read as holding none. One thread at a time.
#ifndef STORE_DATUMCSYS_H
#define STORE_DATUMCSYS_H

#include <string>
#include <vector>

class store_Database;

struct store_DatumCsysRecord {
  std::string name;
  int type = 0;        // odb_Enum::odb_DatumCsysTypeEnum
  int definition = 0;  // odb_DatumCsys::Definition
  // The instance and node labels that a node-following system follows; "" and -1 otherwise.
  std::string instance;
  int nodes[3] = {-1, -1, -1};
  // The system as defined: origin, then the 1-, 2- and 3-axes (unit rows).
  double origin[3] = {0, 0, 0};
  double axes[9] = {1, 0, 0, 0, 1, 0, 0, 0, 1};
  // The three points it was built from (the nodes' placed coordinates for node systems).
  double points[9] = {0, 0, 0, 0, 0, 0, 0, 0, 0};
};

// Every stored system, in creation order; none when the table does not exist.
std::vector<store_DatumCsysRecord> store_DatumCsyses(store_Database& db);
void store_AddDatumCsys(store_Database& db, const store_DatumCsysRecord& record);
void store_DeleteDatumCsys(store_Database& db, const std::string& name);

#endif
