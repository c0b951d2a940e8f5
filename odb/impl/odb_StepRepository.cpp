#include "odb_StepRepository.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "odb_Damage.h"
#include "odb_Exception.h"
#include "odb_Message.h"
#include "odb_StepData.h"
#include "odb_StepProcedureRecord.h"
#include "odb_StepRepositoryData.h"
#include "odb_Util.h"
#include "store_Database.h"
#include "store_StepProcedure.h"

const uti_LabelRow<odb_StepRepositoryEnm> uti_LabelTable<odb_StepRepositoryEnm, 1>::rows[] = {
    {"No step named \"%s\" in StepContainer.", "odb_StepRepository_MSGID_00",
     odb_StepRepository_NO_STEP},
    {"Invalid step name.", "odb_StepRepository_MSGID_01", odb_StepRepository_INVALID_NAME},
    {"Invalid previous step name.", "odb_StepRepository_MSGID_02",
     odb_StepRepository_INVALID_PREVIOUS},
    {"StepContainerIterator done.", "odb_StepRepository_MSGID_03",
     odb_StepRepository_ITERATOR_DONE},
    {"Previous step \"%s\" not found.", "odb_StepRepository_MSGID_04",
     odb_StepRepository_PREVIOUS_MISSING},
    {"A Step named \"%s\" already exists.", "odb_StepRepository_MSGID_05",
     odb_StepRepository_ALREADY_EXISTS},
    {nullptr, nullptr, {}}};

namespace {

const char* const kSource = "odb/impl/odb_StepRepository";

void RefuseEmptyName(const odb_String& name, int site) {
  if (name.Empty())
    odb_ThrowMessage(odb_CatalogueMessage(odb_StepRepository_INVALID_NAME), kSource, site);
}

// The stored steps, refused when damaged.
std::vector<store_StepRecord> StoredSteps(store_Database& store) {
  const char* subject = "the steps";
  std::vector<store_StepRecord> steps = odb_Reading(subject, [&] { return store.Steps(); });
  for (const store_StepRecord& step : steps)
    odb_CheckedCode(store, step.domain, odb_Enum::TIME, odb_Enum::MODAL, subject, "step", "domain");
  return steps;
}

}  // namespace

void odb_StepRepository::Load() {
  if (!m_data || !m_data->store) return;
  for (const store_StepRecord& record : StoredSteps(*m_data->store)) {
    const odb_String name = odb_FromText(record.name);
    if (!isMember(name))
      append(name, odb_StepAccess::Make(
                       std::make_shared<odb_StepData>(m_data->store, record, m_data->assembly)));
  }
}

odb_Step& odb_StepRepository::AddStep(const odb_String& name, const odb_String& description,
                                      odb_Enum::odb_DomainEnum domain, double timePeriod,
                                      const odb_String& previousStepName,
                                      const odb_String& procedure, double totalTime) {
  RefuseEmptyName(name, 64);
  if (isMember(name))
    odb_ThrowMessage(odb_CatalogueMessage(odb_StepRepository_ALREADY_EXISTS, {name}), kSource, 66);
  if (!m_data || !m_data->store)
    odb_ThrowMessage("The step repository belongs to no database.", kSource, 67);
  store_StepRecord record;
  record.name = odb_ToText(name);
  record.description = odb_ToText(description);
  record.domain = domain;
  record.timePeriod = timePeriod;
  record.totalTime = totalTime;
  record.previousStepName = odb_ToText(previousStepName);
  record.procedure = odb_ToText(procedure);
  m_data->store->AddStep(record);  // sets record.id
  append(name, odb_StepAccess::Make(
                   std::make_shared<odb_StepData>(m_data->store, record, m_data->assembly)));
  return get(name);
}

bool odb_StepRepository::Update() {
  if (!m_data || !m_data->store) return false;
  bool found = false;
  // A stored step carries its own previous step's name, so the walk needs no running one.
  for (const store_StepRecord& record : StoredSteps(*m_data->store)) {
    const odb_String name = odb_FromText(record.name);
    if (!isMember(name)) {
      append(name, odb_StepAccess::Make(
                       std::make_shared<odb_StepData>(m_data->store, record, m_data->assembly)));
      found = true;
    } else if (get(name).update()) {
      found = true;
    }
  }
  return found;
}

odb_Step& odb_StepRepository::StaticStep(const odb_String& name, const odb_String& description,
                                         const odb_String& previousStepName) {
  odb_StepProcedure procedure;
  procedure.kind = odb_StepProcedure::STATIC;
  return Step(name, description, previousStepName, procedure);
}

odb_Step& odb_StepRepository::StaticLinearPerturbationStep(const odb_String& name,
                                                           const odb_String& description,
                                                           const odb_String& previousStepName) {
  odb_StepProcedure procedure;
  procedure.kind = odb_StepProcedure::STATIC;
  procedure.perturbation = true;
  return Step(name, description, previousStepName, procedure);
}

odb_Step& odb_StepRepository::HeatTransferStep(const odb_String& name,
                                               const odb_String& description,
                                               const odb_String& previousStepName) {
  odb_StepProcedure procedure;
  procedure.kind = odb_StepProcedure::HEAT_TRANSFER;
  return Step(name, description, previousStepName, procedure);
}

odb_Step& odb_StepRepository::Step(const odb_String& name, const odb_String& description,
                                   const odb_String& previousStepName,
                                   const odb_StepProcedure& procedure) {
  RefuseEmptyName(name, 118);
  double totalTime = 0.0;
  if (!previousStepName.Empty()) {
    if (!isMember(previousStepName))
      odb_ThrowMessage(
          odb_CatalogueMessage(odb_StepRepository_PREVIOUS_MISSING, {previousStepName}), kSource,
          123);
    // The new step starts where the previous one ends.
    const odb_Step& previous = constGet(previousStepName);
    totalTime = previous.totalTime() + previous.timePeriod();
  }
  if (isMember(name))
    odb_ThrowMessage(odb_CatalogueMessage(odb_StepRepository_ALREADY_EXISTS, {name}), kSource,
                     127);
  const bool initialFirst = procedure.kind != odb_StepProcedure::INITIAL || size() == 0;
  if (!odb_IsProcedureKind(procedure.kind) || procedure.kind == odb_StepProcedure::UNSPECIFIED ||
      !initialFirst)
    odb_ThrowMessage("Invalid procedure kind.", kSource, 129);
  return AddProcedureStep(name, description, previousStepName, procedure, totalTime);
}

odb_Step& odb_StepRepository::AddProcedureStep(const odb_String& name,
                                               const odb_String& description,
                                               const odb_String& previousStepName,
                                               const odb_StepProcedure& procedure,
                                               double totalTime) {
  odb_Step& step = AddStep(name, description, odb_ProcedureDomain(procedure),
                           procedure.timePeriod, previousStepName,
                           odb_String(odb_ProcedureText(procedure)), totalTime);
  odb_StepData& data = *odb_StepAccess::Data(step);
  store_SetStepProcedure(*data.store, data.id, odb_ProcedureRecord(procedure));
  data.settings = procedure;
  data.settingsRead = true;
  return step;
}
