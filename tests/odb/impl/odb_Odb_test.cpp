#include "odb_Odb.h"

#include <sys/wait.h>
#include <unistd.h>

#include "OdbSession.h"
#include "odb_OdbRepository.h"

namespace {

using Database = OdbSession;

// Two steps; the second starts at analysis time 1.0, so its frames sit at 1.0, 1.5 and 2.0.
odb_Odb& TwoSteps(const std::string& path) {
  odb_Odb& odb = Odb("", "", "", path.c_str());
  odb_Step& first = odb.Step("Step-1", "", odb_Enum::TIME, 1.0, "", "", 0.0);
  for (double v : {0.0, 0.5, 1.0}) first.Frame(0, v, "");
  odb_Step& second = odb.Step("Step-2", "", odb_Enum::TIME, 1.0, "Step-1", "", 1.0);
  for (double v : {0.0, 0.5, 1.0}) second.Frame(0, v, "");
  return odb;
}

TEST_F(Database, GetFrameAddsTotalTimeAndBreaksTiesByMatchRule) {
  odb_Odb& odb = TwoSteps(m_dir.file("a.odb"));
  // Step-1 frame 2 and Step-2 frame 0 both sit at time 1.0.
  odb_Frame nearest = odb.getFrame(0.9, odb_Enum::CLOSEST);
  EXPECT_EQ(nearest.frameIndex(), 2) << "CLOSEST keeps the earlier of equal times";
  odb_Frame before = odb.getFrame(1.1, odb_Enum::BEFORE);
  EXPECT_EQ(before.frameIndex(), 2) << "BEFORE keeps the earlier of equal times";
  odb_Frame after = odb.getFrame(0.9, odb_Enum::AFTER);
  EXPECT_EQ(after.frameIndex(), 0) << "AFTER lets the later of equal times win";
  EXPECT_EQ(odb.getFrame(1.6, odb_Enum::CLOSEST).frameValue(), 0.5);
  EXPECT_EQ(odb.getFrame(1.4, odb_Enum::AFTER).frameValue(), 0.5);
  EXPECT_EQ(odb.getFrame(1.5, odb_Enum::EXACT).frameValue(), 0.5);
  EXPECT_EQ(MessageOf([&] { odb.getFrame(1.25, odb_Enum::EXACT); }), "Frame not found.");
  EXPECT_EQ(MessageOf([&] { odb.getFrame(-1.0, odb_Enum::BEFORE); }), "Frame not found.");
  EXPECT_EQ(odb.getFrame(0.0, static_cast<odb_Enum::odb_MatchEnum>(9)).frameValue(), 1.0)
      << "an unknown rule takes every frame: the last one wins";
}

TEST_F(Database, ExactMatchComparesInSinglePrecision) {
  odb_Odb& odb = Odb("", "", "", m_dir.file("a.odb").c_str());
  odb.Step("S", "", odb_Enum::TIME, 1.0, "", "", -1.0).Frame(1, 0.1, "");
  EXPECT_EQ(MessageOf([&] { odb.getFrame(0.1, odb_Enum::EXACT); }), "Frame not found.");
  EXPECT_EQ(odb.getFrame(static_cast<float>(0.1), odb_Enum::EXACT).frameIndex(), 0)
      << "a negative total time adds nothing";
  odb_Odb& empty = Odb("", "", "", m_dir.file("b.odb").c_str());
  EXPECT_EQ(MessageOf([&] { empty.getFrame(0.0, odb_Enum::CLOSEST); }), "Frame not found.");
}

TEST_F(Database, GetFrameTakesTimesThatGoBackInCreationOrder) {
  odb_Odb& odb = Odb("", "", "", m_dir.file("a.odb").c_str());
  odb_Step& step = odb.Step("S", "", odb_Enum::TIME, 1.0, "", "", 2.0);
  for (double v : {0.0, 1.0, 0.5, 1.0}) step.Frame(0, v, "");  // times 2, 3, 2.5, 3
  EXPECT_EQ(odb.getFrame(2.75, odb_Enum::CLOSEST).frameIndex(), 1)
      << "3.0 and 2.5 are as near: frame 1 came first";
  EXPECT_EQ(odb.getFrame(2.9, odb_Enum::BEFORE).frameIndex(), 2);
  EXPECT_EQ(odb.getFrame(2.1, odb_Enum::AFTER).frameIndex(), 2);
  EXPECT_EQ(odb.getFrame(2.75, odb_Enum::AFTER).frameIndex(), 3);
  EXPECT_EQ(odb.getFrame(3.0, odb_Enum::EXACT).frameIndex(), 3);
}

TEST_F(Database, StepCreatorAndSaveRefuseWithTheirMessages) {
  std::string path = m_dir.file("a.odb");
  odb_Odb& odb = Odb("", "", "", path.c_str());
  EXPECT_EQ(MessageOf([&] { odb.Step("S2", "", odb_Enum::TIME, 1.0, "S1", "", 0.0); }),
            "Previous step \"S1\" not found.");
  odb.Step("S1", "", odb_Enum::TIME, 1.0, "", "", 0.0);
  EXPECT_EQ(MessageOf([&] { odb.Step("S1", "", odb_Enum::TIME, 1.0, "", "", 0.0); }),
            "A Step named \"S1\" already exists.");
  EXPECT_EQ(MessageOf([&] { odb.save(m_dir.file("elsewhere.odb").c_str()); }),
            "ODB not saved. Changing the path is not allowed.");
  EXPECT_FALSE(Exists(m_dir.file("elsewhere.odb")));
  odb.save(path.c_str());
  odb.save();
  closeOdb(odb);
  EXPECT_TRUE(openOdb(path.c_str()).steps().isMember("S1"));
}

TEST_F(Database, UpdateReadsWhatAnotherProcessSaved) {
  std::string path = m_dir.file("a.odb");
  closeOdb(Odb("", "", "", path.c_str()));
  int ready[2], go[2];
  ASSERT_EQ(pipe(ready), 0);
  ASSERT_EQ(pipe(go), 0);
  pid_t reader = fork();
  ASSERT_GE(reader, 0);
  if (reader == 0) {
    odb_Odb& odb = openOdb(path.c_str(), true);
    bool ok = !odb.update() && odb.steps().size() == 0 && !odb.update();
    char c = 'r';
    ok = ok && write(ready[1], &c, 1) == 1 && read(go[0], &c, 1) == 1;
    ok = ok && odb.update() && odb.steps().size() == 1 && odb.steps()["S"].frames().size() == 1;
    ok = ok && write(ready[1], &c, 1) == 1 && read(go[0], &c, 1) == 1;
    ok = ok && odb.update() && odb.steps()["S"].frames().size() == 2 && !odb.update();
    _exit(ok ? 0 : 1);
  }
  char c;
  ASSERT_EQ(read(ready[0], &c, 1), 1);
  odb_Odb& writer = openOdb(path.c_str(), false);
  writer.Step("S", "", odb_Enum::TIME, 1.0, "", "", 0.0).Frame(1, 0.5, "");
  saveOdb(writer);
  ASSERT_EQ(write(go[1], &c, 1), 1);
  ASSERT_EQ(read(ready[0], &c, 1), 1);
  writer.steps()["S"].Frame(2, 1.0, "");
  saveOdb(writer);
  ASSERT_EQ(write(go[1], &c, 1), 1);
  int status = 0;
  waitpid(reader, &status, 0);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "the reader missed an update";
}

TEST_F(Database, SecondProcessWritingFindsTheLockAndReadsOnly) {
  std::string path = m_dir.file("a.odb");
  closeOdb(Odb("", "", "", path.c_str()));
  int ready[2], go[2];
  ASSERT_EQ(pipe(ready), 0);
  ASSERT_EQ(pipe(go), 0);
  pid_t holder = fork();
  ASSERT_GE(holder, 0);
  if (holder == 0) {
    odb_Odb& odb = openOdb(path.c_str(), false);
    char c = 'r';
    bool ok = !odb.isReadOnly() && write(ready[1], &c, 1) == 1 && read(go[0], &c, 1) == 1;
    closeOdb(odb);
    _exit(ok ? 0 : 1);
  }
  char c;
  ASSERT_EQ(read(ready[0], &c, 1), 1);
  EXPECT_TRUE(Exists(path + ".lck"));
  odb_Odb& second = openOdb(path.c_str(), false);
  EXPECT_TRUE(second.isReadOnly());
  EXPECT_NE(TakeWarnings().find("Warning: An output database lock file"), std::string::npos);
  ASSERT_EQ(write(go[1], &c, 1), 1);
  int status = 0;
  waitpid(holder, &status, 0);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  EXPECT_FALSE(Exists(path + ".lck")) << "the writer's close removed its lock";
}

}  // namespace
