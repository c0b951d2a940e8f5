// odb_AssemblyData: what the handles of the root assembly share; internal.
#ifndef ODB_ASSEMBLYDATA_H
#define ODB_ASSEMBLYDATA_H

#include <functional>
#include <memory>

#include "odb_Assembly.h"
#include "odb_DiscretePartRepository.h"
#include "odb_SectionCategoryData.h"
#include "store_Database.h"
#include "store_Model.h"

struct odb_AssemblyData;

// Finds the database's root assembly, where fields find their instances; null once the database
// is gone.
using odb_AssemblyLookup = std::function<std::shared_ptr<odb_AssemblyData>()>;

struct odb_AssemblyData {
  std::shared_ptr<store_Database> store;
  // The database's parts, which instances place; owned by the database object.
  std::shared_ptr<odb_DiscretePartRepository> parts;
  odb_CategoryLookup categories;

  bool instancesRead = false;
  odb_InstanceRepository instances;
  odb_MeshList meshes;
  bool setsRead = false;
  odb_SetRepository nodeSets, elementSets, surfaces;
  bool datumCsysesRead = false;
  odb_DatumCsysRepository datumCsyses;

  void ReadInstances();
  void ReadSets();
  void ReadDatumCsyses();
  odb_SetRepository& Repository(odb_Set::Type type);
  // An instance handle over `part`'s mesh.
  odb_Instance MakeInstance(const odb_String& name, const odb_DiscretePart& part,
                            const store_Placement& placement);
};

// Reaches the internals of assembly handles from the implementation.
struct odb_AssemblyAccess {
  static odb_Assembly Make(std::shared_ptr<odb_AssemblyData> data) {
    return odb_Assembly(std::move(data));
  }
  static const std::shared_ptr<odb_AssemblyData>& Data(const odb_Assembly& a) { return a.m_data; }
};

#endif
