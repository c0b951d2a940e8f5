// odb_StepRepositoryData: where a database's step repository reads and writes its steps, and how
// its fields find the root assembly; internal.
#ifndef ODB_STEPREPOSITORYDATA_H
#define ODB_STEPREPOSITORYDATA_H

#include <memory>
#include <utility>

#include "odb_AssemblyData.h"
#include "odb_StepRepository.h"

class store_Database;

struct odb_StepRepositoryData {
  std::shared_ptr<store_Database> store;
  odb_AssemblyLookup assembly;
};

// Reaches the internals of step repositories from the implementation.
struct odb_StepRepositoryAccess {
  // The repository of the database file `store`; fields of its steps find their instances
  // through `assembly` (none when empty).
  static odb_StepRepository Make(std::shared_ptr<store_Database> store,
                                 odb_AssemblyLookup assembly = odb_AssemblyLookup()) {
    odb_StepRepository repository;
    repository.m_data = std::make_shared<const odb_StepRepositoryData>(
        odb_StepRepositoryData{std::move(store), std::move(assembly)});
    return repository;
  }
  static void Load(odb_StepRepository& steps) { steps.Load(); }
  static bool Update(odb_StepRepository& steps) { return steps.Update(); }
  static odb_Step& AddStep(odb_StepRepository& steps, const odb_String& name,
                           const odb_String& description, odb_Enum::odb_DomainEnum domain,
                           double timePeriod, const odb_String& previousStepName,
                           const odb_String& procedure, double totalTime) {
    return steps.AddStep(name, description, domain, timePeriod, previousStepName, procedure,
                         totalTime);
  }
};

#endif
