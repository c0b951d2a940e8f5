#include "odb_OdbRepository.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <vector>

#include "ddb_DdbData.h"
#include "odb_Damage.h"
#include "odb_Exception.h"
#include "odb_Exceptions.h"
#include "odb_LockFile.h"
#include "odb_Message.h"
#include "odb_OdbData.h"
#include "odb_OdbRepositoryAccess.h"
#include "odb_Util.h"
#include "odb_Version.h"
#include "store_Database.h"
#include "thr_ThreadSingleton.h"
#include "wip_WIP.h"

const uti_LabelRow<odb_OdbRepositoryEnm> uti_LabelTable<odb_OdbRepositoryEnm, 1>::rows[] = {
    {"An output database lock file %1$s has been detected. This may indicate that the output "
     "database is opened for writing by another application.\n%2$s will be opened read-only. ",
     "odb_OdbRepository_MSGID_00", odb_OdbRepository_LOCK_FOUND},
    {"A database named ('%s') already exists.", "odb_OdbRepository_MSGID_01",
     odb_OdbRepository_NAME_EXISTS},
    {"The path '%s' has an existing ddb associated with it.", "odb_OdbRepository_MSGID_02",
     odb_OdbRepository_PATH_OPEN},
    {"KORVEL/Scripting Interface", "odb_OdbRepository_MSGID_03", odb_OdbRepository_VERSION_PREFIX},
    {"Cannot create file %1$s. %2$s", "odb_OdbRepository_MSGID_04",
     odb_OdbRepository_CANNOT_CREATE},
    {"Cannot open file %1$s. %2$s", "odb_OdbRepository_MSGID_05", odb_OdbRepository_CANNOT_OPEN},
    {"ODB is already in use by someone else. database cannot be opened for writing and will be "
     "opened readOnly",
     "odb_OdbRepository_MSGID_06", odb_OdbRepository_IN_USE},
    {"Output database %s cannot be opened with write access due to file permission settings or a "
     "database version incompatibility.\nThe ODB will be opened read-only.",
     "odb_OdbRepository_MSGID_07", odb_OdbRepository_NOT_WRITABLE},
    {"Database was opened read-only and cannot be saved.", "odb_OdbRepository_MSGID_08",
     odb_OdbRepository_SAVE_READ_ONLY},
    {"The database has been opened with readOnly flag on. It will remain readOnly.",
     "odb_OdbRepository_MSGID_09", odb_OdbRepository_STAYS_READ_ONLY},
    {nullptr, nullptr, {}}};

namespace {

const char kSource[] = "odb/impl/odb_OdbRepository";

[[noreturn]] void Throw(odb_OdbRepositoryEnm code, int site,
                        std::initializer_list<odb_String> args) {
  odb_ThrowMessage(odb_CatalogueMessage(code, args), kSource, site);
}

// Writing needs the permission and at least one write bit: a file that its owner made read-only
// stays read-only even for a user whom the system would let write it anyway.
bool Writable(const odb_String& path) {
  struct stat st;
  return ::access(path.CStr(), W_OK) == 0 && ::stat(path.CStr(), &st) == 0 && (st.st_mode & 0222);
}

}  // namespace

using Access = odb_OdbRepositoryAccess;

// The walk's shared copy of the map is gone when this returns, so the caller may change the map
// without copying nodes that callers hold references into.
std::vector<odb_String> odb_OdbRepositoryAccess::NamesOf(const odb_OdbRepository& registry,
                                                         const odb_String& path) {
  std::vector<odb_String> names;
  cow_BtreeIterator<odb_String, odb_Odb> it(registry.m_odbMap);
  for (it.First(); !it.IsDone(); it.Next())
    if (path.Empty() || it.Current()->value.path() == path) names.push_back(it.Current()->key);
  return names;
}

odb_OdbRepository::odb_OdbRepository() : m_files(std::make_unique<odb_OdbRepositoryFiles>()) {}

odb_OdbRepository::~odb_OdbRepository() {
  for (const odb_String& name : Access::NamesOf(*this, odb_String())) remove(name);
}

// Out of line, so that every caller reaches the instance through the library's own code.
odb_OdbRepository& odb_OdbRepository::Instance() {
  return thr_GlobalSingleton<odb_OdbRepository>::Instance();
}

void odb_OdbRepositoryAccess::Warn(odb_OdbRepositoryEnm code,
                                   std::initializer_list<odb_String> args) {
  thr_ThreadSingleton<wip_WIP>::Instance().Warning(odb_CatalogueMessage(code, args));
}

odb_String odb_OdbRepositoryAccess::LockFileOf(const odb_String& path) {
  return path + ".lck";
}

void odb_OdbRepository::insert(const odb_String& name, const odb_Odb& odb) {
  if (!m_odbMap.Insert(name, odb)) m_odbMap.Find(name)->value = odb;
}

odb_Odb& odb_OdbRepository::get(const odb_String& name) {
  auto* node = m_odbMap.Find(name);
  return node ? node->value : m_fallback;
}

const odb_Odb& odb_OdbRepository::constGet(const odb_String& name) const {
  const auto* node = m_odbMap.ConstFind(name);
  return node ? node->value : m_fallback;
}

bool odb_OdbRepository::isMember(const odb_String& name) const {
  return m_odbMap.ConstFind(name) != nullptr;
}

bool odb_OdbRepository::IsFileOpen(const odb_String& path) const {
  return !path.Empty() && !Access::NamesOf(*this, path).empty();
}

bool odb_OdbRepository::IsOdbLocked(const odb_String& path) const {
  odb_String lock = Access::LockFileOf(path);
  int fd = ::open(lock.CStr(), O_RDWR | O_CLOEXEC);
  if (fd < 0) return false;
  ::close(fd);
  Access::Warn(odb_OdbRepository_LOCK_FOUND, {lock, path});
  // A writer that was killed leaves its lock behind, and every later open reads only: say so
  // when the lock names a process of this host that is gone, and how to get out of it.
  const std::string gone = odb_GoneLockWriter(lock.CStr());
  if (!gone.empty())
    thr_ThreadSingleton<wip_WIP>::Instance().Warning(odb_FormatMessage(
        "The lock file %1$s was left by %2$s, which no longer runs: that writer ended without "
        "closing the database. What it last saved is intact. Delete %1$s to open the database "
        "for writing again.",
        {lock, gone.c_str()}));
  return true;
}

bool odb_OdbRepository::LockOdb(const odb_String& path) const {
  return odb_WriteLockFile(Access::LockFileOf(path).CStr());
}

bool odb_OdbRepository::RemoveLock(const odb_String& path) const {
  return ::unlink(Access::LockFileOf(path).CStr()) == 0;
}

void odb_OdbRepository::remove(const odb_String& name) {
  if (!isMember(name)) return;
  odb_Odb odb = constGet(name);
  odb_String path = odb.path();
  if (!odb.isReadOnly()) RemoveLock(path);
  if (Access::NamesOf(*this, path).size() <= 2) {
    Access::CloseOdb(*this, path);
  } else {
    odb_OdbAccess::Store(odb)->Close();
    Access::Drop(*this, name);
  }
}

void odb_OdbRepositoryAccess::Drop(odb_OdbRepository& registry, const odb_String& name) {
  cow_BtreeLink<odb_String, odb_Odb> removed;
  if (!registry.m_odbMap.Remove(name, removed)) return;
  // The object stays where the caller's reference points, but as a closed database that holds
  // nothing it read: a program that opens, reads and closes database after database must not
  // keep them all in memory. Copies the caller made keep their own share.
  odb_Odb& kept = removed.Get()->value;
  kept = odb_Odb(kept.name(), kept.analysisTitle(), kept.description(), kept.path(), kept.ddb(),
                 kept.isReadOnly(), kept.onlyHasUserDefinedData());
  registry.m_files->closed.push_back(removed);
}

void odb_OdbRepository::RespondToCloseOdb(const odb_String& path) {
  for (const odb_String& name : Access::NamesOf(*this, path)) Access::Drop(*this, name);
}

void odb_OdbRepositoryAccess::CloseOdb(odb_OdbRepository& registry, const odb_String& path) {
  bool writable = false;
  for (const odb_String& name : NamesOf(registry, path)) {
    const odb_Odb& odb = registry.constGet(name);
    writable = writable || !odb.isReadOnly();
    if (const auto& file = odb_OdbAccess::Store(odb)) file->Close();
  }
  auto& files = registry.m_files->open;
  auto open = files.find(path.CStr());
  if (open != files.end()) {
    open->second->Close();
    files.erase(open);
  }
  if (writable) registry.RemoveLock(path);
  registry.RespondToCloseOdb(path);
}

std::shared_ptr<store_Database> odb_OdbRepositoryAccess::OpenFile(const odb_OdbRepository& registry,
                                                                  const odb_String& path) {
  const auto& files = registry.m_files->open;
  auto open = files.find(path.CStr());
  return open == files.end() ? nullptr : open->second;
}

void odb_OdbRepositoryAccess::AddOpenFile(odb_OdbRepository& registry, const odb_String& path,
                                          std::shared_ptr<store_Database> file) {
  registry.m_files->open[path.CStr()] = std::move(file);
}

void odb_OdbRepositoryIT::first() {
  m_names.clearAll();
  m_i = 0;
  cow_BtreeIterator<odb_String, odb_Odb> it(m_repository.odbMap());
  for (it.First(); !it.IsDone(); it.Next()) m_names.append(it.Current()->key);
}

const odb_String& odb_OdbRepositoryIT::currentKey() const {
  static const odb_String none;
  return isDone() ? none : m_names[m_i];
}

odb_Odb& Odb(const odb_String& name, const odb_String& analysisTitle, const odb_String& description,
             const odb_String& path) {
  odb_OdbRepository& registry = odb_OdbRepository::Instance();
  odb_String absolute = odb_PortablePath(path);
  odb_String key = name.Empty() ? absolute : name;
  if (registry.isMember(key)) Throw(odb_OdbRepository_NAME_EXISTS, 210, {key});
  if (registry.IsFileOpen(absolute)) Throw(odb_OdbRepository_PATH_OPEN, 212, {absolute});
  std::shared_ptr<store_Database> file;
  try {
    file = store_Database::Create(absolute.CStr());
    odb_String version = odb_CatalogueMessage(odb_OdbRepository_VERSION_PREFIX);
    version += QTVODB_VERSION_STRING;
    file->SetHeader("analysis_version", version.CStr());
    file->SetHeader("description", odb_ToText(description));
    file->SetModelTitle("Default Model", odb_ToText(analysisTitle));
    file->Commit();
  } catch (const store_Error& e) {
    if (file) file->Close();
    Throw(odb_OdbRepository_CANNOT_CREATE, 226, {absolute, e.what()});
  }
  registry.LockOdb(absolute);
  Access::AddOpenFile(registry, absolute, file);
  registry.insert(key, odb_Odb(key, analysisTitle, description, absolute,
                               ddb_DdbAccess::Make(file->View(false)), false));
  return registry.get(key);
}

odb_Odb& openOdb(const odb_String& path, bool readOnly) {
  return openOdb(odb_String(), path, readOnly);
}

odb_Odb& openOdb(const odb_String& name, const odb_String& path, bool readOnly) {
  odb_OdbRepository& registry = odb_OdbRepository::Instance();
  odb_String absolute = odb_PortablePath(path);
  odb_String key = name.Empty() ? absolute : name;

  if (registry.isMember(key)) {
    odb_Odb& registered = registry.get(key);
    const std::shared_ptr<store_Database>& file = odb_OdbAccess::Store(registered);
    bool sameFile = file && file->IsFileAt(registered.path().CStr());
    if (sameFile) {
      if (registered.path() != absolute) Throw(odb_OdbRepository_NAME_EXISTS, 245, {key});
      if (registered.isReadOnly()) Access::Warn(odb_OdbRepository_STAYS_READ_ONLY, {});
      return registered;
    }
    // The file on disk is no longer the one that was opened: let go of the old one first.
    Access::CloseOdb(registry, registered.path());
  }

  int version = 0;
  try {
    version = store_Database::SchemaVersion(absolute.CStr());
  } catch (const store_Error& e) {
    Throw(odb_OdbRepository_CANNOT_OPEN, 256, {absolute, e.what()});
  }
  if (version < store_kSchemaVersion)
    odb_Exception(odb_Exceptions_PREVIOUS_VERSION, absolute, odb_String(), version,
                  store_kSchemaVersion, readOnly)
        .Throw(kSource, 260);
  if (version > store_kSchemaVersion)
    odb_Exception(odb_Exceptions_NEWER_VERSION, absolute, odb_String(), version,
                  store_kSchemaVersion, readOnly)
        .Throw(kSource, 264);

  bool locked = false;
  if (!readOnly) {
    if (registry.IsOdbLocked(absolute)) {
      readOnly = true;
    } else if (!Writable(absolute)) {
      Access::Warn(odb_OdbRepository_NOT_WRITABLE, {absolute});
      readOnly = true;
    } else {
      locked = registry.LockOdb(absolute);
    }
  }
  std::shared_ptr<store_Database> file = Access::OpenFile(registry, absolute);
  if (file && !readOnly && file->ReadOnly()) {
    Access::Warn(odb_OdbRepository_IN_USE, {});
    readOnly = true;
    if (locked) registry.RemoveLock(absolute);
  }
  const bool opened = !file;
  odb_String title, description;
  try {
    if (opened) file = store_Database::Open(absolute.CStr(), readOnly);
    odb_Reading("the header", [&] {
      title = odb_FromText(file->ModelTitle("Default Model"));
      description = odb_FromText(file->Header("description"));
    });
  } catch (const store_Error& e) {
    if (opened && file) file->Close();
    if (locked) registry.RemoveLock(absolute);
    Throw(odb_OdbRepository_CANNOT_OPEN, 288, {absolute, e.what()});
  }
  if (opened) Access::AddOpenFile(registry, absolute, file);
  // Each name gets a view of the file: closing one name closes only its view, and a read-only
  // name refuses every write even on the connection of a writer in this process.
  registry.insert(key, odb_Odb(key, title, description, absolute,
                               ddb_DdbAccess::Make(file->View(readOnly)), readOnly));
  return registry.get(key);
}

void saveOdb(odb_Odb& odb) {
  if (odb.isReadOnly()) {
    Access::Warn(odb_OdbRepository_SAVE_READ_ONLY, {});
    return;
  }
  odb.save();
}

void closeOdb(odb_Odb& odb) {
  // A database closed before is left alone: its path may have been opened again since.
  if (!odb.isOpen()) return;
  Access::CloseOdb(odb_OdbRepository::Instance(), odb.path());
}
