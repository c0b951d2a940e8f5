#include "fault_Vfs.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cerrno>
#include <new>

namespace {

sqlite3_vfs* Unix() {
  static sqlite3_vfs* unix = sqlite3_vfs_find("unix");
  return unix;
}

// A file of this VFS: the unix VFS's own file follows it in the same allocation.
struct File {
  sqlite3_file base;
  sqlite3_file* real;
  bool counted;  // a main database or its journal
  std::string path;
};

constexpr std::size_t kHeader = (sizeof(File) + 15) & ~std::size_t(15);

File* Of(sqlite3_file* file) {
  return reinterpret_cast<File*>(file);
}

const sqlite3_io_methods* Real(sqlite3_file* file) {
  return Of(file)->real->pMethods;
}

// What the unix VFS returns when the system call behind `op` fails with `error`.
int ResultOf(fault_Op op, int error) {
  switch (op) {
    case fault_Op::kWrite:
      return error == ENOSPC ? SQLITE_FULL : SQLITE_IOERR_WRITE;
    case fault_Op::kSync:
      return SQLITE_IOERR_FSYNC;
    case fault_Op::kRead:
      return SQLITE_IOERR_READ;
    case fault_Op::kTruncate:
      return SQLITE_IOERR_TRUNCATE;
  }
  return SQLITE_IOERR;
}

int Close(sqlite3_file* file) {
  File* f = Of(file);
  int rc = f->real->pMethods ? f->real->pMethods->xClose(f->real) : SQLITE_OK;
  f->~File();
  return rc;
}

int Read(sqlite3_file* file, void* out, int amount, sqlite3_int64 offset) {
  if (Of(file)->counted) {
    fault_Vfs::Outcome o = fault_Vfs::Instance().Enter(fault_Op::kRead);
    if (o.fail) return o.rc;
  }
  return Real(file)->xRead(Of(file)->real, out, amount, offset);
}

// Reads bytes for the undo of a power loss; bytes past the end of the file read as zeros.
bool ReadOld(sqlite3_file* real, char* out, std::int64_t n, std::int64_t offset) {
  int rc = real->pMethods->xRead(real, out, static_cast<int>(n), offset);
  return rc == SQLITE_OK || rc == SQLITE_IOERR_SHORT_READ;
}

int Write(sqlite3_file* file, const void* data, int amount, sqlite3_int64 offset) {
  File* f = Of(file);
  if (f->counted) {
    fault_Vfs::Outcome o = fault_Vfs::Instance().Enter(fault_Op::kWrite);
    if (o.fail) return o.rc;
    fault_Vfs::Instance().Keep(
        f->path, offset, amount,
        [f](char* out, std::int64_t n, std::int64_t at) { return ReadOld(f->real, out, n, at); });
  }
  return Real(file)->xWrite(f->real, data, amount, offset);
}

int Truncate(sqlite3_file* file, sqlite3_int64 size) {
  File* f = Of(file);
  if (f->counted) {
    fault_Vfs::Outcome o = fault_Vfs::Instance().Enter(fault_Op::kTruncate);
    if (o.fail) return o.rc;
    sqlite3_int64 now = 0;
    if (Real(file)->xFileSize(f->real, &now) == SQLITE_OK && now > size)
      fault_Vfs::Instance().Keep(
          f->path, size, now - size,
          [f](char* out, std::int64_t n, std::int64_t at) { return ReadOld(f->real, out, n, at); });
  }
  return Real(file)->xTruncate(f->real, size);
}

int Sync(sqlite3_file* file, int flags) {
  File* f = Of(file);
  if (f->counted) {
    fault_Vfs::Outcome o = fault_Vfs::Instance().Enter(fault_Op::kSync);
    if (o.fail) return o.rc;
  }
  int rc = Real(file)->xSync(f->real, flags);
  sqlite3_int64 size = 0;
  if (rc == SQLITE_OK && f->counted && Real(file)->xFileSize(f->real, &size) == SQLITE_OK)
    fault_Vfs::Instance().Synced(f->path, size);
  return rc;
}

int FileSize(sqlite3_file* file, sqlite3_int64* size) {
  return Real(file)->xFileSize(Of(file)->real, size);
}
int Lock(sqlite3_file* file, int level) {
  return Real(file)->xLock(Of(file)->real, level);
}
int Unlock(sqlite3_file* file, int level) {
  return Real(file)->xUnlock(Of(file)->real, level);
}
int CheckReservedLock(sqlite3_file* file, int* out) {
  return Real(file)->xCheckReservedLock(Of(file)->real, out);
}
int FileControl(sqlite3_file* file, int op, void* arg) {
  return Real(file)->xFileControl(Of(file)->real, op, arg);
}
int SectorSize(sqlite3_file* file) {
  return Real(file)->xSectorSize(Of(file)->real);
}
int DeviceCharacteristics(sqlite3_file* file) {
  return Real(file)->xDeviceCharacteristics(Of(file)->real);
}
int ShmMap(sqlite3_file* file, int page, int size, int extend, void volatile** out) {
  return Real(file)->xShmMap(Of(file)->real, page, size, extend, out);
}
int ShmLock(sqlite3_file* file, int offset, int n, int flags) {
  return Real(file)->xShmLock(Of(file)->real, offset, n, flags);
}
void ShmBarrier(sqlite3_file* file) {
  Real(file)->xShmBarrier(Of(file)->real);
}
int ShmUnmap(sqlite3_file* file, int deleteFlag) {
  return Real(file)->xShmUnmap(Of(file)->real, deleteFlag);
}
// No mapping is handed out: SQLite then reads each page through xRead.
int Fetch(sqlite3_file*, sqlite3_int64, int, void** out) {
  *out = nullptr;
  return SQLITE_OK;
}
int Unfetch(sqlite3_file*, sqlite3_int64, void*) {
  return SQLITE_OK;
}

const sqlite3_io_methods kMethods = {3,
                                     Close,
                                     Read,
                                     Write,
                                     Truncate,
                                     Sync,
                                     FileSize,
                                     Lock,
                                     Unlock,
                                     CheckReservedLock,
                                     FileControl,
                                     SectorSize,
                                     DeviceCharacteristics,
                                     ShmMap,
                                     ShmLock,
                                     ShmBarrier,
                                     ShmUnmap,
                                     Fetch,
                                     Unfetch};

int Open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags) {
  File* f = new (file) File();
  f->real = reinterpret_cast<sqlite3_file*>(reinterpret_cast<char*>(file) + kHeader);
  f->counted = name && (flags & (SQLITE_OPEN_MAIN_DB | SQLITE_OPEN_MAIN_JOURNAL));
  if (name) f->path = name;
  int rc = Unix()->xOpen(Unix(), name, f->real, flags, outFlags);
  if (rc != SQLITE_OK) {
    // SQLite calls no xClose for a file that failed to open.
    if (f->real->pMethods) f->real->pMethods->xClose(f->real);
    f->~File();
    file->pMethods = nullptr;
    return rc;
  }
  f->base.pMethods = &kMethods;
  sqlite3_int64 size = 0;
  if (f->counted && f->real->pMethods->xFileSize(f->real, &size) == SQLITE_OK)
    fault_Vfs::Instance().Opened(f->path, size);
  return SQLITE_OK;
}

int Delete(sqlite3_vfs*, const char* name, int syncDir) {
  if (fault_Vfs::Instance().PowerIsCut()) return SQLITE_IOERR_DELETE;
  int rc = Unix()->xDelete(Unix(), name, syncDir);
  if (rc == SQLITE_OK) fault_Vfs::Instance().Deleted(name);
  return rc;
}

int Access(sqlite3_vfs*, const char* name, int flags, int* out) {
  return Unix()->xAccess(Unix(), name, flags, out);
}
int FullPathname(sqlite3_vfs*, const char* name, int n, char* out) {
  return Unix()->xFullPathname(Unix(), name, n, out);
}
void* DlOpen(sqlite3_vfs*, const char* name) {
  return Unix()->xDlOpen(Unix(), name);
}
void DlError(sqlite3_vfs*, int n, char* out) {
  Unix()->xDlError(Unix(), n, out);
}
void (*DlSym(sqlite3_vfs*, void* handle, const char* symbol))(void) {
  return Unix()->xDlSym(Unix(), handle, symbol);
}
void DlClose(sqlite3_vfs*, void* handle) {
  Unix()->xDlClose(Unix(), handle);
}
int Randomness(sqlite3_vfs*, int n, char* out) {
  return Unix()->xRandomness(Unix(), n, out);
}
int Sleep(sqlite3_vfs*, int micro) {
  return Unix()->xSleep(Unix(), micro);
}
int CurrentTime(sqlite3_vfs*, double* out) {
  return Unix()->xCurrentTime(Unix(), out);
}
int GetLastError(sqlite3_vfs*, int n, char* out) {
  return Unix()->xGetLastError(Unix(), n, out);
}
int CurrentTimeInt64(sqlite3_vfs*, sqlite3_int64* out) {
  return Unix()->xCurrentTimeInt64(Unix(), out);
}

sqlite3_vfs* Vfs() {
  static sqlite3_vfs vfs = {1,
                            static_cast<int>(kHeader + Unix()->szOsFile),
                            Unix()->mxPathname,
                            nullptr,
                            "fault",
                            nullptr,
                            Open,
                            Delete,
                            Access,
                            FullPathname,
                            DlOpen,
                            DlError,
                            DlSym,
                            DlClose,
                            Randomness,
                            Sleep,
                            CurrentTime,
                            GetLastError};
  vfs.iVersion = 2;
  vfs.xCurrentTimeInt64 = CurrentTimeInt64;
  return &vfs;
}

}  // namespace

fault_Vfs& fault_Vfs::Instance() {
  static fault_Vfs instance;
  return instance;
}

void fault_Vfs::Install() {
  sqlite3_initialize();
  sqlite3_vfs_register(Vfs(), 1);
}

void fault_Vfs::Reset() {
  std::lock_guard<std::mutex> lock(m_mutex);
  for (int& count : m_counts) count = 0;
  m_injected = 0;
  m_failing = m_cutArmed = m_cut = false;
  for (auto& entry : m_files) entry.second.undo.clear();
  // Sizes as they are now: what the files hold counts as durable from here.
  for (auto it = m_files.begin(); it != m_files.end();) {
    int fd = ::open(it->first.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
      it = m_files.erase(it);
      continue;
    }
    it->second.size = ::lseek(fd, 0, SEEK_END);
    ::close(fd);
    ++it;
  }
}

void fault_Vfs::Fail(fault_Op op, int n, int error, bool persistent) {
  std::lock_guard<std::mutex> lock(m_mutex);
  m_failing = true;
  m_failOp = op;
  m_failAt = n;
  m_failError = error;
  m_persistent = persistent;
}

void fault_Vfs::Clear() {
  std::lock_guard<std::mutex> lock(m_mutex);
  m_failing = false;
}

void fault_Vfs::CutPower(fault_Op op, int n) {
  std::lock_guard<std::mutex> lock(m_mutex);
  m_cutArmed = true;
  m_cutOp = op;
  m_cutAt = n;
}

void fault_Vfs::LosePower() {
  std::lock_guard<std::mutex> lock(m_mutex);
  for (auto& entry : m_files) {
    int fd = ::open(entry.first.c_str(), O_WRONLY | O_CLOEXEC);
    if (fd < 0) continue;
    const std::vector<Undo>& undo = entry.second.undo;
    for (auto it = undo.rbegin(); it != undo.rend(); ++it)
      if (::pwrite(fd, it->bytes.data(), it->bytes.size(), it->offset) < 0) break;
    if (::ftruncate(fd, entry.second.size) != 0) {
      // Left as it is: the comparison that follows reports the file.
    }
    ::close(fd);
    entry.second.undo.clear();
  }
  m_cutArmed = m_cut = false;
}

int fault_Vfs::Count(fault_Op op) const {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_counts[static_cast<int>(op)];
}

int fault_Vfs::Injected() const {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_injected;
}

bool fault_Vfs::PowerIsCut() const {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_cut;
}

fault_Vfs::Outcome fault_Vfs::Enter(fault_Op op) {
  std::lock_guard<std::mutex> lock(m_mutex);
  const int n = ++m_counts[static_cast<int>(op)];
  if (m_cutArmed && op == m_cutOp && n == m_cutAt) m_cut = true;
  // After the cut, nothing changes the disk; reads still see what it holds.
  if (m_cut && op != fault_Op::kRead) {
    ++m_injected;
    errno = EIO;
    return {true, ResultOf(op, EIO)};
  }
  if (m_failing && op == m_failOp && (n == m_failAt || (m_persistent && n > m_failAt))) {
    ++m_injected;
    errno = m_failError;
    return {true, ResultOf(op, m_failError)};
  }
  return {};
}

void fault_Vfs::Opened(const std::string& path, std::int64_t size) {
  std::lock_guard<std::mutex> lock(m_mutex);
  // A file opened again keeps what its earlier handles left unsynced.
  if (m_files.find(path) == m_files.end()) m_files[path].size = size;
}

void fault_Vfs::Deleted(const std::string& path) {
  std::lock_guard<std::mutex> lock(m_mutex);
  m_files.erase(path);
}

void fault_Vfs::Synced(const std::string& path, std::int64_t size) {
  std::lock_guard<std::mutex> lock(m_mutex);
  Durable& file = m_files[path];
  file.size = size;
  file.undo.clear();
}
