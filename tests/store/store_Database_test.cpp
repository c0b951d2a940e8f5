#include "store_Database.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <vector>

#include "TempDir.h"
#include "store_Statement.h"

namespace {

std::string OpenError(const std::string& path) {
  try {
    store_Database::SchemaVersion(path);
  } catch (const store_Error& e) {
    return e.what();
  }
  return "(no error)";
}

void WriteBytes(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

TEST(StoreDatabase, CommittedRecordsAndArraysReadBackAfterReopen) {
  TempDir dir;
  std::string path = dir.file("a.odb");
  std::vector<float> values(3 * 1024 * 1024 + 7);  // crosses two chunk boundaries
  for (std::size_t i = 0; i < values.size(); ++i) values[i] = static_cast<float>(i) * 0.5f;
  std::int64_t arrayId;
  std::string stamp;
  {
    auto db = store_Database::Create(path);
    stamp = db->CreationStamp();
    db->SetModelTitle("Default Model", "beam");
    store_StepRecord step;
    step.name = "Step-1";
    step.domain = 1;
    step.timePeriod = 2.5;
    step.totalTime = 1.0;
    db->AddStep(step);
    store_FrameRecord frame;
    frame.incrementNumber = 3;
    frame.frameValue = 0.1f;
    frame.loadCase = "LC1";
    EXPECT_EQ(db->AddFrame(step.id, frame), 0);
    EXPECT_EQ(db->AddFrame(step.id, frame), 1);
    arrayId = db->PutArray("filler", values.data(), values.size() * sizeof(float));
    db->Commit();
  }
  EXPECT_EQ(store_Database::SchemaVersion(path), store_kSchemaVersion);
  auto db = store_Database::Open(path, true);
  EXPECT_EQ(db->CreationStamp(), stamp);
  EXPECT_EQ(stamp.size(), 32u + 1 + 20) << stamp;
  EXPECT_EQ(db->ModelTitle("Default Model"), "beam");
  auto steps = db->Steps();
  ASSERT_EQ(steps.size(), 1u);
  EXPECT_EQ(steps[0].timePeriod, 2.5);
  auto frames = db->Frames(steps[0].id);
  ASSERT_EQ(frames.size(), 2u);
  EXPECT_EQ(frames[1].frameValue, 0.1f);
  EXPECT_EQ(frames[1].loadCase, "LC1");
  EXPECT_EQ(db->Frames(steps[0].id, 1).size(), 1u);
  std::vector<float> back(db->ArrayBytes(arrayId) / sizeof(float));
  db->GetArray(arrayId, back.data());
  EXPECT_EQ(back, values);
  EXPECT_THROW(db->SetHeader("k", "v"), store_Error);
}

TEST(StoreDatabase, ArraysWrittenInPiecesAreCutIntoWholeChunks) {
  TempDir dir;
  auto db = store_Database::Create(dir.file("a.odb"));
  const std::size_t chunk = 4u << 20;
  std::vector<char> bytes(2 * chunk + 12345);
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 31 + i / 7);
  store_ArrayWriter writer(*db, "pieces", bytes.size());
  // Pieces of 12 bytes' multiples that straddle both chunk boundaries.
  for (std::size_t at = 0, piece = 12 * 21845; at < bytes.size(); at += piece)
    writer.Write(&bytes[at], std::min(piece, bytes.size() - at));
  std::int64_t id = writer.Finish();
  std::vector<char> back(db->ArrayBytes(id));
  db->GetArray(id, back.data());
  EXPECT_EQ(back, bytes);
  store_Statement q =
      db->Sql("SELECT length(data) FROM array_chunk WHERE array_id = ?1 ORDER BY chunk");
  q.Bind(1, id);
  std::vector<std::size_t> lengths;
  while (q.Step()) lengths.push_back(static_cast<std::size_t>(q.Int64(0)));
  EXPECT_EQ(lengths, (std::vector<std::size_t>{chunk, chunk, 12345}));

  store_ArrayWriter longer(*db, "longer", 4);
  EXPECT_THROW(longer.Write(bytes.data(), 5), store_Error);
  longer.Write(bytes.data(), 3);
  EXPECT_THROW(longer.Finish(), store_Error);
}

TEST(StoreDatabase, ClosingWithoutCommitKeepsLastCommittedState) {
  TempDir dir;
  std::string path = dir.file("a.odb");
  {
    auto db = store_Database::Create(path);
    db->SetHeader("description", "saved");
    db->Commit();
    db->SetHeader("description", "not saved");
    store_StepRecord step;
    step.name = "lost";
    db->AddStep(step);
  }
  auto db = store_Database::Open(path, false);
  EXPECT_EQ(db->Header("description"), "saved");
  EXPECT_TRUE(db->Steps().empty());
  db->SetHeader("description", "rolled back");
  db->Rollback();
  EXPECT_EQ(db->Header("description"), "saved");
}

TEST(StoreDatabase, ReaderSeesWhatAWriterCommitsAfterTheOpen) {
  TempDir dir;
  std::string path = dir.file("a.odb");
  auto writer = store_Database::Create(path);
  writer->Commit();
  auto reader = store_Database::Open(path, true);
  store_StepRecord step;
  step.name = "Step-1";
  writer->AddStep(step);
  EXPECT_TRUE(reader->Steps().empty()) << "uncommitted work stays invisible";
  writer->Commit();
  EXPECT_EQ(reader->Steps().size(), 1u);
}

TEST(StoreDatabase, BadFilesAreRefusedWithAReason) {
  TempDir dir;
  EXPECT_EQ(OpenError(dir.file("missing.odb")), "No such file or directory.");
  WriteBytes(dir.file("empty.odb"), "");
  EXPECT_EQ(OpenError(dir.file("empty.odb")), "The file is empty.");
  std::mt19937 random(3);
  std::string noise(5000, ' ');
  for (char& c : noise) c = static_cast<char>(random());
  WriteBytes(dir.file("noise.odb"), noise);
  EXPECT_EQ(OpenError(dir.file("noise.odb")), "The file is not an output database.");

  std::string good = dir.file("good.odb");
  store_Database::Create(good)->Commit();
  std::ifstream in(good, std::ios::binary);
  std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  ASSERT_GT(bytes.size(), 8192u) << "a file of many pages, so that half of it misses some";
  WriteBytes(dir.file("half.odb"), bytes.substr(0, bytes.size() / 2));
  EXPECT_EQ(OpenError(dir.file("half.odb")), "The file is truncated.");
  WriteBytes(dir.file("stub.odb"), bytes.substr(0, 50));
  EXPECT_EQ(OpenError(dir.file("stub.odb")), "The file is truncated.");
  EXPECT_THROW(store_Database::Open(dir.file("half.odb"), true), store_Error);

  sqlite3* other = nullptr;
  sqlite3_open(dir.file("other.db").c_str(), &other);
  sqlite3_exec(other, "CREATE TABLE t(x)", nullptr, nullptr, nullptr);
  sqlite3_close(other);
  EXPECT_EQ(OpenError(dir.file("other.db")),
            "The file is a database of another application, not an output database.");
  EXPECT_EQ(OpenError(dir.path()), "It is a folder, not a file.");
}

// The page size that the file's header gives (offset 16, big-endian; 1 means 65536).
int PageSizeOf(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  unsigned char b[18] = {};
  in.read(reinterpret_cast<char*>(b), sizeof b);
  const int size = (b[16] << 8) | b[17];
  return size == 1 ? 65536 : size;
}

// A small file is kept in small pages once closed, and gets large pages back while a writer has
// it open; a file grown large keeps them.
TEST(StoreDatabase, SmallFilesAreKeptInSmallPagesAndLargeOnesInLargePages) {
  TempDir dir;
  const std::string path = dir.file("a.odb");
  std::vector<unsigned char> bytes(5u << 20);
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<unsigned char>(i * 31);
  std::int64_t small = 0, large = 0;
  {
    auto db = store_Database::Create(path);
    EXPECT_EQ(PageSizeOf(path), 65536);
    small = db->PutArray("small", bytes.data(), 1000);
    db->Commit();
  }
  EXPECT_EQ(PageSizeOf(path), 1024);
  EXPECT_LT(std::filesystem::file_size(path), 60000u);
  {
    auto db = store_Database::Open(path, false);
    EXPECT_EQ(PageSizeOf(path), 65536);
    large = db->PutArray("large", bytes.data(), bytes.size());
    db->Commit();
  }
  EXPECT_EQ(PageSizeOf(path), 65536);
  auto db = store_Database::Open(path, true);
  std::vector<unsigned char> back(bytes.size());
  db->GetArray(large, back.data());
  EXPECT_EQ(back, bytes);
  db->GetArray(small, back.data());
  EXPECT_TRUE(std::equal(back.begin(), back.begin() + 1000, bytes.begin()));
}

// A damaged small file is not rewritten in other pages: that would give its damage fresh
// checksums.
TEST(StoreDatabase, ADamagedSmallFileKeepsItsPagesAndItsDamage) {
  TempDir dir;
  const std::string path = dir.file("a.odb");
  std::vector<unsigned char> bytes(3000, 7);
  std::int64_t id = 0;
  {
    auto db = store_Database::Create(path);
    id = db->PutArray("small", bytes.data(), bytes.size());
    db->Commit();
  }
  ASSERT_EQ(PageSizeOf(path), 1024);
  const auto size = std::filesystem::file_size(path);
  {
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(static_cast<std::streamoff>(size - 1024 + 100));  // inside the last page
    file.put('\x55');
  }
  try {
    auto db = store_Database::Open(path, false);
    db->GetArray(id, bytes.data());
  } catch (const store_Error&) {
  }
  EXPECT_EQ(PageSizeOf(path), 1024) << "the damaged file was rewritten";
  EXPECT_THROW(
      {
        auto db = store_Database::Open(path, true);
        std::vector<unsigned char> back(bytes.size());
        db->GetArray(id, back.data());
        db->Sql("PRAGMA integrity_check").Step();
      },
      store_Error);
}

TEST(StoreDatabase, CreateRefusesMissingOrNonFolders) {
  TempDir dir;
  auto reason = [](const std::string& path) {
    try {
      store_Database::Create(path);
    } catch (const store_Error& e) {
      return std::string(e.what());
    }
    return std::string("(created)");
  };
  EXPECT_EQ(reason(dir.file("no/such/folder/a.odb")), "No such file or directory.");
  WriteBytes(dir.file("plain"), "x");
  EXPECT_EQ(reason(dir.file("plain/a.odb")), "Not a directory.");
}

// A writer process appends frames and a 3 MB array and commits every few frames; after each
// commit it reports the committed count through a pipe. The arrays make its transactions spill
// pages into the file before they commit. It is killed at a random moment. The file must then
// open cleanly, first for reading, and hold exactly a committed state: the last reported one, or
// the next one when the kill fell between a commit and its report, every array whole.
TEST(StoreDatabase, WriterKilledAtRandomMomentsLeavesLastCommittedState) {
  TempDir dir;
  std::mt19937 random(20261122);
  const int kRuns = 50, kBatch = 7;
  const std::size_t kArrayBytes = 3u << 20;
  for (int run = 0; run < kRuns; ++run) {
    std::string path = dir.file("kill" + std::to_string(run) + ".odb");
    std::int64_t stepId;
    {
      auto db = store_Database::Create(path);
      store_StepRecord step;
      step.name = "Step-1";
      stepId = db->AddStep(step);
      db->Commit();
    }
    int pipeFds[2];
    ASSERT_EQ(pipe(pipeFds), 0);
    pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      close(pipeFds[0]);
      auto db = store_Database::Open(path, false);
      std::vector<char> filler(4000, 'x');
      std::vector<unsigned char> array(kArrayBytes);
      for (int committed = 0;;) {
        for (int k = 0; k < kBatch; ++k) {
          store_FrameRecord frame;
          frame.description.assign(filler.begin(), filler.end());
          db->AddFrame(stepId, frame);
        }
        std::fill(array.begin(), array.end(), static_cast<unsigned char>(committed / kBatch));
        db->PutArray("filler", array.data(), array.size());
        db->Commit();
        committed += kBatch;
        if (write(pipeFds[1], &committed, sizeof committed) != sizeof committed) _exit(1);
      }
    }
    close(pipeFds[1]);
    usleep(static_cast<useconds_t>(random() % 120000));
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    int reported = 0, value;
    while (read(pipeFds[0], &value, sizeof value) == sizeof value) reported = value;
    close(pipeFds[0]);

    ASSERT_EQ(store_Database::SchemaVersion(path), store_kSchemaVersion) << "run " << run;
    auto db = store_Database::Open(path, true);
    int frames = db->FrameCount(stepId);
    EXPECT_TRUE(frames == reported || frames == reported + kBatch)
        << "run " << run << ": " << frames << " frames, " << reported << " reported";
    std::vector<unsigned char> array(kArrayBytes);
    for (int batch = 0; batch < frames / kBatch; ++batch) {
      ASSERT_EQ(db->ArrayBytes(batch + 1), kArrayBytes);
      db->GetArray(batch + 1, array.data());
      EXPECT_EQ(std::count(array.begin(), array.end(), batch), long(kArrayBytes)) << batch;
    }
    store_Statement arrays = db->Sql("SELECT count(*) FROM array");
    ASSERT_TRUE(arrays.Step());
    EXPECT_EQ(arrays.Int(0), frames / kBatch) << "an array of an unsaved batch is visible";
    sqlite3_stmt* check = nullptr;
    sqlite3_prepare_v2(db->Connection(), "PRAGMA integrity_check", -1, &check, nullptr);
    ASSERT_EQ(sqlite3_step(check), SQLITE_ROW);
    EXPECT_STREQ(reinterpret_cast<const char*>(sqlite3_column_text(check, 0)), "ok");
    sqlite3_finalize(check);
  }
}

}  // namespace
