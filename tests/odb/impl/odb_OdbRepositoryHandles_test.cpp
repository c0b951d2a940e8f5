// The handles the registry gives out: a read-only name never writes, whoever else has the file
// open, and a closed database stays safe to call.
#include <sqlite3.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <string>

#include "FieldFile.h"
#include "store_Database.h"
#include "store_PageChecksum.h"

namespace {

const std::string kReadOnly = "The database is read-only: cannot write.";
const std::string kClosed = "The database is closed.";

class OdbRepositoryHandles : public FieldFile {
 protected:
  void ExpectEveryWriteRefused(odb_Odb& readOnly, const std::string& tag);
};

// Every kind of write, through a read-only name of the file that m_odb writes, is refused with
// the store's text; `tag` keeps the names of two rounds apart.
void OdbRepositoryHandles::ExpectEveryWriteRefused(odb_Odb& readOnly, const std::string& tag) {
  ASSERT_TRUE(readOnly.isReadOnly());
  odb_Step& step = readOnly.steps()["LOAD"];
  EXPECT_EQ(MessageOf([&] { step.Frame(2, 0.75, tag.c_str()); }), kReadOnly);
  EXPECT_EQ(
      MessageOf([&] { readOnly.Step(("S" + tag).c_str(), "", odb_Enum::TIME, 1.0, "", "", 0.0); }),
      kReadOnly);
  EXPECT_EQ(MessageOf([&] {
              readOnly.DiscretePart(("P" + tag).c_str(), odb_Enum::THREE_D,
                                    odb_Enum::DEFORMABLE_BODY);
            }),
            kReadOnly);
  odb_Instance& instance = readOnly.rootAssembly().instance("B-1");
  EXPECT_EQ(MessageOf([&] { instance.NodeSet(("N" + tag).c_str(), Ints({1, 2})); }), kReadOnly);
  EXPECT_EQ(MessageOf([&] { readOnly.materials().Material(("M" + tag).c_str()); }), kReadOnly);
  EXPECT_EQ(MessageOf([&] {
              step.frames(0)
                  .FieldOutput(("U" + tag).c_str(), "", odb_Enum::SCALAR)
                  .addData(odb_Enum::NODAL, instance, Ints({1}), Table(1, 1));
            }),
            kReadOnly);
  EXPECT_NE(MessageOf([&] {
              odb_HistoryPoint point(instance.getNodeFromLabel(1), instance);
              step.HistoryRegion(("H" + tag).c_str(), "", point).HistoryOutput("U1", "");
            }),
            "(nothing thrown)");
}

TEST_F(OdbRepositoryHandles, ReadOnlyNameOfAFileThisProcessWritesNeverWrites) {
  saveOdb(*m_odb);
  odb_Odb& second = openOdb("second", m_path.c_str(), false);
  EXPECT_NE(TakeWarnings().find("lock file"), std::string::npos);
  ExpectEveryWriteRefused(second, "a");

  // Errors throw without a reporter too: a program that never brought the reporter up.
  wip_WIP& wip = thr_ThreadSingleton<wip_WIP>::Instance();
  wip_WipReporter* reporter = wip.Uninstall();
  odb_Odb& third = openOdb("third", m_path.c_str(), true);
  ExpectEveryWriteRefused(third, "b");
  wip.Install(reporter);

  // It reads what the writer wrote, saved or not.
  m_odb->steps()["LOAD"].Frame(3, 0.9, "unsaved");
  EXPECT_EQ(second.steps()["LOAD"].frames().size(), 1) << "steps already read stay as read";
  EXPECT_TRUE(second.update());
  EXPECT_EQ(second.steps()["LOAD"].frames().size(), 2);

  // The writer's save commits nothing of the refused writes.
  saveOdb(*m_odb);
  odb_Odb& back = Reopen();
  EXPECT_EQ(back.steps().size(), 1);
  EXPECT_EQ(back.steps()["LOAD"].frames().size(), 2);
  EXPECT_EQ(back.steps()["LOAD"].frames(0).fieldOutputs().size(), 0);
  EXPECT_EQ(back.parts().size(), 1);
  EXPECT_EQ(back.materials().size(), 0);
  EXPECT_EQ(back.rootAssembly().instance("B-1").nodeSets().size(), 0);
  EXPECT_EQ(back.steps()["LOAD"].historyRegions().size(), 0);
}

TEST_F(OdbRepositoryHandles, ClosedDatabaseAnswersItsIdentityAndThrowsForTheRest) {
  odb_Step step = m_odb->steps()["LOAD"];  // a copy: references into the database end with it
  saveOdb(*m_odb);
  odb_Odb& odb = *m_odb;
  closeOdb(odb);
  EXPECT_FALSE(odb.isOpen());
  EXPECT_EQ(odb.path(), m_path.c_str());
  EXPECT_EQ(odb.name(), m_path.c_str());
  EXPECT_FALSE(odb.isReadOnly());
  EXPECT_EQ(MessageOf([&] { odb.steps(); }), kClosed);
  EXPECT_EQ(MessageOf([&] { odb.parts(); }), kClosed);
  EXPECT_EQ(MessageOf([&] { odb.rootAssembly(); }), kClosed);
  EXPECT_EQ(MessageOf([&] { odb.getFrame(0.5, odb_Enum::CLOSEST); }), kClosed);
  EXPECT_EQ(MessageOf([&] { odb.update(); }), kClosed);
  EXPECT_EQ(MessageOf([&] { saveOdb(odb); }), kClosed);
  EXPECT_EQ(MessageOf([&] { step.Frame(2, 0.7, "late"); }), kClosed);

  // Closing again does nothing, not even to the database opened since under the same name.
  odb_Odb& again = openOdb(m_path.c_str(), false);
  closeOdb(odb);
  odb.close();
  EXPECT_TRUE(again.isOpen());
  EXPECT_EQ(again.steps()["LOAD"].frames().size(), 1);
  EXPECT_FALSE(odb.isOpen());
}

// Runs `check` in a child process as a user who cannot write `folder` (the nobody user when
// this runs as root, who may write anywhere) and returns whether it passed.
bool PassesAsReader(const std::function<bool()>& check) {
  pid_t child = fork();
  if (child == 0) {
    if (geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0)) _exit(2);
    _exit(check() ? 0 : 1);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// What a reader finds in the file that FieldFile writes, with a nodal field added.
bool ReadsTheResults(const std::string& path) {
  try {
    odb_Odb& odb = openOdb(path.c_str(), true);
    const odb_FieldOutput& u = odb.steps()["LOAD"].frames(0).fieldOutputs()["U"];
    bool ok = odb.isReadOnly() && u.values().size() == 2 && u.values()[1].data()[0] == 100.0f &&
              odb.rootAssembly().instance("B-1").nodes().size() == 12;
    closeOdb(odb);
    return ok;
  } catch (const odb_Exception&) {
    return false;
  }
}

TEST_F(OdbRepositoryHandles, ArchivedFileReadsFromAFolderNobodyCanWriteAndLeavesNothingThere) {
  m_frame.FieldOutput("U", "", odb_Enum::SCALAR)
      .addData(odb_Enum::NODAL, *m_instance, Ints({1, 2}), Table(2, 1));
  saveOdb(*m_odb);
  closeOdb(*m_odb);
  const std::string archive = m_dir.file("archive"), legacy = m_dir.file("legacy");
  std::filesystem::create_directory(archive);
  std::filesystem::create_directory(legacy);
  std::filesystem::copy_file(m_path, archive + "/a.odb");
  std::filesystem::copy_file(m_path, legacy + "/a.odb");
  // A file an earlier release wrote is in write-ahead-log mode, closed cleanly.
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open_v2((legacy + "/a.odb").c_str(), &db,
                            SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, store_ChecksumVfs()),
            SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(db, "PRAGMA journal_mode=WAL", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(db);
  for (const std::string& folder : {archive, legacy}) {
    chmod((folder + "/a.odb").c_str(), 0444);
    chmod(folder.c_str(), 0555);
  }
  chmod(m_dir.path().c_str(), 0755);
  EXPECT_TRUE(PassesAsReader([&] { return ReadsTheResults(archive + "/a.odb"); }));
  EXPECT_TRUE(PassesAsReader([&] { return ReadsTheResults(legacy + "/a.odb"); }));
  for (const std::string& folder : {archive, legacy}) {
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      EXPECT_EQ(entry.path().filename(), "a.odb");
      ++files;
    }
    EXPECT_EQ(files, 1) << folder;
    chmod(folder.c_str(), 0755);
  }
  EXPECT_FALSE(store_Database::InLogMode(m_path)) << "this release leaves no log to make";
}

}  // namespace
