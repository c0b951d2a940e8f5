#include "store_PageChecksum.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <fstream>
#include <string>
#include <vector>

#include "TempDir.h"
#include "store_Database.h"
#include "store_Schema.h"

namespace {

std::vector<unsigned char> Pattern(std::size_t bytes) {
  std::vector<unsigned char> out(bytes);
  for (std::size_t i = 0; i < bytes; ++i) out[i] = static_cast<unsigned char>(i * 7 + i / 251);
  return out;
}

void WriteByte(const std::string& path, std::streamoff at, char value) {
  std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
  file.seekp(at);
  file.put(value);
}

// An array written and saved by a writer, read back by a reader (past SQLite where it can).
std::vector<unsigned char> RoundTrip(const std::string& path, std::shared_ptr<store_Database> db,
                                     const std::vector<unsigned char>& bytes) {
  const std::int64_t id = db->PutArray("test", bytes.data(), bytes.size());
  db->Commit();
  db->Close();
  std::shared_ptr<store_Database> reader = store_Database::Open(path, true);
  std::vector<unsigned char> got(reader->ArrayBytes(id));
  reader->GetArray(id, got.data());
  return got;
}

TEST(StorePageChecksum, FilesOfEarlierReleasesWithoutChecksumsStillReadAndWrite) {
  TempDir dir;
  const std::string path = dir.file("old.odb");
  // The schema as earlier releases made it: through plain SQLite, no bytes reserved.
  sqlite3* raw = nullptr;
  ASSERT_EQ(sqlite3_open(path.c_str(), &raw), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(raw, store_kCreateSchema, nullptr, nullptr, nullptr), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(raw, "COMMIT", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(raw);
  EXPECT_FALSE(store_Database::HasPageChecksums(path));
  const std::vector<unsigned char> bytes = Pattern(5u << 20);
  EXPECT_EQ(RoundTrip(path, store_Database::Open(path, false), bytes), bytes);
  EXPECT_FALSE(store_Database::HasPageChecksums(path)) << "an old file stays as it was";
}

TEST(StorePageChecksum, NewFilesCarryChecksumsThatEveryReadChecks) {
  TempDir dir;
  const std::string path = dir.file("new.odb");
  const std::vector<unsigned char> bytes = Pattern(20u << 20);  // read on two threads
  EXPECT_EQ(RoundTrip(path, store_Database::Create(path), bytes), bytes);
  EXPECT_TRUE(store_Database::HasPageChecksums(path));
  EXPECT_EQ(store_Database::Open(path, true)->Header(store_kChecksumKey), store_kChecksumValue);
  // A byte of the last chunk changed: both the direct reader and SQLite refuse it.
  std::ifstream in(path, std::ios::binary | std::ios::ate);
  const std::streamoff size = in.tellg();
  WriteByte(path, size - 70000, 'x');
  std::shared_ptr<store_Database> reader = store_Database::Open(path, true);
  std::vector<unsigned char> got(bytes.size());
  try {
    reader->GetArray(1, got.data());
    FAIL() << "a damaged page was read";
  } catch (const store_Damaged& damage) {
    EXPECT_EQ(damage.Predicate().rfind("do not match their checksum (page ", 0), 0u);
  }
}

TEST(StorePageChecksum, AHeaderByteThatWouldTurnTheChecksOffIsRefused) {
  TempDir dir;
  const std::string path = dir.file("a.odb");
  store_Database::Create(path)->Close();
  WriteByte(path, 20, 0);  // no bytes reserved, says the damaged header
  try {
    store_Database::Open(path, true);
    FAIL() << "opened";
  } catch (const store_Damaged& damage) {
    EXPECT_EQ(std::string(damage.what()),
              "The file " + path +
                  " is damaged: its first page lacks the bytes of page checksums, which its "
                  "header row names.");
  }
}

}  // namespace
