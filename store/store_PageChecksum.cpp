#include "store_PageChecksum.h"

#include <sqlite3.h>

#include <atomic>
#include <cstring>
#include <mutex>
#include <vector>

// The library's dispatching entry points pick the widest vector unit the processor has at run
// time (AVX2, AVX-512); hashing every page read is a fifth of a read's time otherwise.
#include <xxh_x86dispatch.h>

namespace {

std::atomic<bool> g_checks{true};
thread_local std::uint32_t t_damagedPage = 0;

std::uint64_t Stored(const unsigned char* at) {
  std::uint64_t value = 0;
  for (int i = store_kChecksumBytes - 1; i >= 0; --i) value = (value << 8) | at[i];
  return value;
}

void Store(unsigned char* at, std::uint64_t value) {
  for (int i = 0; i < store_kChecksumBytes; ++i, value >>= 8)
    at[i] = static_cast<unsigned char>(value);
}

// A read or write of a whole page: a power of two from 512 bytes, at a multiple of its length.
bool WholePage(int bytes, sqlite3_int64 offset) {
  return bytes >= 512 && bytes <= 65536 && (bytes & (bytes - 1)) == 0 && offset % bytes == 0;
}

// The page size that a file header (the first bytes of page 1) gives.
int HeaderPageSize(const void* header) {
  const unsigned char* h = static_cast<const unsigned char*>(header);
  const int size = (h[16] << 8) | h[17];
  return size == 1 ? 65536 : size;
}

// A database file seen through the checking VFS; the system's file follows it in memory.
struct CheckedFile {
  sqlite3_file base;
  sqlite3_file* real;
  // Byte 20 of the file header, as last read or written, reserves the checksum's 8 bytes.
  bool checked;
  // Set while the file is rewritten in another page size (store_kRepageControl): pages are
  // then read and written in pieces of either size, and get their checksums at the sync.
  bool repaging;
};

sqlite3_file* Real(sqlite3_file* file) {
  return reinterpret_cast<CheckedFile*>(file)->real;
}

// The file header, at offset 0, says whether the file's pages carry checksums.
void NoteHeader(CheckedFile* file, const void* data, int bytes, sqlite3_int64 offset) {
  if (offset == 0 && bytes >= 21)
    file->checked = static_cast<const unsigned char*>(data)[20] == store_kChecksumBytes;
}

int Close(sqlite3_file* file) {
  return Real(file)->pMethods->xClose(Real(file));
}

int Read(sqlite3_file* file, void* out, int bytes, sqlite3_int64 offset) {
  CheckedFile* p = reinterpret_cast<CheckedFile*>(file);
  int rc = p->real->pMethods->xRead(p->real, out, bytes, offset);
  if (rc != SQLITE_OK && rc != SQLITE_IOERR_SHORT_READ) return rc;
  if (p->repaging) return rc;
  NoteHeader(p, out, bytes, offset);
  // A short read leaves zeros past the end of the file, which fail the check like any damage.
  // The first page read in another size than its header gives is a connection whose file was
  // rewritten in other pages since (small files are): SQLite takes the header's size and reads
  // again, and that read is checked.
  if (p->checked && WholePage(bytes, offset) && g_checks.load(std::memory_order_relaxed) &&
      (offset != 0 || HeaderPageSize(out) == bytes)) {
    const std::uint32_t number = static_cast<std::uint32_t>(offset / bytes) + 1;
    if (!store_PageSound(out, static_cast<std::size_t>(bytes), number)) {
      store_NoteDamagedPage(number);
      return SQLITE_IOERR_DATA;
    }
  }
  return rc;
}

int Write(sqlite3_file* file, const void* data, int bytes, sqlite3_int64 offset) {
  CheckedFile* p = reinterpret_cast<CheckedFile*>(file);
  if (p->repaging) return p->real->pMethods->xWrite(p->real, data, bytes, offset);
  NoteHeader(p, data, bytes, offset);
  if (p->checked && WholePage(bytes, offset)) {
    // The reserved bytes are ours: SQLite never looks at them, so the page it hands over (its
    // own cached copy) takes the checksum in place.
    unsigned char* page = static_cast<unsigned char*>(const_cast<void*>(data));
    const std::uint32_t number = static_cast<std::uint32_t>(offset / bytes) + 1;
    Store(page + bytes - store_kChecksumBytes,
          store_PageChecksum(page, static_cast<std::size_t>(bytes), number));
  }
  return p->real->pMethods->xWrite(p->real, data, bytes, offset);
}

// The page size and page count the file holds now, from its header and its length.
int PagesOnDisk(sqlite3_file* real, int& pageSize, sqlite3_int64& pages) {
  unsigned char header[100];
  int rc = real->pMethods->xRead(real, header, sizeof header, 0);
  if (rc != SQLITE_OK) return rc;
  sqlite3_int64 bytes = 0;
  rc = real->pMethods->xFileSize(real, &bytes);
  pageSize = HeaderPageSize(header);
  pages = WholePage(pageSize, 0) ? bytes / pageSize : 0;
  return rc;
}

// Gives every page of the file the checksum of what it holds now, in the page size its header
// gives: what a rewrite in another page size wrote, in pieces of either size, is whole by the
// time it syncs the file.
int StampAll(sqlite3_file* real) {
  int pageSize = 0;
  sqlite3_int64 pages = 0;
  int rc = PagesOnDisk(real, pageSize, pages);
  std::vector<unsigned char> page(static_cast<std::size_t>(pageSize > 0 ? pageSize : 0));
  for (sqlite3_int64 i = 0; rc == SQLITE_OK && i < pages; ++i) {
    rc = real->pMethods->xRead(real, page.data(), pageSize, i * pageSize);
    if (rc != SQLITE_OK) break;
    Store(page.data() + pageSize - store_kChecksumBytes,
          store_PageChecksum(page.data(), static_cast<std::size_t>(pageSize),
                             static_cast<std::uint32_t>(i + 1)));
    rc = real->pMethods->xWrite(real, page.data() + pageSize - store_kChecksumBytes,
                                store_kChecksumBytes, (i + 1) * pageSize - store_kChecksumBytes);
  }
  return rc;
}

// True when every page of the file holds its checksum.
bool AllSound(sqlite3_file* real) {
  int pageSize = 0;
  sqlite3_int64 pages = 0;
  if (PagesOnDisk(real, pageSize, pages) != SQLITE_OK) return false;
  std::vector<unsigned char> page(static_cast<std::size_t>(pageSize > 0 ? pageSize : 0));
  for (sqlite3_int64 i = 0; i < pages; ++i)
    if (real->pMethods->xRead(real, page.data(), pageSize, i * pageSize) != SQLITE_OK ||
        !store_PageSound(page.data(), static_cast<std::size_t>(pageSize),
                         static_cast<std::uint32_t>(i + 1)))
      return false;
  return true;
}

int Truncate(sqlite3_file* file, sqlite3_int64 size) {
  return Real(file)->pMethods->xTruncate(Real(file), size);
}
int Sync(sqlite3_file* file, int flags) {
  CheckedFile* p = reinterpret_cast<CheckedFile*>(file);
  if (p->repaging && p->checked) {
    const int rc = StampAll(p->real);
    if (rc != SQLITE_OK) return rc;
  }
  return p->real->pMethods->xSync(p->real, flags);
}
int FileSize(sqlite3_file* file, sqlite3_int64* size) {
  return Real(file)->pMethods->xFileSize(Real(file), size);
}
int Lock(sqlite3_file* file, int level) {
  return Real(file)->pMethods->xLock(Real(file), level);
}
int Unlock(sqlite3_file* file, int level) {
  return Real(file)->pMethods->xUnlock(Real(file), level);
}
int CheckReservedLock(sqlite3_file* file, int* out) {
  return Real(file)->pMethods->xCheckReservedLock(Real(file), out);
}
int FileControl(sqlite3_file* file, int op, void* arg) {
  CheckedFile* p = reinterpret_cast<CheckedFile*>(file);
  if (op == store_kRepageControl) {
    int& mode = *static_cast<int*>(arg);
    if (mode == 1 && p->checked && !AllSound(p->real)) {
      mode = 0;  // damage is never copied into pages with fresh checksums
      return SQLITE_OK;
    }
    p->repaging = mode == 1;
    return SQLITE_OK;
  }
  return p->real->pMethods->xFileControl(p->real, op, arg);
}
int SectorSize(sqlite3_file* file) {
  return Real(file)->pMethods->xSectorSize(Real(file));
}
int DeviceCharacteristics(sqlite3_file* file) {
  return Real(file)->pMethods->xDeviceCharacteristics(Real(file));
}
int ShmMap(sqlite3_file* file, int region, int size, int extend, void volatile** out) {
  return Real(file)->pMethods->xShmMap(Real(file), region, size, extend, out);
}
int ShmLock(sqlite3_file* file, int offset, int n, int flags) {
  return Real(file)->pMethods->xShmLock(Real(file), offset, n, flags);
}
void ShmBarrier(sqlite3_file* file) {
  Real(file)->pMethods->xShmBarrier(Real(file));
}
int ShmUnmap(sqlite3_file* file, int deleteFlag) {
  return Real(file)->pMethods->xShmUnmap(Real(file), deleteFlag);
}
// A mapped page would reach SQLite unchecked: a file with checksums is read through Read only.
int Fetch(sqlite3_file* file, sqlite3_int64 offset, int bytes, void** out) {
  CheckedFile* p = reinterpret_cast<CheckedFile*>(file);
  if (p->checked) {
    *out = nullptr;
    return SQLITE_OK;
  }
  return p->real->pMethods->xFetch(p->real, offset, bytes, out);
}
int Unfetch(sqlite3_file* file, sqlite3_int64 offset, void* page) {
  return Real(file)->pMethods->xUnfetch(Real(file), offset, page);
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

sqlite3_vfs* System(sqlite3_vfs* vfs) {
  return static_cast<sqlite3_vfs*>(vfs->pAppData);
}

// Journals and other side files pass straight to the system's VFS: a journal holds pages as the
// file held them, checksums included, and puts them back as they were.
int Open(sqlite3_vfs* vfs, const char* name, sqlite3_file* file, int flags, int* outFlags) {
  sqlite3_vfs* system = System(vfs);
  if (!(flags & SQLITE_OPEN_MAIN_DB)) return system->xOpen(system, name, file, flags, outFlags);
  CheckedFile* p = reinterpret_cast<CheckedFile*>(file);
  std::memset(p, 0, sizeof *p);
  p->real = reinterpret_cast<sqlite3_file*>(p + 1);
  const int rc = system->xOpen(system, name, p->real, flags, outFlags);
  if (p->real->pMethods) p->base.pMethods = &kMethods;
  return rc;
}

int Delete(sqlite3_vfs* vfs, const char* name, int sync) {
  return System(vfs)->xDelete(System(vfs), name, sync);
}
int Access(sqlite3_vfs* vfs, const char* name, int flags, int* out) {
  return System(vfs)->xAccess(System(vfs), name, flags, out);
}
int FullPathname(sqlite3_vfs* vfs, const char* name, int n, char* out) {
  return System(vfs)->xFullPathname(System(vfs), name, n, out);
}
void* DlOpen(sqlite3_vfs* vfs, const char* name) {
  return System(vfs)->xDlOpen(System(vfs), name);
}
void DlError(sqlite3_vfs* vfs, int n, char* out) {
  System(vfs)->xDlError(System(vfs), n, out);
}
void (*DlSym(sqlite3_vfs* vfs, void* handle, const char* symbol))(void) {
  return System(vfs)->xDlSym(System(vfs), handle, symbol);
}
void DlClose(sqlite3_vfs* vfs, void* handle) {
  System(vfs)->xDlClose(System(vfs), handle);
}
int Randomness(sqlite3_vfs* vfs, int n, char* out) {
  return System(vfs)->xRandomness(System(vfs), n, out);
}
int Sleep(sqlite3_vfs* vfs, int microseconds) {
  return System(vfs)->xSleep(System(vfs), microseconds);
}
int CurrentTime(sqlite3_vfs* vfs, double* out) {
  return System(vfs)->xCurrentTime(System(vfs), out);
}
int GetLastError(sqlite3_vfs* vfs, int n, char* out) {
  return System(vfs)->xGetLastError(System(vfs), n, out);
}
int CurrentTimeInt64(sqlite3_vfs* vfs, sqlite3_int64* out) {
  return System(vfs)->xCurrentTimeInt64(System(vfs), out);
}

const char kVfsName[] = "qtvodb-checksum";

}  // namespace

std::uint64_t store_PageChecksum(const void* page, std::size_t pageSize, std::uint32_t number) {
  return XXH3_64bits_withSeed(page, pageSize - store_kChecksumBytes, number);
}

bool store_PageSound(const void* page, std::size_t pageSize, std::uint32_t number) {
  const unsigned char* bytes = static_cast<const unsigned char*>(page);
  return Stored(bytes + pageSize - store_kChecksumBytes) ==
         store_PageChecksum(page, pageSize, number);
}

store_PageHash::store_PageHash() : m_state(XXH3_createState()) {}

store_PageHash::~store_PageHash() {
  XXH3_freeState(static_cast<XXH3_state_t*>(m_state));
}

void store_PageHash::Start(std::uint32_t number) {
  XXH3_64bits_reset_withSeed(static_cast<XXH3_state_t*>(m_state), number);
}

void store_PageHash::Add(const void* bytes, std::size_t n) {
  XXH3_64bits_update(static_cast<XXH3_state_t*>(m_state), bytes, n);
}

bool store_PageHash::Matches(const unsigned char* stored) {
  return Stored(stored) == XXH3_64bits_digest(static_cast<XXH3_state_t*>(m_state));
}

const char* store_ChecksumVfs() {
  static std::once_flag once;
  static sqlite3_vfs vfs;
  std::call_once(once, [] {
    sqlite3_vfs* system = sqlite3_vfs_find(nullptr);
    vfs = *system;
    vfs.iVersion = 2;
    vfs.szOsFile = static_cast<int>(sizeof(CheckedFile)) + system->szOsFile;
    vfs.pNext = nullptr;
    vfs.zName = kVfsName;
    vfs.pAppData = system;
    vfs.xOpen = Open;
    vfs.xDelete = Delete;
    vfs.xAccess = Access;
    vfs.xFullPathname = FullPathname;
    vfs.xDlOpen = DlOpen;
    vfs.xDlError = DlError;
    vfs.xDlSym = DlSym;
    vfs.xDlClose = DlClose;
    vfs.xRandomness = Randomness;
    vfs.xSleep = Sleep;
    vfs.xCurrentTime = CurrentTime;
    vfs.xGetLastError = GetLastError;
    vfs.xCurrentTimeInt64 = CurrentTimeInt64;
    sqlite3_vfs_register(&vfs, 0);
  });
  return kVfsName;
}

std::uint32_t store_LastDamagedPage() {
  return t_damagedPage;
}

void store_NoteDamagedPage(std::uint32_t number) {
  t_damagedPage = number;
}

void store_SetPageChecks(bool on) {
  g_checks = on;
}

bool store_PageChecks() {
  return g_checks;
}
