// The shared state behind odb_Odb handles.
#ifndef ODB_ODBDATA_H
#define ODB_ODBDATA_H

#include <memory>

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
};

#endif
