#include "odb_Step.h"

#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include "odb_Damage.h"
#include "odb_Exception.h"
#include "odb_FrameData.h"
#include "odb_HistoryData.h"
#include "odb_Message.h"
#include "odb_StepData.h"
#include "odb_StepProcedureRecord.h"
#include "store_StepProcedure.h"
#include "odb_Util.h"

const uti_LabelRow<odb_StepEnm> uti_LabelTable<odb_StepEnm, 1>::rows[] = {
    {"A historyRegion named '%1$s' already exists in step '%2$s'.", "odb_Step_MSGID_00",
     odb_Step_HISTORY_REGION_EXISTS},
    {"Could not read history '%1$s'. %2$s", "odb_Step_MSGID_01", odb_Step_HISTORY_UNREADABLE},
    {"Incorrect index for frame.", "odb_Step_MSGID_02", odb_Step_BAD_FRAME_INDEX},
    // The key skips 03 and the text has no full stop: both are matched on as they stand.
    {"Frame not found", "odb_Step_MSGID_04", odb_Step_FRAME_NOT_FOUND},
    {nullptr, nullptr, {}}};

namespace {

const char* const kSource = "odb/impl/odb_Step";

// The step repository refuses a stored domain out of range before it makes the step; a record
// from elsewhere reads as TIME, the one domain whose frames need nothing beyond their value.
odb_Enum::odb_DomainEnum DomainOf(int stored) {
  return stored >= odb_Enum::TIME && stored <= odb_Enum::MODAL
             ? static_cast<odb_Enum::odb_DomainEnum>(stored)
             : odb_Enum::TIME;
}

// Frame values are kept in single precision. A double beyond the float range would make the
// conversion undefined, so it becomes the infinity of its sign, as rounding would give.
float Narrow(double value) {
  const double largest = std::numeric_limits<float>::max();
  if (value > largest) return std::numeric_limits<float>::infinity();
  if (value < -largest) return -std::numeric_limits<float>::infinity();
  return static_cast<float>(value);
}

odb_Frame FrameOf(const odb_StepData& step, const store_FrameRecord& record, int index) {
  auto data = std::make_shared<odb_FrameData>();
  data->index = index;
  data->incrementNumber = record.incrementNumber;
  data->frameValue = record.frameValue;
  data->description = odb_FromText(record.description);
  if (!record.loadCase.empty()) data->loadCase = odb_LoadCase(odb_FromText(record.loadCase));
  data->domain = step.domain;
  data->store = step.store;
  data->stepId = step.id;
  data->fields = step.FieldsOf(index);
  return odb_FrameAccess::Make(std::move(data));
}

// Stores a new frame and keeps the cache, when there is one, in step with the store.
odb_Frame AppendFrame(odb_StepData& step, const store_FrameRecord& record) {
  const int index = step.store->AddFrame(step.id, record);
  if (step.framesRead) {
    if (index == static_cast<int>(step.frames.size()))
      step.frames.push_back(record);
    else
      step.ReadNewFrames();  // the store numbered it differently: trust the store
  }
  return FrameOf(step, record, index);
}

}  // namespace

odb_StepData::odb_StepData(std::shared_ptr<store_Database> db, const store_StepRecord& record,
                           odb_AssemblyLookup assemblyLookup)
    : store(std::move(db)),
      id(record.id),
      name(odb_FromText(record.name)),
      description(odb_FromText(record.description)),
      domain(DomainOf(record.domain)),
      timePeriod(record.timePeriod),
      totalTime(record.totalTime),
      previousStepName(odb_FromText(record.previousStepName)),
      procedure(odb_FromText(record.procedure)),
      assembly(std::move(assemblyLookup)) {}

std::shared_ptr<odb_FrameFields> odb_StepData::FieldsOf(int frameIndex) const {
  const std::size_t at = static_cast<std::size_t>(frameIndex);
  if (frameFields.size() <= at) frameFields.resize(at + 1);
  if (!frameFields[at]) {
    auto fields = std::make_shared<odb_FrameFields>();
    fields->store = store;
    fields->stepId = id;
    fields->frameIndex = frameIndex;
    fields->subject = "frame " + std::to_string(frameIndex) + " of step " + odb_Quoted(name);
    fields->assembly = assembly;
    frameFields[at] = fields;
  }
  return frameFields[at];
}

std::string odb_StepData::Subject(const char* what) const {
  return std::string("the ") + what + " of step " + odb_Quoted(name);
}

void odb_StepData::ReadFrames() {
  if (framesRead) return;
  if (store) frames = odb_Reading(Subject("frames"), [&] { return store->Frames(id); });
  framesRead = true;
}

bool odb_StepData::ReadNewFrames() {
  if (!framesRead || !store) return false;
  std::vector<store_FrameRecord> more = odb_Reading(
      Subject("frames"), [&] { return store->Frames(id, static_cast<int>(frames.size())); });
  for (store_FrameRecord& record : more) frames.push_back(std::move(record));
  return !more.empty();
}

bool odb_StepData::ReadLoadCases() {
  bool found = false;
  if (store) {
    for (const std::string& name :
         odb_Reading(Subject("load cases"), [&] { return store->LoadCases(id); })) {
      const odb_String key = odb_FromText(name);
      if (loadCases.insert(key, odb_LoadCase(key))) found = true;
    }
  }
  loadCasesRead = true;
  return found;
}

odb_Frame odb_StepData::MakeFrame(int i) const {
  return FrameOf(*this, frames[static_cast<std::size_t>(i)], i);
}

odb_Frame& odb_StepData::KeptFrame(int i) const {
  const std::size_t at = static_cast<std::size_t>(i);
  if (keptFrames.size() <= at) keptFrames.resize(frames.size());
  if (!keptFrames[at]) keptFrames[at].reset(new odb_Frame(MakeFrame(i)));
  return *keptFrames[at];
}

namespace {

const odb_StepData& EmptyStep() {
  static const odb_StepData empty(nullptr, store_StepRecord());
  return empty;
}

// The data of a step that is about to be written to; an empty handle has nowhere to write.
odb_StepData& Writable(const std::shared_ptr<odb_StepData>& data, int site) {
  if (!data || !data->store) odb_ThrowMessage("The step belongs to no database.", kSource, site);
  return *data;
}

void EnsureLoadCases(odb_StepData& step) {
  if (!step.loadCasesRead) step.ReadLoadCases();
}

}  // namespace

odb_Step::odb_Step() = default;

odb_Step::odb_Step(std::shared_ptr<odb_StepData> data)
    : m_data(data), m_frames(odb_SequenceFrameAccess::Make(std::move(data))) {}

odb_String odb_Step::name() const {
  return m_data ? m_data->name : EmptyStep().name;
}

odb_String odb_Step::description() const {
  return m_data ? m_data->description : EmptyStep().description;
}

odb_Enum::odb_DomainEnum odb_Step::domain() const {
  return m_data ? m_data->domain : EmptyStep().domain;
}

odb_String odb_Step::procedure() const {
  return m_data ? m_data->procedure : EmptyStep().procedure;
}

double odb_Step::timePeriod() const {
  return m_data ? m_data->timePeriod : EmptyStep().timePeriod;
}

double odb_Step::totalTime() const {
  return m_data ? m_data->totalTime : EmptyStep().totalTime;
}

odb_String odb_Step::previousStepName() const {
  return m_data ? m_data->previousStepName : EmptyStep().previousStepName;
}

void odb_StepData::ReadSettings() {
  if (settingsRead) return;
  odb_StepProcedure read;
  read.timePeriod = timePeriod;
  if (store) {
    read = odb_Reading(Subject("procedure"), [&] {
      const auto procedures = store_StepProcedures(*store);
      const auto found = procedures.find(id);
      return found == procedures.end() ? read : odb_ProcedureOf(found->second);
    });
  }
  settings = read;
  settingsRead = true;
}

odb_StepProcedure odb_Step::procedureSettings() const {
  if (!m_data) return odb_StepProcedure();
  m_data->ReadSettings();
  return m_data->settings;
}

void odb_Step::setSolverInput(const odb_String& text) {
  odb_StepData& step = Writable(m_data, 201);
  step.ReadSettings();
  odb_StepProcedure changed = step.settings;
  changed.solverInput = text;
  store_SetStepProcedure(*step.store, step.id, odb_ProcedureRecord(changed));
  step.settings = changed;
}

odb_Frame odb_Step::Frame(int incrementNumber, double frameValue, const odb_String& description) {
  odb_StepData& step = Writable(m_data, 131);
  store_FrameRecord record;
  record.incrementNumber = incrementNumber;
  record.frameValue = Narrow(frameValue);
  record.description = odb_ToText(description);
  return AppendFrame(step, record);
}

odb_Frame odb_Step::Frame(const odb_LoadCase& loadCase, const odb_String& description) {
  return Frame(loadCase, description, 0.0);
}

odb_Frame odb_Step::Frame(const odb_LoadCase& loadCase, const odb_String& description,
                          double frameValue) {
  odb_StepData& step = Writable(m_data, 152);
  if (!loadCase.isEmpty()) {
    EnsureLoadCases(step);
    step.loadCases.CheckKey(loadCase.name());
  }
  store_FrameRecord record;
  // Load-case frames have no increment of their own; their index identifies them.
  record.incrementNumber =
      step.framesRead ? static_cast<int>(step.frames.size()) : step.store->FrameCount(step.id);
  record.frameValue = Narrow(frameValue);
  record.description = odb_ToText(description);
  record.loadCase = odb_ToText(loadCase.name());
  return AppendFrame(step, record);
}

odb_LoadCase& odb_Step::LoadCase(const odb_String& name) {
  odb_StepData& step = Writable(m_data, 170);
  if (name.Empty()) odb_ThrowMessage("Invalid load case name.", kSource, 171);
  EnsureLoadCases(step);
  if (!step.loadCases.isMember(name)) {
    step.store->AddLoadCase(step.id, odb_ToText(name));
    step.loadCases.insert(name, odb_LoadCase(name));
  }
  return step.loadCases.get(name);
}

odb_Step::LoadCaseRepository& odb_Step::loadCases() {
  odb_StepData& step = Writable(m_data, 181);
  EnsureLoadCases(step);
  return step.loadCases;
}

const odb_Step::LoadCaseRepository& odb_Step::loadCases() const {
  if (!m_data) return EmptyStep().loadCases;
  EnsureLoadCases(*m_data);
  return m_data->loadCases;
}

odb_HistoryRegion& odb_Step::HistoryRegion(const odb_String& name, const odb_String& description,
                                           const odb_HistoryPoint& point,
                                           const odb_LoadCase& loadCase) {
  return odb_AddHistoryRegion(Writable(m_data, 200), name, description, point, loadCase);
}

odb_Step::HistoryRegionRepository& odb_Step::historyRegions() {
  odb_StepData& step = Writable(m_data, 204);
  odb_ReadHistoryRegions(step);
  return step.historyRegions;
}

const odb_Step::HistoryRegionRepository& odb_Step::historyRegions() const {
  if (!m_data) return EmptyStep().historyRegions;
  odb_ReadHistoryRegions(*m_data);
  return m_data->historyRegions;
}

odb_Frame odb_Step::getFrame(double value, odb_Enum::odb_MatchEnum match) const {
  return getFrame(odb_LoadCase(), value, match);
}

odb_Frame odb_Step::getFrame(const odb_LoadCase& loadCase, double value,
                             odb_Enum::odb_MatchEnum match) const {
  if (m_data) m_data->ReadFrames();
  const std::vector<store_FrameRecord>& frames = m_data ? m_data->frames : EmptyStep().frames;
  const std::string wanted = odb_ToText(loadCase.name());
  double best = std::numeric_limits<double>::max();
  int chosen = -1;
  for (std::size_t i = 0; i < frames.size(); ++i) {
    if (!wanted.empty() && frames[i].loadCase != wanted) continue;
    const double t = frames[i].frameValue;
    const double d = value - t;
    // The comparisons are written as stated so that their strictness, which settles ties
    // (CLOSEST and BEFORE keep the earlier frame, AFTER takes the later), is plain to see.
    switch (static_cast<int>(match)) {
      case odb_Enum::CLOSEST:
        if (!(std::fabs(d) < best)) continue;
        break;
      case odb_Enum::BEFORE:
        if (t > value || !(value - t < best)) continue;
        break;
      case odb_Enum::AFTER:
        if (t < value || t - value > best) continue;
        break;
      case odb_Enum::EXACT:
        if (!(t == value)) continue;
        break;
      default:  // any other value takes every frame: the last one wins
        break;
    }
    chosen = static_cast<int>(i);
    best = std::fabs(d);
  }
  if (chosen < 0) odb_ThrowMessage(odb_CatalogueMessage(odb_Step_FRAME_NOT_FOUND), kSource, 226);
  return m_data->MakeFrame(chosen);
}

bool odb_Step::update() {
  if (!m_data) return false;
  bool found = m_data->ReadNewFrames();
  if (m_data->loadCasesRead && m_data->ReadLoadCases()) found = true;
  return found;
}
