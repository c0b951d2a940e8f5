// fault_Vfs: an SQLite VFS for tests, installed as the process's default, that passes every call
// to the system's "unix" VFS and can make calls fail, to see what the library does when the disk
// fails under a save.
//
// It counts the writes, syncs, reads and truncations of main database files and of their
// rollback journals (other files SQLite opens pass untouched), and fails the Nth call of one kind
// with EIO or ENOSPC, once or from then on. A failing call returns the result the unix VFS gives
// for that errno (a write's ENOSPC is SQLITE_FULL, any failed sync SQLITE_IOERR_FSYNC) and leaves
// the errno where SQLite's sqlite3_system_errno finds it, as the unix VFS does. Nothing of a
// failed call reaches the file.
//
// It also simulates a power loss: from a chosen call on, nothing reaches the disk any more (every
// write, sync, truncation and deletion fails), and LosePower() then puts each file back as its
// last sync left it, the bytes overwritten since restored and its size as it was, as a disk that
// loses its volatile cache would. Deleting or creating a file counts as durable at once.
//
// Memory-mapped reads are refused, so every page read passes through xRead, where it can fail.
// Not modelled: the library's own early syncs (a second thread fdatasyncs the file during a long
// save, past SQLite) count for nothing here, so a power loss may drop writes that they made
// durable: a harsher test than a real disk.
//
// One instance per process; its state is guarded by a mutex.
#ifndef TESTS_FAULT_VFS_H
#define TESTS_FAULT_VFS_H

#include <algorithm>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <vector>

enum class fault_Op { kWrite = 0, kSync = 1, kRead = 2, kTruncate = 3 };
constexpr int fault_kOps = 4;

class fault_Vfs {
 public:
  static fault_Vfs& Instance();

  // Makes this VFS SQLite's default. Needed again after every sqlite3_initialize that follows a
  // shutdown (the library's odb_initialize), which makes "unix" the default once more.
  void Install();

  // Forgets counts, faults and power cuts, and takes what every file holds now as durable.
  void Reset();
  // Fails the nth call of `op` (1 for the first) counted since Reset with `error` (EIO or
  // ENOSPC), and every later call of `op` too when `persistent`.
  void Fail(fault_Op op, int n, int error, bool persistent);
  // Stops failing calls; counts go on.
  void Clear();
  // From the nth call of `op` since Reset on (that call included), nothing reaches the disk.
  void CutPower(fault_Op op, int n);
  // Puts every file back as its last sync left it, and lets calls reach the disk again. The files
  // must be closed.
  void LosePower();

  // Calls of `op` counted since Reset.
  int Count(fault_Op op) const;
  // Calls failed since Reset, by Fail or by a power cut.
  int Injected() const;

  // Called by the VFS's methods; see fault_Vfs.cpp.
  struct Outcome {
    bool fail = false;
    int rc = 0;  // the SQLite result of a failed call
  };
  Outcome Enter(fault_Op op);
  bool PowerIsCut() const;
  void Opened(const std::string& path, std::int64_t size);
  void Deleted(const std::string& path);
  // Keeps the bytes [offset, offset + n) that a write or truncation is about to change, where the
  // last sync left them on disk; `read` reads them from the file.
  template <class Read>
  void Keep(const std::string& path, std::int64_t offset, std::int64_t n, Read read);
  void Synced(const std::string& path, std::int64_t size);

 private:
  fault_Vfs() = default;

  // One file as the last sync left it: its size, and the bytes changed since (in order).
  struct Undo {
    std::int64_t offset;
    std::vector<char> bytes;
  };
  struct Durable {
    std::int64_t size = 0;
    std::vector<Undo> undo;
  };

  mutable std::mutex m_mutex;
  int m_counts[fault_kOps] = {};
  int m_injected = 0;
  bool m_failing = false;
  fault_Op m_failOp = fault_Op::kWrite;
  int m_failAt = 0;
  int m_failError = 0;
  bool m_persistent = false;
  bool m_cutArmed = false;
  fault_Op m_cutOp = fault_Op::kSync;
  int m_cutAt = 0;
  bool m_cut = false;
  std::map<std::string, Durable> m_files;
};

template <class Read>
void fault_Vfs::Keep(const std::string& path, std::int64_t offset, std::int64_t n, Read read) {
  std::lock_guard<std::mutex> lock(m_mutex);
  auto found = m_files.find(path);
  if (found == m_files.end()) return;
  Durable& file = found->second;
  // Bytes past the durable size vanish with the size at a power loss; only those below count.
  const std::int64_t end = std::min(offset + n, file.size);
  if (offset >= end) return;
  Undo undo{offset, std::vector<char>(static_cast<std::size_t>(end - offset))};
  if (read(undo.bytes.data(), end - offset, offset)) file.undo.push_back(std::move(undo));
}

#endif
