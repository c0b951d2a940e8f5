#include "store_PageReader.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "TempDir.h"
#include "store_Database.h"
#include "store_PageChecksum.h"
#include "store_SharedFile.h"

namespace {

// Reads a whole blob with the reader, as the store does chunk by chunk.
bool ReadBlob(store_PageReader& reader, std::int64_t rowid, int column, void* out,
              std::size_t bytes) {
  store_PageReader::Rest rest;
  return reader.Start(rowid, column, out, bytes, rest) && reader.CopyRest(rest);
}

std::vector<unsigned char> Pattern(std::size_t bytes, unsigned seed) {
  std::vector<unsigned char> out(bytes);
  std::uint32_t x = seed * 2654435761u + 1;
  for (auto& b : out) {
    x = x * 1664525u + 1013904223u;
    b = static_cast<unsigned char>(x >> 24);
  }
  return out;
}

// A committed, closed file with one array of each size.
std::vector<std::int64_t> WriteArrays(const std::string& path,
                                      const std::vector<std::size_t>& sizes) {
  auto db = store_Database::Create(path);
  std::vector<std::int64_t> ids;
  for (std::size_t i = 0; i < sizes.size(); ++i) {
    std::vector<unsigned char> bytes = Pattern(sizes[i], static_cast<unsigned>(i));
    ids.push_back(db->PutArray("test", bytes.data(), bytes.size()));
  }
  db->Commit();
  return ids;
}

// Reads every chunk of the file with the page reader on a plain connection inside one read
// transaction, and compares it with what SQLite reads.
void ExpectChunksReadLikeSqlite(const std::string& path) {
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(db, "BEGIN; SELECT count(*) FROM array_chunk;", nullptr, nullptr, nullptr),
            SQLITE_OK);
  sqlite3_stmt* root = nullptr;
  sqlite3_prepare_v2(db, "SELECT rootpage FROM sqlite_schema WHERE name = 'array_chunk'", -1, &root,
                     nullptr);
  ASSERT_EQ(sqlite3_step(root), SQLITE_ROW);
  store_SharedFile file(path);
  store_PageReader reader(file.Descriptor(), sqlite3_column_int64(root, 0));
  sqlite3_finalize(root);
  sqlite3_stmt* chunks = nullptr;
  sqlite3_prepare_v2(db, "SELECT rowid, data FROM array_chunk", -1, &chunks, nullptr);
  int count = 0;
  while (sqlite3_step(chunks) == SQLITE_ROW) {
    const std::int64_t rowid = sqlite3_column_int64(chunks, 0);
    const auto* expected = static_cast<const unsigned char*>(sqlite3_column_blob(chunks, 1));
    const std::size_t bytes = static_cast<std::size_t>(sqlite3_column_bytes(chunks, 1));
    std::vector<unsigned char> got(bytes + 1, 0xEE);
    ASSERT_TRUE(ReadBlob(reader, rowid, 2, got.data(), bytes)) << "row " << rowid;
    EXPECT_EQ(0, std::memcmp(got.data(), expected, bytes)) << "row " << rowid;
    EXPECT_EQ(got[bytes], 0xEE) << "wrote past the blob of row " << rowid;
    ++count;
  }
  EXPECT_GT(count, 0);
  sqlite3_finalize(chunks);
  sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
  sqlite3_close(db);
}

TEST(StorePageReader, ReadsBlobsOfEveryShapeAsSqliteDoes) {
  TempDir dir;
  const std::string path = dir.file("a.odb");
  // Kept on the leaf page; one overflow page exactly; a partial last page; several 4 MiB chunks.
  WriteArrays(path, {1, 4, 8000, 65532 + 9000, 65532 * 3 + 1, (4u << 20) * 2 + 13});
  ExpectChunksReadLikeSqlite(path);
  // A blob whose overflow pages were freed by others, so that its chain jumps about the file.
  TempDir freed;
  const std::string freedPath = freed.file("c.odb");
  const std::vector<std::int64_t> ids = WriteArrays(freedPath, {300000, 300000, 300000});
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open_v2(freedPath.c_str(), &db, SQLITE_OPEN_READWRITE, store_ChecksumVfs()),
            SQLITE_OK);
  const std::string refill = "DELETE FROM array_chunk WHERE array_id IN (" +
                             std::to_string(ids[0]) + ", " + std::to_string(ids[2]) +
                             "); INSERT INTO array_chunk VALUES (99, 0, randomblob(600000));";
  ASSERT_EQ(sqlite3_exec(db, refill.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(db);
  ExpectChunksReadLikeSqlite(freedPath);
  // Enough rows for the table's b-tree to grow interior pages.
  TempDir many;
  const std::string manyPath = many.file("b.odb");
  WriteArrays(manyPath, std::vector<std::size_t>(400, 9000));
  ExpectChunksReadLikeSqlite(manyPath);
}

TEST(StorePageReader, GivesUpOnWhatDoesNotMatch) {
  TempDir dir;
  const std::string path = dir.file("a.odb");
  WriteArrays(path, {70000});
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
  sqlite3_exec(db, "BEGIN; SELECT count(*) FROM array_chunk;", nullptr, nullptr, nullptr);
  sqlite3_stmt* q = nullptr;
  sqlite3_prepare_v2(db,
                     "SELECT (SELECT rootpage FROM sqlite_schema WHERE name = 'array_chunk'), "
                     "(SELECT rootpage FROM sqlite_schema WHERE type = 'index' LIMIT 1), "
                     "(SELECT max(rowid) FROM array_chunk)",
                     -1, &q, nullptr);
  ASSERT_EQ(sqlite3_step(q), SQLITE_ROW);
  const std::int64_t table = sqlite3_column_int64(q, 0), index = sqlite3_column_int64(q, 1),
                     row = sqlite3_column_int64(q, 2);
  sqlite3_finalize(q);
  std::vector<unsigned char> out(70000);
  store_SharedFile file(path);
  store_PageReader reader(file.Descriptor(), table);
  EXPECT_TRUE(ReadBlob(reader, row, 2, out.data(), out.size()));
  EXPECT_FALSE(ReadBlob(reader, row + 1, 2, out.data(), out.size())) << "a row that is not there";
  EXPECT_FALSE(ReadBlob(reader, row, 2, out.data(), out.size() - 1)) << "a length that differs";
  EXPECT_FALSE(ReadBlob(reader, row, 0, out.data(), out.size())) << "a column that is no blob";
  store_PageReader onIndex(file.Descriptor(), index), beyond(file.Descriptor(), 1 << 30),
      closed(-1, table);
  EXPECT_FALSE(ReadBlob(onIndex, row, 2, out.data(), out.size())) << "an index";
  EXPECT_FALSE(ReadBlob(beyond, row, 2, out.data(), out.size())) << "a page beyond the file";
  EXPECT_FALSE(ReadBlob(closed, row, 2, out.data(), out.size())) << "no descriptor";
  sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
  sqlite3_close(db);
}

TEST(StorePageReader, ArraysLargeEnoughForTwoThreadsReadBackWhole) {
  TempDir dir;
  const std::string path = dir.file("a.odb");
  const std::vector<std::size_t> sizes = {(20u << 20) + 5, 3u << 20};
  const std::vector<std::int64_t> ids = WriteArrays(path, sizes);
  auto db = store_Database::Open(path, true);
  for (std::size_t i = 0; i < ids.size(); ++i) {
    std::vector<unsigned char> got(sizes[i]);
    db->GetArray(ids[i], got.data());
    EXPECT_EQ(got, Pattern(sizes[i], static_cast<unsigned>(i))) << "array " << i;
  }
}

// Files of earlier releases are in write-ahead-log mode. One whose writer was killed keeps
// committed pages in its log, where the file holds older ones: a reader must go through SQLite
// until a writer has folded the log back and turned the file to a rollback journal.
TEST(StorePageReader, ReadersOfAFileWithLoggedPagesReadThroughSqlite) {
  TempDir dir;
  const std::string path = dir.file("a.odb");
  std::vector<unsigned char> first = Pattern(300000, 7), second = Pattern(300000, 8);
  std::int64_t id = 0;
  {
    auto writer = store_Database::Create(path);
    id = writer->PutArray("test", first.data(), first.size());
    writer->Commit();
  }
  EXPECT_FALSE(store_Database::InLogMode(path));
  pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    // An earlier release's writer: log mode, a committed change in the log, then killed.
    sqlite3* db = nullptr;
    sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE,
                    store_ChecksumVfs());
    sqlite3_exec(db, "PRAGMA journal_mode=WAL; PRAGMA wal_autocheckpoint=0", 0, 0, 0);
    sqlite3_stmt* update = nullptr;
    sqlite3_prepare_v2(db, "UPDATE array_chunk SET data = ?1 WHERE array_id = ?2", -1, &update,
                       nullptr);
    sqlite3_bind_blob(update, 1, second.data(), static_cast<int>(second.size()), SQLITE_STATIC);
    sqlite3_bind_int64(update, 2, id);
    _exit(sqlite3_step(update) == SQLITE_DONE ? 0 : 1);
  }
  int status = 0;
  waitpid(child, &status, 0);
  ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  ASSERT_TRUE(store_Database::InLogMode(path));
  EXPECT_FALSE(store_PageReader::FileHoldsSnapshot(path));

  std::vector<unsigned char> got(second.size());
  store_Database::Open(path, true)->GetArray(id, got.data());
  EXPECT_EQ(got, second);
  store_Database::Open(path, false).reset();
  EXPECT_FALSE(store_Database::InLogMode(path));
  EXPECT_TRUE(store_PageReader::FileHoldsSnapshot(path));
  std::fill(got.begin(), got.end(), 0);
  store_Database::Open(path, true)->GetArray(id, got.data());
  EXPECT_EQ(got, second);
}

}  // namespace
