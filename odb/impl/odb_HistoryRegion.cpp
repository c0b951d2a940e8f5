#include "odb_HistoryRegion.h"

#include <utility>
#include <vector>

#include "odb_Damage.h"
#include "odb_EntityData.h"
#include "odb_Exception.h"
#include "odb_HistoryData.h"
#include "odb_MeshData.h"
#include "odb_Message.h"
#include "odb_SetData.h"
#include "odb_StoreWrite.h"
#include "odb_Util.h"
#include "store_Model.h"

const uti_LabelRow<odb_HistoryRegionEnm> uti_LabelTable<odb_HistoryRegionEnm, 1>::rows[] = {
    {"Adding a history output object to an orphan History object is not allowed.",
     "odb_HistoryRegion_MSGID_00", odb_HistoryRegion_ORPHAN},
    {nullptr, nullptr, {}}};

const uti_LabelRow<odb_HistoryRegionPersEnm> uti_LabelTable<odb_HistoryRegionPersEnm, 1>::rows[] = {
    {"HistoryOutput cannot be created for this output location", "odb_HistoryRegionPers_MSGID_00",
     odb_HistoryRegionPers_BAD_LOCATION},
    {nullptr, nullptr, {}}};

namespace {

const char kSource[] = "odb/impl/odb_HistoryRegion";

// The refusals of the store's side of a history output request.
const char kOnlyScalar[] = "Only SCALAR data allowed for a historyVariable object.";
const char kNoElementNodal[] = "odb_Enum::ELEMENT_NODAL history not allowed.";
const char kRequestFailed[] = "HistoryOutput request failed.";

odb_HistoryOutput AttachedOutput(const std::shared_ptr<store_Database>& store,
                                 const store_HistoryOutputRecord& record,
                                 const std::string& region, const odb_LoadCase& loadCase) {
  auto data = std::make_shared<odb_HistoryOutputData>();
  data->loadCase = loadCase.isEmpty() ? odb_String() : loadCase.name();
  data->name = odb_FromText(record.name);
  data->subject = "history output " + odb_Quoted(record.name) + " of " + region;
  data->description = odb_FromText(record.description);
  data->type = static_cast<odb_Enum::odb_DataTypeEnum>(record.type);
  data->store = store;
  data->series = std::make_shared<store_HistorySeries>(store, record.id);
  return odb_HistoryOutputAccess::Make(std::move(data));
}

// Gives the point's instance the internal one-member set that names the node or element whose
// history is recorded, unless it has it already (the same point recorded in another step).
void AddResultsSet(store_Database& store, const odb_String& regionName,
                   const odb_HistoryPoint& point) {
  const bool node = point.position() == odb_Enum::NODAL;
  if (point.instanceName().Empty()) return;
  const odb_Set::Type type = node ? odb_Set::NODE_SET : odb_Set::ELEMENT_SET;
  const odb_String name = regionName + (node ? " results_nset" : " results_elset");
  const int label = node ? point.node().label() : point.element().label();
  odb_EntityData& entity = *odb_DiscreteEntityAccess::Data(point.instance());
  if (!entity.mesh) {
    store_AddResultsSet(store, odb_ToText(point.instanceName()), type, odb_ToText(name), label);
    return;
  }
  // An instance the caller holds: keep its set repositories in step with the file.
  entity.ReadSets();
  if (entity.Repository(type).isMember(name)) return;
  auto set = std::make_shared<odb_SetData>();
  set->name = name;
  set->type = type;
  set->internal = true;
  set->members.push_back(odb_SetData::MakeMember(entity.mesh, type, &label, 1, nullptr));
  set->meshes.append(odb_MeshAccess::Make(entity.mesh));
  entity.AddSet(set);
}

// A detached copy of every pair of `output`.
odb_HistoryOutput DetachedCopy(const odb_HistoryOutput& output) {
  auto data = std::make_shared<odb_HistoryOutputData>();
  data->loadCase = odb_HistoryOutputAccess::Data(output)->loadCase;
  data->name = output.name();
  data->description = output.description();
  data->type = output.type();
  const odb_HistoryData all = output.data();
  const odb_HistoryData conjugate = output.conjugateData();
  auto pairs = std::make_shared<odb_HistoryPairs>();
  pairs->times.assign(all.times(), all.times() + all.size());
  pairs->values.assign(all.values(), all.values() + all.size());
  auto conjugatePairs = std::make_shared<odb_HistoryPairs>();
  conjugatePairs->times.assign(conjugate.times(), conjugate.times() + conjugate.size());
  conjugatePairs->values.assign(conjugate.values(), conjugate.values() + conjugate.size());
  data->pairs = std::move(pairs);
  data->conjugate = std::move(conjugatePairs);
  return odb_HistoryOutputAccess::Make(std::move(data));
}

bool NeedsResultsSet(odb_Enum::odb_ResultPositionEnum position) {
  return position == odb_Enum::NODAL || position == odb_Enum::INTEGRATION_POINT ||
         position == odb_Enum::ELEMENT_FACE || position == odb_Enum::WHOLE_ELEMENT;
}

}  // namespace

void odb_HistoryRegionData::ReadOutputs() {
  if (outputsRead || !store) return;
  const std::string what = "the history outputs of " + subject;
  const std::vector<store_HistoryOutputRecord> records =
      odb_Reading(what, [&] { return store_HistoryOutputs(*store, id); });
  for (const store_HistoryOutputRecord& record : records)
    odb_CheckedCode(*store, record.type, odb_Enum::BOOLEAN, odb_Enum::QUATERNION_2D, what,
                    "history_output", "type");
  for (const store_HistoryOutputRecord& record : records)
    outputs.insert(odb_FromText(record.name), AttachedOutput(store, record, subject, loadCase));
  outputsRead = true;
}

odb_HistoryRegion::odb_HistoryRegion() : m_data(std::make_shared<odb_HistoryRegionData>()) {}

odb_HistoryRegion::odb_HistoryRegion(std::shared_ptr<odb_HistoryRegionData> data)
    : m_data(std::move(data)) {}

odb_String odb_HistoryRegion::name() const {
  return m_data->name;
}

odb_String odb_HistoryRegion::description() const {
  return m_data->description;
}

const odb_HistoryPoint& odb_HistoryRegion::historyPoint() const {
  return m_data->point;
}

const odb_LoadCase& odb_HistoryRegion::loadCase() const {
  return m_data->loadCase;
}

odb_Enum::odb_ResultPositionEnum odb_HistoryRegion::position() const {
  return m_data->point.position();
}

bool odb_HistoryRegion::isOrphan() const {
  return !m_data->store;
}

odb_HistoryOutputRepository& odb_HistoryRegion::historyOutputs() {
  m_data->ReadOutputs();
  return m_data->outputs;
}

const odb_HistoryOutputRepository& odb_HistoryRegion::historyOutputs() const {
  m_data->ReadOutputs();
  return m_data->outputs;
}

odb_HistoryOutput& odb_HistoryRegion::HistoryOutput(const odb_String& name,
                                                    const odb_String& description,
                                                    odb_Enum::odb_DataTypeEnum type) {
  odb_HistoryRegionData& d = *m_data;
  if (!d.store) odb_ThrowMessage(odb_CatalogueMessage(odb_HistoryRegion_ORPHAN), kSource, 126);
  if (type != odb_Enum::SCALAR) odb_ThrowMessage(kOnlyScalar, kSource, 127);
  const odb_Enum::odb_ResultPositionEnum position = d.point.position();
  if (position == odb_Enum::ELEMENT_NODAL) odb_ThrowMessage(kNoElementNodal, kSource, 129);
  if (position == odb_Enum::UNDEFINED_POSITION)
    odb_ThrowMessage(odb_CatalogueMessage(odb_HistoryRegionPers_BAD_LOCATION), kSource, 131);
  try {
    d.ReadOutputs();
    if (d.outputs.isMember(name)) return d.outputs.get(name);
    store_Database& store = odb_WritableStore(d.store, kRequestFailed, kSource, 135);
    if (d.outputs.size() == 0 && NeedsResultsSet(position)) AddResultsSet(store, d.name, d.point);
    store_HistoryOutputRecord record;
    record.name = odb_ToText(name);
    record.description = odb_ToText(description);
    record.type = type;
    store_AddHistoryOutput(store, d.id, record);
    d.outputs.insert(name, AttachedOutput(d.store, record, d.subject, d.loadCase));
  } catch (const store_Error& e) {
    // A failure of the disk that took the database back to its last save says so, and why.
    if (e.Discarded()) throw;
    odb_ThrowMessage(kRequestFailed, kSource, 144);
  }
  return d.outputs.get(name);
}

odb_HistoryRegion odb_HistoryRegion::getSubset(double start) const {
  return Subset(start, 0.0, false);
}

odb_HistoryRegion odb_HistoryRegion::getSubset(double start, double end) const {
  return Subset(start, end, true);
}

odb_HistoryRegion odb_HistoryRegion::getSubset(const odb_String& outputName) const {
  const odb_HistoryOutput& output = historyOutputs().constGet(outputName);
  auto subset = std::make_shared<odb_HistoryRegionData>();
  subset->name = m_data->name;
  subset->description = m_data->description;
  subset->point = m_data->point;
  subset->loadCase = m_data->loadCase;
  subset->outputs.insert(outputName, DetachedCopy(output));
  return odb_HistoryRegionAccess::Make(std::move(subset));
}

odb_HistoryRegion odb_HistoryRegion::Subset(double start, double end, bool bounded) const {
  auto subset = std::make_shared<odb_HistoryRegionData>();
  subset->name = m_data->name;
  subset->description = m_data->description;
  subset->point = m_data->point;
  subset->loadCase = m_data->loadCase;
  for (odb_HistoryOutputRepositoryIT it(historyOutputs()); !it.isDone(); it.next()) {
    const odb_HistoryOutput& output = it.currentValue();
    subset->outputs.insert(it.currentKey(),
                           bounded ? output.getSubset(start, end) : output.getSubset(start));
  }
  return odb_HistoryRegionAccess::Make(std::move(subset));
}
