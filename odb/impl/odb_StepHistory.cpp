// A step's history regions: read from the file on first use, and added by odb_Step::HistoryRegion.
#include <memory>
#include <string>
#include <vector>

#include "odb_Damage.h"
#include "odb_Exception.h"
#include "odb_HistoryData.h"
#include "odb_Message.h"
#include "odb_Step.h"
#include "odb_StepData.h"
#include "odb_StoreWrite.h"
#include "odb_Util.h"
#include "store_History.h"
#include "store_Model.h"

void odb_ReadHistoryRegions(odb_StepData& step) {
  if (step.historyRegionsRead) return;
  if (step.store) {
    const std::string what = step.Subject("history regions");
    const std::vector<store_HistoryRegionRecord> records =
        odb_Reading(what, [&] { return store_HistoryRegions(*step.store, step.id); });
    for (const store_HistoryRegionRecord& record : records) {
      const store_HistoryPointRecord& p = record.point;
      // An unknown position is refused by the point itself, with its own message.
      odb_CheckedCode(*step.store, p.face, odb_Enum::FACE_UNKNOWN, odb_Enum::END3, what,
                      "history_region", "face");
      odb_CheckedCode(*step.store, p.setKind, odb_Set::NODE_SET, odb_Set::SURFACE_SET, what,
                      "history_region", "set_kind");
    }
    for (const store_HistoryRegionRecord& record : records) {
      auto data = std::make_shared<odb_HistoryRegionData>();
      data->subject = "region " + odb_Quoted(record.name) + " in step " + odb_Quoted(step.name);
      data->name = odb_FromText(record.name);
      data->description = odb_FromText(record.description);
      data->point = odb_HistoryPointAccess::FromRecord(record.point);
      if (!record.loadCase.empty()) data->loadCase = odb_LoadCase(odb_FromText(record.loadCase));
      data->store = step.store;
      data->id = record.id;
      step.historyRegions.insert(data->name, odb_HistoryRegionAccess::Make(data));
    }
  }
  step.historyRegionsRead = true;
}

namespace {

// A node or element record names its part, not its instance: the instance is the one that
// places that part, when exactly one does.
void ResolveInstance(store_Database& store, odb_HistoryPoint& point) {
  if (!odb_HistoryPointAccess::LacksInstance(point)) return;
  const int part =
      point.position() == odb_Enum::NODAL ? point.node().meshIndex() : point.element().meshIndex();
  const store_InstanceRecord* found = nullptr;
  const std::vector<store_InstanceRecord> instances = store_Instances(store);
  for (const store_InstanceRecord& instance : instances) {
    if (instance.partId != part) continue;
    if (found) return;
    found = &instance;
  }
  if (found)
    odb_HistoryPointAccess::SetInstance(
        point, odb_HistoryPointAccess::NamedInstance(odb_FromText(found->name)));
}

// The point's name, numbered from 2 when the step has a region of that name already.
odb_String FreeName(const odb_StepData& step, const odb_String& base) {
  odb_String name = base;
  for (int n = 2; step.historyRegions.isMember(name); ++n) name = base + " (" + odb_String(n) + ")";
  return name;
}

}  // namespace

odb_HistoryRegion& odb_AddHistoryRegion(odb_StepData& step, const odb_String& name,
                                        const odb_String& description,
                                        const odb_HistoryPoint& point,
                                        const odb_LoadCase& loadCase) {
  store_Database& store =
      odb_WritableStore(step.store, "The step belongs to no database.", "odb/impl/odb_Step", 230);
  odb_ReadHistoryRegions(step);
  if (!name.Empty() && step.historyRegions.isMember(name))
    odb_ThrowMessage(odb_CatalogueMessage(odb_Step_HISTORY_REGION_EXISTS, {name, step.name}),
                     "odb/impl/odb_Step", 234);
  if (!loadCase.isEmpty()) {
    if (!step.loadCasesRead) step.ReadLoadCases();
    step.loadCases.CheckKey(loadCase.name());
  }
  auto data = std::make_shared<odb_HistoryRegionData>();
  data->point = point;
  ResolveInstance(store, data->point);
  data->name = name.Empty() ? FreeName(step, data->point.name()) : name;
  data->description = description.Empty() ? data->point.description() : description;
  data->loadCase = loadCase;
  data->store = step.store;
  data->subject = "region " + odb_Quoted(data->name) + " in step " + odb_Quoted(step.name);
  store_HistoryRegionRecord record;
  record.name = odb_ToText(data->name);
  record.description = odb_ToText(data->description);
  record.loadCase = odb_ToText(loadCase.name());
  record.point = odb_HistoryPointAccess::ToRecord(data->point);
  data->id = store_AddHistoryRegion(store, step.id, record);
  step.historyRegions.insert(data->name, odb_HistoryRegionAccess::Make(data));
  return step.historyRegions.get(data->name);
}
