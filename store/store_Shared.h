// store_Database::Shared: the SQLite connection that a store_Database shares with its views,
// and what belongs to it; internal to the store's database sources (store_Database.cpp, and
// store_Transaction.cpp for transactions and failures).
#ifndef STORE_SHARED_H
#define STORE_SHARED_H

#include <sqlite3.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "store_Database.h"
#include "store_SharedFile.h"
#include "store_Statement.h"

// What a store_Database shares with its read-only views: the SQLite connection and what belongs
// to it.
struct store_Database::Shared {
  sqlite3* db = nullptr;
  bool writer = false;  // holds the write transaction that saves commit
  // The writer's transaction is open: begun, and neither committed nor lost since.
  bool inTransaction = false;
  // Transactions lost to a failure so far; views made before the last one are retired.
  std::uint64_t losses = 0;
  // The file's change counter (header offset 24) as the last commit left it on disk, read when
  // the transaction began; every commit changes it.
  std::uint32_t committedCounter = 0;
  bool counterKnown = false;
  std::unique_ptr<store_StatementCache> cache;
  std::vector<std::shared_ptr<store_Deferred>> deferred;
  std::thread sync;  // the sync of the file in flight, if any
  std::atomic<bool> syncing{false};
  int chunksSinceSync = 0;
  std::int64_t chunkRoot = 0;
  std::set<std::string> noticed;  // see FirstNotice
  // Held while the connection is open (see store_SharedFile).
  std::unique_ptr<store_SharedFile> file;

  ~Shared() { Close(); }
  void DiscardDeferred() {
    std::vector<std::shared_ptr<store_Deferred>> held;
    held.swap(deferred);
    for (const std::shared_ptr<store_Deferred>& writer : held) writer->Discard();
  }
  // Discards what was written since the last commit and closes the connection (in
  // store_Database.cpp, beside the page size rules it applies).
  void Close();
  // Begins the writer's next transaction, noting the file's change counter; the result of BEGIN.
  int Begin();
  // True when a commit that failed has put the save in the file all the same: it emptied its
  // journal (its last step), and the file's change counter is no longer the last commit's.
  bool Landed(const std::string& path) const;
  // True when the failure `rc` of a statement broke the writer's transaction: SQLite rolled it
  // back (it does for most I/O errors), or an I/O error or a full disk left it in a state the
  // store does not trust to commit.
  bool Breaks(int rc) const;
  // Takes the file back to its last commit after a failure broke the transaction, and retires
  // every view made before. A new transaction is begun if the disk allows; if not, the next
  // statement begins it.
  void Lose();
};

#endif
