// The shared state behind odb_Odb handles.
#ifndef ODB_ODBDATA_H
#define ODB_ODBDATA_H

#include <memory>
#include <vector>

#include "odb_Assembly.h"
#include "odb_DiscretePartRepository.h"
#include "odb_MaterialRepository.h"
#include "odb_Odb.h"
#include "odb_SectionCategoryRepository.h"
#include "odb_SectionRepository.h"
#include "odb_StepRepository.h"
#include "odb_String.h"
#include "store_Database.h"

struct odb_OdbData {
  odb_String name;
  odb_String analysisTitle;
  odb_String description;
  odb_String path;
  std::shared_ptr<store_Database> ddb;
  bool readOnly = true;
  bool onlyUserDefinedData = false;
  bool stepsRead = false;
  odb_StepRepository steps;

  // The model's repositories, each made and read on first use.
  std::shared_ptr<odb_DiscretePartRepository> parts;
  std::unique_ptr<odb_Assembly> rootAssembly;
  std::unique_ptr<odb_SectionCategoryRepository> sectionCategories;
  std::unique_ptr<odb_MaterialRepository> materials;
  std::unique_ptr<odb_SectionRepository> sections;

  // What the database held in memory (its repositories) before each failure that took its file
  // back to its last save. The database reads itself again from the file after such a failure;
  // these are kept, unchanged, only so that references into them that callers still hold stay
  // valid (their store view is retired: they answer what they hold and refuse what needs the
  // file).
  std::vector<std::shared_ptr<const void>> retired;
};

// Reaches the shared state of database handles, and their file, from the implementation.
struct odb_OdbAccess {
  static odb_Odb Make(std::shared_ptr<odb_OdbData> data) { return odb_Odb(std::move(data)); }
  static const std::shared_ptr<odb_OdbData>& Data(const odb_Odb& odb) { return odb.m_data; }
  // The store's view of the database's file; null for the empty database.
  static const std::shared_ptr<store_Database>& Store(const odb_Odb& odb) {
    return odb.m_data->ddb;
  }
};

#endif
