// odb_DatumCsysData: what a datum coordinate system's handles share; internal, never changed
// once made.
#ifndef ODB_DATUMCSYSDATA_H
#define ODB_DATUMCSYSDATA_H

#include "odb_DatumCsys.h"
#include "store_DatumCsys.h"

struct odb_DatumCsysData {
  odb_String name;
  odb_Enum::odb_DatumCsysTypeEnum type = odb_Enum::RECTANGULAR;
  odb_DatumCsys::Definition definition = odb_DatumCsys::FIXED;
  odb_String instanceName;
  int nodes[3] = {-1, -1, -1};
  double origin[3] = {0, 0, 0};
  double axes[9] = {1, 0, 0, 0, 1, 0, 0, 0, 1};  // rows: the 1-, 2- and 3-axes
  // The three points the system was built from; for node systems, the nodes' placed
  // coordinates, from which their displacements move it.
  double points[9] = {0, 0, 0, 0, 0, 0, 0, 0, 0};

  // The number of nodes followed: 3, 1 or 0.
  int NodeCount() const;
  store_DatumCsysRecord ToRecord() const;
  static odb_DatumCsysData FromRecord(const store_DatumCsysRecord& record);
};

// Reaches the internals of datum coordinate system handles from the implementation.
struct odb_DatumCsysAccess {
  static odb_DatumCsys Make(std::shared_ptr<const odb_DatumCsysData> data) {
    return odb_DatumCsys(std::move(data));
  }
  static const std::shared_ptr<const odb_DatumCsysData>& Data(const odb_DatumCsys& c) {
    return c.m_data;
  }
};

#endif
