#include "odb_Odb.h"

#include <cfloat>
#include <cmath>

#include "ddb_DdbData.h"
#include "odb_AssemblyData.h"
#include "odb_DiscretePartRepositoryData.h"
#include "odb_Exception.h"
#include "odb_MaterialData.h"
#include "odb_Message.h"
#include "odb_OdbData.h"
#include "odb_OdbRepository.h"
#include "odb_OdbRepositoryAccess.h"
#include "odb_SectionCategoryData.h"
#include "odb_SectionData.h"
#include "odb_StepRepositoryData.h"
#include "oif_Builder.h"
#include "oif_ModelInfo.h"
#include "store_Database.h"
#include "thr_ThreadSingleton.h"
#include "wip_WIP.h"

const uti_LabelRow<odb_OdbEnm> uti_LabelTable<odb_OdbEnm, 1>::rows[] = {
    {"Database save failed.", "odb_Odb_MSGID_00", odb_Odb_SAVE_FAILED},
    {"ODB not saved. Changing the path is not allowed.", "odb_Odb_MSGID_01", odb_Odb_PATH_CHANGE},
    {"Frame not found.", "odb_Odb_MSGID_02", odb_Odb_FRAME_NOT_FOUND},
    {"Previous step \"%s\" not found.", "odb_Odb_MSGID_03", odb_Odb_PREVIOUS_STEP_MISSING},
    {"A Step named \"%s\" already exists.", "odb_Odb_MSGID_04", odb_Odb_STEP_EXISTS},
    {"A part named \"%s\" already exists.", "odb_Odb_MSGID_05", odb_Odb_PART_EXISTS},
    {nullptr, nullptr, {}}};

namespace {

const char kSource[] = "odb/impl/odb_Odb";

[[noreturn]] void Throw(odb_OdbEnm code, int site, std::initializer_list<odb_String> args = {}) {
  odb_ThrowMessage(odb_CatalogueMessage(code, args), kSource, site);
}

// Elements name their section category; the lookup finds it in the database's repository for
// as long as the database lives, and gives the empty category afterwards.
odb_CategoryLookup CategoryLookup(const std::shared_ptr<odb_OdbData>& d) {
  std::weak_ptr<odb_OdbData> owner = d;
  return [owner](const odb_String& name) {
    std::shared_ptr<odb_OdbData> data = owner.lock();
    if (!data) return odb_SectionCategory();
    odb_SectionCategoryRepository& categories = odb_OdbAccess::Make(data).sectionCategories();
    return categories.isMember(name) ? categories.get(name) : odb_SectionCategory();
  };
}

// The step repository of the database: fields find their instances in its root assembly.
odb_StepRepository Steps(const std::shared_ptr<odb_OdbData>& d) {
  std::weak_ptr<odb_OdbData> owner = d;
  return odb_StepRepositoryAccess::Make(d->ddb, [owner]() -> std::shared_ptr<odb_AssemblyData> {
    std::shared_ptr<odb_OdbData> data = owner.lock();
    return data ? odb_AssemblyAccess::Data(odb_OdbAccess::Make(data).rootAssembly()) : nullptr;
  });
}

// After a failure took the file back to its last save, the database shows that save: what it
// read and wrote since is set aside (kept alive for the references callers hold, see
// odb_OdbData::retired) and read again from the file on first use, through a new view.
void Renew(const std::shared_ptr<odb_OdbData>& data) {
  odb_OdbData& d = *data;
  d.retired.push_back(std::make_shared<const odb_StepRepository>(d.steps));
  d.retired.push_back(std::move(d.parts));
  d.retired.push_back(std::move(d.rootAssembly));
  d.retired.push_back(std::move(d.sectionCategories));
  d.retired.push_back(std::move(d.materials));
  d.retired.push_back(std::move(d.sections));
  d.ddb = d.ddb->Renew();
  d.steps = Steps(data);
  d.stepsRead = false;
}

// A database whose file was closed answers for its identity only; everything else would read a
// file that is gone, or answer as if it were empty. One whose file went back to its last save
// reads itself again first.
void RequireOpen(const std::shared_ptr<odb_OdbData>& data) {
  const odb_OdbData& d = *data;
  if (d.ddb && !d.ddb->IsOpen()) odb_ThrowMessage("The database is closed.", kSource, __LINE__);
  if (d.ddb && d.ddb->Retired()) Renew(data);
}

// Tells why a save failed, and what the database holds now, before the catalogue's error.
void WarnSaveFailed(const odb_String& path, const store_Error& e) {
  const std::string cause = e.Cause().empty() ? std::string(e.what()) : e.Cause();
  const char* text =
      e.Discarded()
          ? "The database %1$s was not saved: %2$s. The file holds its last save, and so does "
            "the database in memory: what was written since is discarded."
      : e.Unconfirmed()
          ? "The database %1$s was not saved: %2$s. The file holds what was written, and so "
            "does the database in memory, but the disk did not confirm that it is on it: the "
            "next save that succeeds confirms it."
          : "The database %1$s was not saved: %2$s. What was written since the last save is "
            "kept for the next save.";
  thr_ThreadSingleton<wip_WIP>::Instance().Warning(odb_FormatMessage(text, {path, cause.c_str()}));
}

}  // namespace

odb_Odb::odb_Odb() : m_data(std::make_shared<odb_OdbData>()) {}

odb_Odb::odb_Odb(const odb_String& name, const odb_String& analysisTitle,
                 const odb_String& description, const odb_String& path, const ddb_Ddb& ddb,
                 bool readOnly, bool onlyUserDefinedData)
    : m_data(std::make_shared<odb_OdbData>()) {
  m_data->name = name;
  m_data->analysisTitle = analysisTitle;
  m_data->description = description;
  m_data->path = path;
  m_data->ddb = ddb_DdbAccess::Store(ddb);
  m_data->steps = Steps(m_data);
  m_data->readOnly = readOnly;
  m_data->onlyUserDefinedData = onlyUserDefinedData;
}

odb_String odb_Odb::name() const {
  return m_data->name;
}
odb_String odb_Odb::analysisTitle() const {
  return m_data->analysisTitle;
}
odb_String odb_Odb::description() const {
  return m_data->description;
}
odb_String odb_Odb::path() const {
  return m_data->path;
}
bool odb_Odb::isReadOnly() const {
  return m_data->readOnly;
}
bool odb_Odb::isOpen() const {
  return m_data->ddb && m_data->ddb->IsOpen();
}
ddb_Ddb odb_Odb::ddb() const {
  return ddb_DdbAccess::Make(m_data->ddb);
}
void odb_Odb::setOnlyHasUserDefinedData(bool only) {
  m_data->onlyUserDefinedData = only;
}
bool odb_Odb::onlyHasUserDefinedData() const {
  return m_data->onlyUserDefinedData;
}

odb_StepRepository& odb_Odb::steps() {
  RequireOpen(m_data);
  if (!m_data->stepsRead && isOpen()) {
    odb_StepRepositoryAccess::Load(m_data->steps);
    m_data->stepsRead = true;
  }
  return m_data->steps;
}

odb_SectionCategoryRepository& odb_Odb::sectionCategories() {
  RequireOpen(m_data);
  odb_OdbData& d = *m_data;
  if (!d.sectionCategories) {
    d.sectionCategories = std::make_unique<odb_SectionCategoryRepository>(
        odb_SectionCategoryRepositoryAccess::Make(d.ddb));
    if (isOpen()) odb_SectionCategoryRepositoryAccess::Load(*d.sectionCategories);
  }
  return *d.sectionCategories;
}

odb_DiscretePartRepository& odb_Odb::parts() {
  RequireOpen(m_data);
  odb_OdbData& d = *m_data;
  if (!d.parts) {
    d.parts = std::make_shared<odb_DiscretePartRepository>(
        odb_DiscretePartRepositoryAccess::Make(d.ddb, CategoryLookup(m_data)));
    if (isOpen()) odb_DiscretePartRepositoryAccess::Load(*d.parts);
  }
  return *d.parts;
}

odb_Assembly& odb_Odb::rootAssembly() {
  RequireOpen(m_data);
  odb_OdbData& d = *m_data;
  if (!d.rootAssembly) {
    auto data = std::make_shared<odb_AssemblyData>();
    data->store = isOpen() ? d.ddb : nullptr;
    parts();
    data->parts = d.parts;
    data->categories = CategoryLookup(m_data);
    d.rootAssembly = std::make_unique<odb_Assembly>(odb_AssemblyAccess::Make(data));
  }
  return *d.rootAssembly;
}

odb_MaterialRepository& odb_Odb::materials() {
  RequireOpen(m_data);
  odb_OdbData& d = *m_data;
  if (!d.materials) {
    d.materials =
        std::make_unique<odb_MaterialRepository>(odb_MaterialRepositoryAccess::Make(d.ddb));
    if (isOpen()) odb_MaterialRepositoryAccess::Load(*d.materials);
  }
  return *d.materials;
}

odb_SectionRepository& odb_Odb::sections() {
  RequireOpen(m_data);
  odb_OdbData& d = *m_data;
  if (!d.sections) {
    d.sections = std::make_unique<odb_SectionRepository>(odb_SectionRepositoryAccess::Make(d.ddb));
    if (isOpen()) odb_SectionRepositoryAccess::Load(*d.sections);
  }
  return *d.sections;
}

odb_DiscretePart& odb_Odb::DiscretePart(const odb_String& name,
                                        odb_Enum::odb_DimensionEnum dimension,
                                        odb_Enum::odb_PartTypeEnum type) {
  odb_DiscretePartRepository& repository = parts();
  if (repository.isMember(name)) Throw(odb_Odb_PART_EXISTS, 133, {name});
  return repository.DiscretePart(name, dimension, type);
}

odb_SectionCategory& odb_Odb::SectionCategory(const odb_String& name,
                                              const odb_String& description) {
  return sectionCategories().SectionCategory(name, description);
}

odb_Step& odb_Odb::Step(const odb_String& name, const odb_String& description,
                        odb_Enum::odb_DomainEnum domain, double timePeriod,
                        const odb_String& previousStepName, const odb_String& procedure,
                        double totalTime) {
  odb_StepRepository& repository = steps();
  if (!previousStepName.Empty() && !repository.isMember(previousStepName))
    Throw(odb_Odb_PREVIOUS_STEP_MISSING, 120, {previousStepName});
  if (repository.isMember(name)) Throw(odb_Odb_STEP_EXISTS, 124, {name});
  return odb_StepRepositoryAccess::AddStep(repository, name, description, domain, timePeriod,
                                           previousStepName, procedure, totalTime);
}

odb_Frame odb_Odb::getFrame(double value, odb_Enum::odb_MatchEnum match) {
  odb_StepRepository& repository = steps();
  double best = DBL_MAX;
  int bestStep = -1, bestFrame = -1;
  for (int s = 0; s < repository.size(); ++s) {
    odb_Step& step = repository.get(repository.stepNames()[s]);
    double offset = step.totalTime() >= 0.0 ? step.totalTime() : 0.0;
    odb_SequenceFrame& frames = step.frames();
    for (int f = 0; f < frames.size(); ++f) {
      double t = static_cast<float>(frames.get(f).frameValue() + offset);
      double d = value - t;
      bool take;
      switch (match) {
        case odb_Enum::CLOSEST:
          take = std::fabs(d) < best;
          break;
        case odb_Enum::BEFORE:
          take = t <= value && d < best;
          break;
        case odb_Enum::AFTER:
          take = t >= value && -d <= best;
          break;
        case odb_Enum::EXACT:
          take = t == value;
          break;
        default:
          take = true;
      }
      if (take) {
        bestStep = s;
        bestFrame = f;
        best = std::fabs(d);
      }
    }
  }
  if (bestStep < 0) Throw(odb_Odb_FRAME_NOT_FOUND, 170);
  return repository.get(repository.stepNames()[bestStep]).frames(bestFrame);
}

void odb_Odb::save(const odb_String& path) {
  RequireOpen(m_data);
  if (!path.Empty() && path != m_data->path) Throw(odb_Odb_PATH_CHANGE, 184);
  if (m_data->readOnly || !isOpen()) {
    odb_OdbRepositoryAccess::Warn(odb_OdbRepository_SAVE_READ_ONLY, {});
    return;
  }
  try {
    m_data->ddb->Commit();
  } catch (const store_Error& e) {
    WarnSaveFailed(m_data->path, e);
    Throw(odb_Odb_SAVE_FAILED, 194);
  }
}

bool odb_Odb::update() {
  RequireOpen(m_data);
  if (!m_data->stepsRead || !isOpen()) return false;
  return odb_StepRepositoryAccess::Update(m_data->steps);
}

void odb_Odb::close() {
  // A database closed before is left alone: its name may belong to another one by now.
  if (!isOpen()) return;
  odb_OdbRepository::Instance().remove(m_data->name);
}

void odb_Odb::writeInput(const char* fileName) const {
  RequireOpen(m_data);
  oif_ModelInfo info(*this);
  oif_Builder builder(info);
  if (!builder.WriteInputFile(fileName ? fileName : ""))
    odb_ThrowMessage(odb_String("Cannot write the input file '") + (fileName ? fileName : "") +
                         "'.",
                     kSource, 610);
}
