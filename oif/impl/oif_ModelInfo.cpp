#include "oif_ModelInfo.h"

#include <algorithm>
#include <map>
#include <utility>

#include "odb_Damage.h"
#include "odb_Exception.h"
#include "odb_Odb.h"
#include "odb_OdbData.h"
#include "odb_StepProcedureRecord.h"
#include "odb_Util.h"
#include "oif_ModelData.h"
#include "store_StepProcedure.h"

namespace {

const char* const kSource = "oif/impl/oif_ModelInfo";
const char* const kBaseState = "Initial";

void GatherInstances(oif_ModelData& model) {
  for (const store_InstanceRecord& record : store_Instances(*model.store)) {
    if (!record.partId) continue;  // only instances of parts are written
    oif_InstanceInfo instance;
    instance.name = record.name;
    const store_PartRecord* part = model.Part(record.partId);
    instance.part = part ? part->name : std::string();
    instance.placement = record.placement;
    model.instances.push_back(std::move(instance));
  }
}

void GatherSteps(oif_ModelData& model) {
  store_Database& store = *model.store;
  const std::vector<store_StepRecord> records = store.Steps();
  if (records.empty()) return;  // no steps: every step field stays empty
  const std::map<std::int64_t, store_StepProcedureRecord> procedures = store_StepProcedures(store);
  for (const store_StepRecord& record : records) {
    oif_StepInfo step;
    step.name = record.name;
    step.description = record.description;
    step.procedureText = record.procedure;
    step.id = record.id;
    step.settings.timePeriod = record.timePeriod;
    const auto found = procedures.find(record.id);
    if (found != procedures.end()) step.settings = odb_ProcedureOf(found->second);
    step.analysis = step.settings.kind != odb_StepProcedure::INITIAL;
    // In the order of names, byte by byte, as the step's load-case map keeps them.
    step.loadCases = store.LoadCases(record.id);
    std::sort(step.loadCases.begin(), step.loadCases.end());
    model.steps.push_back(std::move(step));
  }
  if (model.steps.front().analysis) {
    oif_StepInfo base;
    base.name = kBaseState;
    base.settings.kind = odb_StepProcedure::INITIAL;
    base.analysis = false;
    model.steps.insert(model.steps.begin(), std::move(base));
  }
  for (const oif_StepInfo& step : model.steps) model.stepNames.push_back(step.name.c_str());
  model.initialStepName = model.steps.front().name;
  for (std::size_t i = 1; i < model.steps.size(); ++i) {
    const oif_StepInfo& step = model.steps[i];
    if (model.firstAnalysisStepName.empty()) model.firstAnalysisStepName = step.name;
    if (model.firstGeneralStepName.empty() && !oif_IsPerturbation(step.settings))
      model.firstGeneralStepName = step.name;
    model.hasExplicitStep = model.hasExplicitStep || oif_IsExplicit(step.settings);
  }
}

}  // namespace

const store_PartRecord* oif_ModelData::Part(std::int64_t id) const {
  for (const store_PartRecord& part : parts)
    if (part.id == id) return &part;
  return nullptr;
}

bool oif_IsPerturbation(const odb_StepProcedure& p) {
  switch (p.kind) {
    case odb_StepProcedure::STATIC:
      return p.perturbation;
    case odb_StepProcedure::FREQUENCY:
    case odb_StepProcedure::BUCKLE:
    case odb_StepProcedure::STEADY_STATE_DYNAMICS:
    case odb_StepProcedure::MODAL_DYNAMIC:
    case odb_StepProcedure::RANDOM_RESPONSE:
    case odb_StepProcedure::RESPONSE_SPECTRUM:
      return true;
    default:
      return false;
  }
}

bool oif_IsExplicit(const odb_StepProcedure& p) {
  return p.kind == odb_StepProcedure::EXPLICIT_DYNAMICS ||
         p.kind == odb_StepProcedure::EXPLICIT_TEMP_DISPLACEMENT;
}

oif_ModelInfo::oif_ModelInfo(const odb_Odb& odb) {
  if (!odb.isOpen()) odb_ThrowMessage("The database is closed.", kSource, 96);
  auto model = std::make_shared<oif_ModelData>();
  model->store = odb_OdbAccess::Store(odb);
  if (!model->store) odb_ThrowMessage("The database has no file.", kSource, 98);
  // The gathering passes, in order: the deck's structure, the instances, the steps, the datum
  // systems.
  model->writeAssemblyStructure = true;
  odb_Reading("the model", [&] {
    model->parts = store_Parts(*model->store);
    GatherInstances(*model);
    GatherSteps(*model);
    model->datums = store_DatumCsyses(*model->store);
    return 0;
  });
  m_data = std::move(model);
}

bool oif_ModelInfo::writeAssemblyStructure() const {
  return m_data->writeAssemblyStructure;
}
const uti_Array<odb_String>& oif_ModelInfo::stepNames() const {
  return m_data->stepNames;
}
odb_String oif_ModelInfo::initialStepName() const {
  return odb_FromText(m_data->initialStepName);
}
odb_String oif_ModelInfo::firstAnalysisStepName() const {
  return odb_FromText(m_data->firstAnalysisStepName);
}
odb_String oif_ModelInfo::firstGeneralStepName() const {
  return odb_FromText(m_data->firstGeneralStepName);
}
bool oif_ModelInfo::hasExplicitStep() const {
  return m_data->hasExplicitStep;
}
