// What a failed save leaves behind: one test for each way it once went wrong (a writer that
// never saved again, unsaved frames in the file, a failed frame's fields met again, a chunk
// reported written that was not, a cause nobody was told), and the rule for what the objects in
// memory show after a failure.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cerrno>
#include <memory>
#include <vector>

#include "fault_Analysis.h"
#include "store_Database.h"
#include "store_Statement.h"

namespace {

const int kNodes = 8;
const int kSpillNodes = 6000;

class SaveRecovery : public fault_Analysis {
 protected:
  // Starts the analysis, writes frame 1 and fails its save with the nth call of `op`.
  odb_Odb& FailedSave(const std::string& name, fault_Op op, int error, bool persistent) {
    odb_Odb& odb = Start(name, kNodes, false);
    WriteFrame(odb, 1, kNodes);
    m_vfs.Reset();
    m_vfs.Fail(op, 1, error, persistent);
    TakeWarnings();
    EXPECT_EQ(fault_Thrown([&] { saveOdb(odb); }), fault_kSaveFailed);
    m_vfs.Clear();
    return odb;
  }
  // The frames and pairs a reader of the file finds.
  std::string ReadBack(const std::string& name, int last, int nodes = kNodes) {
    odb_Odb& reader = openOdb(m_dir.file(name).c_str(), true);
    std::string shown = Shows(reader, last, nodes);
    closeOdb(reader);
    return shown;
  }
};

TEST_F(SaveRecovery, TheWriterSavesAgainOnceTheFaultIsGone) {
  struct Fault {
    fault_Op op;
    int error;
    bool persistent;
    const char* what;
  };
  const Fault faults[] = {{fault_Op::kSync, EIO, false, "one passing EIO at a sync"},
                          {fault_Op::kWrite, ENOSPC, true, "a full disk, then space freed"}};
  int i = 0;
  for (const Fault& f : faults) {
    const std::string name = "again-" + std::to_string(i++) + ".odb";
    odb_Odb& odb = FailedSave(name, f.op, f.error, f.persistent);
    EXPECT_EQ(fault_Thrown([&] {
                WriteFrame(odb, 1, kNodes);
                saveOdb(odb);
              }),
              "")
        << f.what;
    EXPECT_EQ(Shows(odb, 1, kNodes), "") << f.what;
    closeOdb(odb);
    EXPECT_EQ(ReadBack(name, 1), "") << f.what;
  }
}

TEST_F(SaveRecovery, NoFrameOfAFailedTransactionReachesTheFile) {
  // A write that spills a page into the file fails while frame 1 is written; SQLite rolls the
  // whole transaction back. The program goes on and writes the frame again, then closes without
  // saving: none of it may be in the file, which a statement run outside a transaction would
  // have committed on its own.
  odb_Odb& odb = Start("spill.odb", kSpillNodes, true);
  const fault_Dump saved = DumpOf("spill.odb");
  m_vfs.Reset();
  m_vfs.Fail(fault_Op::kWrite, 10, EIO, false);
  EXPECT_EQ(fault_Thrown([&] { WriteFrame(odb, 1, kSpillNodes); }),
            "An I/O error occurred while writing the file: what was written since the last save "
            "is discarded.");
  EXPECT_EQ(fault_Thrown([&] { WriteFrame(odb, 1, kSpillNodes); }), "");
  closeOdb(odb);
  EXPECT_EQ(DumpOf("spill.odb"), saved);
  EXPECT_EQ(ReadBack("spill.odb", 0, kSpillNodes), "");
}

TEST_F(SaveRecovery, AFrameAfterAFailedSaveStartsWithoutFields) {
  odb_Odb& odb = FailedSave("fresh.odb", fault_Op::kSync, EIO, false);
  odb_Step& step = odb.steps()["S1"];
  EXPECT_EQ(step.frames().size(), 1);
  odb_Frame next = step.Frame(1, 0.1, "");
  EXPECT_EQ(next.fieldOutputs().size(), 0);
  EXPECT_EQ(fault_Thrown([&] { next.FieldOutput("U", "", odb_Enum::VECTOR); }), "");
}

TEST_F(SaveRecovery, ASaveWhoseLastSyncFailsIsConfirmedOrToldUnconfirmed) {
  // A commit's last step empties the journal and syncs that: when only this sync fails, the
  // save is in the file. The store commits again to have it confirmed; when the disk refuses
  // that too, the save is reported failed, but the file and the writer keep it.
  odb_Odb& count = Start("count.odb", kNodes, false);
  WriteFrame(count, 1, kNodes);
  m_vfs.Reset();
  saveOdb(count);
  const int last = m_vfs.Count(fault_Op::kSync);
  closeOdb(count);
  const fault_Dump reference = DumpOf("count.odb");
  for (bool persistent : {false, true}) {
    const std::string name = persistent ? "refused.odb" : "confirmed.odb";
    odb_Odb& odb = Start(name, kNodes, false);
    WriteFrame(odb, 1, kNodes);
    m_vfs.Reset();
    m_vfs.Fail(fault_Op::kSync, last, EIO, persistent);
    TakeWarnings();
    EXPECT_EQ(fault_Thrown([&] { saveOdb(odb); }), persistent ? fault_kSaveFailed : "");
    m_vfs.Clear();
    EXPECT_EQ(TakeWarnings().find("did not confirm") != std::string::npos, persistent);
    EXPECT_EQ(DumpOf(name), reference) << name;
    EXPECT_EQ(Shows(odb, 1, kNodes), "") << name;
    EXPECT_EQ(fault_Thrown([&] { saveOdb(odb); }), "") << name;
    closeOdb(odb);
    EXPECT_EQ(ReadBack(name, 1), "") << name;
  }
}

TEST_F(SaveRecovery, AnArrayIsNeverSavedOrInTheFileWhenItsChunksWereNot) {
  // The disk fills up at each write in turn while an array is written, its chunks spilling
  // into the file as they go: either the array is saved whole or the file holds none. Once with
  // the transaction ended behind the store's back, as when SQLite rolls it back on its own: a
  // statement must not then commit on its own, nor a chunk whose failure SQLite could only
  // report when its blob was closed pass unseen.
  std::vector<float> values(300000);
  for (std::size_t i = 0; i < values.size(); ++i) values[i] = static_cast<float>(i) / 3.0f;
  const std::size_t bytes = values.size() * sizeof(float);
  for (bool behindItsBack : {false, true}) {
    for (int n = 1; n < 200; ++n) {
      const std::string where = (behindItsBack ? "ended, write " : "write ") + std::to_string(n);
      const std::string path = m_dir.file("array-" + std::to_string(n) + ".odb");
      std::shared_ptr<store_Database> db = store_Database::Create(path);
      db->Commit();
      sqlite3_exec(db->Connection(), "PRAGMA cache_size = 1", nullptr, nullptr, nullptr);
      if (behindItsBack) sqlite3_exec(db->Connection(), "COMMIT", nullptr, nullptr, nullptr);
      m_vfs.Reset();
      m_vfs.Fail(fault_Op::kWrite, n, ENOSPC, true);
      std::int64_t id = 0;
      bool saved = false;
      try {
        id = db->PutArray("values", values.data(), bytes);
        db->Commit();
        saved = true;
      } catch (const store_Error&) {
      }
      const bool reached = m_vfs.Injected() > 0;
      m_vfs.Clear();
      db->Close();
      std::shared_ptr<store_Database> reader = store_Database::Open(path, true);
      store_Statement arrays = reader->Sql("SELECT count(*) FROM array");
      ASSERT_TRUE(arrays.Step());
      EXPECT_EQ(arrays.Int(0), saved ? 1 : 0) << where;
      if (saved) {
        std::vector<float> back(values.size());
        ASSERT_EQ(reader->ArrayBytes(id), bytes) << where;
        reader->GetArray(id, back.data());
        EXPECT_EQ(back, values) << where;
      }
      if (!reached) break;
    }
  }
}

TEST_F(SaveRecovery, AFailedSaveWarnsWhyItFailed) {
  struct Fault {
    fault_Op op;
    int error;
    const char* cause;
  };
  const Fault faults[] = {
      {fault_Op::kWrite, ENOSPC, "the disk is full"},
      // A sync reports every failure as an I/O error, a full disk's included.
      {fault_Op::kSync, ENOSPC, "an I/O error occurred while flushing the file to disk"},
      {fault_Op::kWrite, EIO, "an I/O error occurred while writing the file"},
      {fault_Op::kSync, EIO, "an I/O error occurred while flushing the file to disk"}};
  int i = 0;
  for (const Fault& f : faults) {
    const std::string name = "why-" + std::to_string(i++) + ".odb";
    odb_Odb& odb = FailedSave(name, f.op, f.error, false);
    EXPECT_EQ(TakeWarnings(), "Warning: The database " + std::string(odb.path().CStr()) +
                                  " was not saved: " + f.cause +
                                  ". The file holds its last save, and so does the database in "
                                  "memory: what was written since is discarded.\n");
    closeOdb(odb);
  }
}

}  // namespace
