// oif_ModelData: what oif_ModelInfo gathers from the model, as the components read it; internal.
#ifndef OIF_MODELDATA_H
#define OIF_MODELDATA_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "odb_StepProcedure.h"
#include "odb_String.h"
#include "oif_ModelInfo.h"
#include "store_Database.h"
#include "store_DatumCsys.h"
#include "store_Model.h"
#include "uti_Array.h"

struct oif_StepInfo {
  std::string name;
  std::string description;
  std::string procedureText;  // the step table's procedure text
  std::int64_t id = 0;        // 0 for the base state that the model info adds
  odb_StepProcedure settings;
  bool analysis = true;  // false for the initial step
  std::vector<std::string> loadCases;
};

struct oif_InstanceInfo {
  std::string name;
  std::string part;
  store_Placement placement;
  bool partInstance = true;    // every stored instance places a part
  bool userNodeLabels = true;  // stored nodes always carry the labels they were given
};

struct oif_ModelData {
  std::shared_ptr<store_Database> store;
  std::string assemblyName = "Assembly";
  bool writeAssemblyStructure = true;
  std::vector<store_PartRecord> parts;
  std::vector<oif_InstanceInfo> instances;
  std::vector<oif_StepInfo> steps;  // the initial step first
  uti_Array<odb_String> stepNames;
  std::string initialStepName, firstAnalysisStepName, firstGeneralStepName;
  bool hasExplicitStep = false;
  std::vector<store_DatumCsysRecord> datums;

  const store_PartRecord* Part(std::int64_t id) const;
};

// The kinds that analyse a linear perturbation of the base state, and the explicit kinds.
bool oif_IsPerturbation(const odb_StepProcedure& p);
bool oif_IsExplicit(const odb_StepProcedure& p);

struct oif_ModelInfoAccess {
  static const oif_ModelData& Data(const oif_ModelInfo& info) { return *info.m_data; }
};

#endif
