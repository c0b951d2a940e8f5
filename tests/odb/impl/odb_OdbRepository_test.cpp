#include "odb_OdbRepository.h"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>

#include "OdbSession.h"
#include "odb_OdbData.h"
#include "odb_Version.h"
#include "store_Database.h"

namespace {

using OdbRepository = OdbSession;

void SetSchemaVersion(const std::string& path, int version) {
  std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
  file.seekp(60);
  for (int shift = 24; shift >= 0; shift -= 8)
    file.put(static_cast<char>((version >> shift) & 0xFF));
}

TEST_F(OdbRepository, CreatedDatabaseIsLockedSavedClosedAndReopened) {
  std::string path = m_dir.file("beam.odb");
  odb_Odb& odb = Odb("", "Cantilever", "a test beam", path.c_str());
  EXPECT_STREQ(odb.name().CStr(), path.c_str()) << "the path is the name when none is given";
  EXPECT_TRUE(Exists(path + ".lck"));
  EXPECT_FALSE(odb.isReadOnly());
  odb.Step("Step-1", "load", odb_Enum::TIME, 1.0, "", "*STATIC", 0.0).Frame(1, 0.5, "half");
  saveOdb(odb);
  EXPECT_EQ(std::string(odb_OdbAccess::Store(odb)->Header("analysis_version")),
            "KORVEL/Scripting Interface" QTVODB_VERSION_STRING);
  closeOdb(odb);
  EXPECT_FALSE(Exists(path + ".lck"));
  EXPECT_EQ(odb_OdbRepository::Instance().size(), 0);

  odb_Odb& again = openOdb(path.c_str(), true);
  EXPECT_STREQ(again.analysisTitle().CStr(), "Cantilever");
  EXPECT_STREQ(again.description().CStr(), "a test beam");
  ASSERT_EQ(again.steps().size(), 1);
  EXPECT_EQ(again.steps()["Step-1"].frames(0).frameValue(), 0.5);
  EXPECT_FALSE(Exists(path + ".lck")) << "a read-only open makes no lock file";
  EXPECT_EQ(TakeWarnings(), "");
}

TEST_F(OdbRepository, ClosingWithoutSavingKeepsTheLastSavedState) {
  std::string path = m_dir.file("a.odb");
  odb_Odb& odb = Odb("a", "", "", path.c_str());
  odb.Step("Saved", "", odb_Enum::TIME, 1.0, "", "", 0.0);
  saveOdb(odb);
  odb.Step("Unsaved", "", odb_Enum::TIME, 1.0, "Saved", "", 1.0);
  odb.close();
  odb_Odb& back = openOdb(path.c_str());
  EXPECT_EQ(back.steps().size(), 1);
  EXPECT_TRUE(back.steps().isMember("Saved"));
}

TEST_F(OdbRepository, NamesAndPathsAreCheckedAndMadeAbsolute) {
  std::string path = m_dir.file("a.odb");
  Odb("first", "", "", path.c_str()).save();
  EXPECT_EQ(MessageOf([&] { Odb("first", "", "", m_dir.file("b.odb").c_str()); }),
            "A database named ('first') already exists.");
  EXPECT_EQ(MessageOf([&] { Odb("second", "", "", path.c_str()); }),
            "The path '" + path + "' has an existing ddb associated with it.");
  closeOdb(odb_OdbRepository::Instance().get("first"));

  std::string roundabout = m_dir.path() + "/./sub/../a.odb";
  odb_Odb& byPath = openOdb(roundabout.c_str());
  EXPECT_STREQ(byPath.name().CStr(), path.c_str());
  EXPECT_EQ(&openOdb("", path.c_str()), &byPath) << "a repeated open returns the same object";
  odb_Odb& named = openOdb("named", path.c_str(), true);
  EXPECT_EQ(MessageOf([&] { openOdb("named", m_dir.file("other.odb").c_str()); }),
            "A database named ('named') already exists.");
  EXPECT_EQ(&openOdb("named", path.c_str()), &named);
  EXPECT_NE(
      TakeWarnings().find(
          "Warning: The database has been opened with readOnly flag on. It will remain readOnly."),
      std::string::npos);
}

TEST_F(OdbRepository, LockFileMakesAWriteOpenReadOnlyAndSavingWritesNothing) {
  std::string path = m_dir.file("a.odb");
  closeOdb(Odb("", "", "", path.c_str()));
  std::ofstream(path + ".lck").put('x');
  odb_Odb& odb = openOdb(path.c_str(), false);
  EXPECT_TRUE(odb.isReadOnly());
  EXPECT_EQ(TakeWarnings(),
            "Warning: An output database lock file " + path +
                ".lck has been detected. This may indicate that the output database "
                "is opened for writing by another application.\n" +
                path + " will be opened read-only. \n");
  saveOdb(odb);
  EXPECT_EQ(TakeWarnings(), "Warning: Database was opened read-only and cannot be saved.\n");
  closeOdb(odb);
  EXPECT_TRUE(Exists(path + ".lck")) << "another application's lock is left alone";
}

// A writer killed while it had the file open leaves its lock: the next writable open still
// reads only, but says that the writer is gone and how to recover.
TEST_F(OdbRepository, LockLeftByAWriterThatIsGoneSaysSoAndHowToRecover) {
  std::string path = m_dir.file("a.odb");
  pid_t writer = fork();
  ASSERT_GE(writer, 0);
  if (writer == 0) {
    Odb("", "", "", path.c_str()).save();
    _exit(0);  // killed in effect: nothing closes the database or removes its lock
  }
  int status = 0;
  waitpid(writer, &status, 0);
  ASSERT_TRUE(Exists(path + ".lck"));
  odb_Odb& odb = openOdb(path.c_str(), false);
  EXPECT_TRUE(odb.isReadOnly());
  char host[256] = {};
  gethostname(host, sizeof host - 1);
  const std::string lock = path + ".lck";
  const std::string warnings = TakeWarnings();
  EXPECT_EQ(warnings.rfind("Warning: An output database lock file " + lock, 0), 0u) << warnings;
  EXPECT_NE(warnings.find("Warning: The lock file " + lock + " was left by process " +
                          std::to_string(writer) + " on host " + host +
                          ", which no longer runs: that writer ended without closing the "
                          "database. What it last saved is intact. Delete " +
                          lock + " to open the database for writing again.\n"),
            std::string::npos)
      << warnings;
  closeOdb(odb);

  // A lock of a writer that still runs gets the plain warning only.
  std::remove(lock.c_str());
  odb_Odb& live = Odb("live", "", "", path.c_str());
  odb_Odb& second = openOdb("second", path.c_str(), false);
  EXPECT_TRUE(second.isReadOnly());
  EXPECT_EQ(TakeWarnings().find("no longer runs"), std::string::npos);
  closeOdb(live);
}

TEST_F(OdbRepository, FileWithoutWritePermissionOpensReadOnly) {
  std::string path = m_dir.file("a.odb");
  closeOdb(Odb("", "", "", path.c_str()));
  chmod(path.c_str(), 0444);
  odb_Odb& odb = openOdb(path.c_str(), false);
  EXPECT_TRUE(odb.isReadOnly());
  EXPECT_EQ(TakeWarnings(), "Warning: Output database " + path +
                                " cannot be opened with write access due to file permission "
                                "settings or a database version incompatibility.\nThe ODB will be "
                                "opened read-only.\n");
  EXPECT_FALSE(Exists(path + ".lck"));
}

TEST_F(OdbRepository, OlderAndNewerSchemaVersionsAreRefusedWithoutTrace) {
  std::string path = m_dir.file("a.odb");
  closeOdb(Odb("", "", "", path.c_str()));
  SetSchemaVersion(path, 332);
  try {
    openOdb(path.c_str(), false);
    FAIL() << "opened";
  } catch (const odb_Exception& e) {
    EXPECT_EQ(e.Code(), 0);
    EXPECT_EQ(e.VersionFound(), 332);
    EXPECT_STREQ(e.JournalMessage().CStr(),
                 "The database is from a previous version of KORVEL. \nRun korvel -upgrade -job "
                 "<newFileName> -odb <oldOdbFileName> to upgrade it.");
  }
  SetSchemaVersion(path, 334);
  try {
    openOdb(path.c_str(), false);
    FAIL() << "opened";
  } catch (const odb_Exception& e) {
    EXPECT_EQ(e.Code(), 1);
    EXPECT_EQ(std::string(e.JournalMessage().CStr()).rfind(path + " is from a more recent", 0), 0u);
  }
  EXPECT_FALSE(Exists(path + ".lck"));
  EXPECT_EQ(odb_OdbRepository::Instance().size(), 0);
  SetSchemaVersion(path, 333);
  EXPECT_TRUE(openOdb(path.c_str()).isOpen());
}

TEST_F(OdbRepository, UnreadableFilesAndFoldersGiveTheOpenAndCreateMessages) {
  std::string missing = m_dir.file("missing.odb");
  EXPECT_EQ(MessageOf([&] { openOdb(missing.c_str()); }),
            "Cannot open file " + missing + ". No such file or directory.");
  std::ofstream(m_dir.file("empty.odb")).flush();
  EXPECT_EQ(MessageOf([&] { openOdb(m_dir.file("empty.odb").c_str()); }),
            "Cannot open file " + m_dir.file("empty.odb") + ". The file is empty.");
  std::string nowhere = m_dir.file("no/such/a.odb");
  EXPECT_EQ(MessageOf([&] { Odb("", "", "", nowhere.c_str()); }),
            "Cannot create file " + nowhere + ". No such file or directory.");
  EXPECT_FALSE(Exists(m_dir.file("empty.odb.lck")));
  EXPECT_EQ(odb_OdbRepository::Instance().size(), 0);
}

TEST_F(OdbRepository, CloseDropsEveryNameOfTheFileAndRemoveKeepsTheThresholdOfTwo) {
  std::string path = m_dir.file("a.odb");
  odb_Odb& odb = Odb("one", "", "", path.c_str());
  odb.save();
  openOdb("two", path.c_str(), true);
  openOdb("three", path.c_str(), true);
  odb_OdbRepository& registry = odb_OdbRepository::Instance();
  registry.remove("unknown");
  EXPECT_EQ(registry.size(), 3);
  EXPECT_TRUE(registry.get("unknown").path().Empty()) << "the fallback slot, no throw";
  EXPECT_TRUE(registry.get("unknown").ddb().isNull());
  EXPECT_FALSE(registry.get("one").ddb().isNull());
  EXPECT_EQ(registry.get("one").ddb(), odb.ddb()) << "the same name's view of the file";
  EXPECT_NE(registry.get("two").ddb(), odb.ddb()) << "each name has its own view";
  registry.remove("three");
  EXPECT_EQ(registry.size(), 2) << "three names shared the file: only one dropped";
  EXPECT_TRUE(registry.get("one").isOpen());
  registry.remove("two");
  EXPECT_EQ(registry.size(), 0) << "two names shared the file: it closes for both";

  odb_Odb first = Odb("x", "", "", m_dir.file("b.odb").c_str());  // a copy outlives the close
  odb_Odb& second = openOdb("y", m_dir.file("b.odb").c_str(), true);
  closeOdb(second);
  EXPECT_FALSE(registry.isMember("x"));
  EXPECT_FALSE(Exists(m_dir.file("b.odb.lck")));
  EXPECT_FALSE(first.isOpen());
  EXPECT_THROW(first.Step("late", "", odb_Enum::TIME, 1.0, "", "", 0.0), odb_Exception);
}

TEST_F(OdbRepository, FinalizeClosesEverythingAndRemovesLockFiles) {
  Odb("", "", "", m_dir.file("a.odb").c_str());
  Odb("", "", "", m_dir.file("b.odb").c_str());
  int other = 0;
  odb_initialize(other);
  odb_finalize(other);
  EXPECT_EQ(odb_OdbRepository::Instance().size(), 2) << "a nested finalize leaves the library up";
  odb_finalize(m_count);
  EXPECT_FALSE(Exists(m_dir.file("a.odb.lck")));
  EXPECT_FALSE(Exists(m_dir.file("b.odb.lck")));
  odb_initialize(m_count);
  EXPECT_EQ(odb_OdbRepository::Instance().size(), 0);
}

}  // namespace
