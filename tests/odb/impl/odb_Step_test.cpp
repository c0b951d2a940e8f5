#include "odb_Step.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "StepFile.h"
#include "odb_StepRepositoryData.h"

namespace {

// Frame values 0, 1, 1, 2, 3: a tie at 1 and equal distances around 0.5 and 1.5.
odb_Step& FiveFrames(odb_Step& step) {
  for (double value : {0.0, 1.0, 1.0, 2.0, 3.0}) step.Frame(0, value, "");
  return step;
}

int Found(const odb_Step& step, double value, int match) {
  return step.getFrame(value, static_cast<odb_Enum::odb_MatchEnum>(match)).frameIndex();
}

}  // namespace

TEST_F(StepFile, FramesRefusesIndicesOutsideTheStep) {
  odb_Step& step = NewStep("Step-1");
  EXPECT_EQ(MessageOf([&] { step.frames(0); }), "Incorrect index for frame.");
  for (int i = 0; i < 3; ++i) step.Frame(i + 1, 0.5 * i, odb_String(i));
  EXPECT_EQ(MessageOf([&] { step.frames(-1); }), "Incorrect index for frame.");
  EXPECT_EQ(MessageOf([&] { step.frame(3); }), "Incorrect index for frame.");
  EXPECT_EQ(MessageOf([&] { step.frames()[3]; }), "Incorrect index for frame.");
  const odb_Frame& last = step.frames(2);
  EXPECT_EQ(last.frameIndex(), 2);
  EXPECT_EQ(last.incrementNumber(), 3);
  EXPECT_EQ(last.description(), "2");
}

TEST_F(StepFile, GetFrameOnAStepWithoutFramesThrowsFrameNotFound) {
  odb_Step& step = NewStep("Step-1");
  EXPECT_EQ(MessageOf([&] { step.getFrame(0.0, odb_Enum::CLOSEST); }), "Frame not found");
  EXPECT_EQ(MessageOf([&] { step.getFrame(0.0, static_cast<odb_Enum::odb_MatchEnum>(9)); }),
            "Frame not found");
}

TEST_F(StepFile, GetFrameTieBreaksDifferByMatch) {
  const odb_Step& step = FiveFrames(NewStep("Step-1"));
  // CLOSEST and BEFORE keep the earlier of equally near frames.
  EXPECT_EQ(Found(step, 1.4, odb_Enum::CLOSEST), 1);
  EXPECT_EQ(Found(step, 1.5, odb_Enum::CLOSEST), 1);
  EXPECT_EQ(Found(step, 0.5, odb_Enum::CLOSEST), 0);
  EXPECT_EQ(Found(step, 1.9, odb_Enum::BEFORE), 1);
  EXPECT_EQ(Found(step, 2.0, odb_Enum::BEFORE), 3);
  // AFTER lets an equally near later frame replace the earlier one.
  EXPECT_EQ(Found(step, 0.5, odb_Enum::AFTER), 2);
  EXPECT_EQ(Found(step, 1.5, odb_Enum::AFTER), 3);
  EXPECT_EQ(Found(step, 3.0, odb_Enum::AFTER), 4);
  // EXACT takes every equal frame, so the last one.
  EXPECT_EQ(Found(step, 1.0, odb_Enum::EXACT), 2);
  // Any other match value takes every frame.
  EXPECT_EQ(Found(step, -100.0, 7), 4);
  EXPECT_EQ(MessageOf([&] { Found(step, -0.5, odb_Enum::BEFORE); }), "Frame not found");
  EXPECT_EQ(MessageOf([&] { Found(step, 3.5, odb_Enum::AFTER); }), "Frame not found");
  EXPECT_EQ(MessageOf([&] { Found(step, 1.5, odb_Enum::EXACT); }), "Frame not found");
}

TEST_F(StepFile, GetFrameExactComparesTheSinglePrecisionValue) {
  odb_Step& step = NewStep("Step-1");
  step.Frame(1, 0.1, "");
  EXPECT_EQ(MessageOf([&] { step.getFrame(0.1, odb_Enum::EXACT); }), "Frame not found");
  EXPECT_EQ(step.getFrame(static_cast<double>(0.1f), odb_Enum::EXACT).frameIndex(), 0);
}

TEST_F(StepFile, GetFrameWithALoadCaseLooksOnlyAtItsFrames) {
  odb_Step& step = NewStep("Step-1");
  odb_LoadCase first = step.LoadCase("LC-1");
  odb_LoadCase second = step.LoadCase("LC-2");
  step.Frame(first, "first");          // value 0
  step.Frame(second, "second", 5.0);   // value 5
  step.Frame(1, 0.0, "no load case");  // value 0, no load case
  step.Frame(second, "second again", 6.0);
  EXPECT_EQ(step.getFrame(first, 6.0, odb_Enum::CLOSEST).description(), "first");
  EXPECT_EQ(step.getFrame(second, 0.0, odb_Enum::CLOSEST).description(), "second");
  EXPECT_EQ(step.getFrame(second, 6.0, odb_Enum::BEFORE).frameIndex(), 3);
  EXPECT_EQ(step.getFrame(0.0, odb_Enum::EXACT).description(), "no load case");
  EXPECT_EQ(MessageOf([&] { step.getFrame(odb_LoadCase("LC-3"), 0.0, odb_Enum::CLOSEST); }),
            "Frame not found");
  EXPECT_EQ(step.frames(1).loadCase(), second);
  EXPECT_TRUE(step.frames(2).loadCase().isEmpty());
}

TEST_F(StepFile, LoadCasesAreCreatedOnceAndFramesNeedAKnownOne) {
  odb_Step& step = NewStep("Step-1");
  step.LoadCase("LC-1");
  EXPECT_EQ(step.LoadCase("LC-1").name(), "LC-1");
  EXPECT_EQ(step.loadCases().size(), 1);
  EXPECT_EQ(MessageOf([&] { step.LoadCase(""); }), "Invalid load case name.");
  EXPECT_EQ(MessageOf([&] { step.Frame(odb_LoadCase("LC-9"), "x"); }),
            "Key \"LC-9\" not found in repository");
  EXPECT_EQ(step.frames().size(), 0);
  // Load-case frames are numbered by their index.
  step.Frame(2, 0.0, "");
  EXPECT_EQ(step.Frame(odb_LoadCase("LC-1"), "x").frameId(), 1);
}

TEST_F(StepFile, StepsFramesAndLoadCasesReadBackEqualAfterCommit) {
  odb_Step& step = odb_StepRepositoryAccess::AddStep(
      m_steps, "Step-1", "first", odb_Enum::FREQUENCY, 2.5, "Initial", "*FREQUENCY", 4.0);
  step.LoadCase("LC-B");
  step.LoadCase("LC-A");
  step.Frame(7, 0.1, "mode 7");
  step.Frame(odb_LoadCase("LC-A"), "a", 3.0);
  NewStep("Step-2");
  m_store->Commit();

  odb_StepRepository reread = odb_StepRepositoryAccess::Make(store_Database::Open(m_path, true));
  odb_StepRepositoryAccess::Load(reread);
  ASSERT_EQ(reread.size(), 2);
  EXPECT_EQ(reread.stepNames()[1], "Step-2");
  const odb_Step& back = reread.constGet("Step-1");
  EXPECT_EQ(back.description(), "first");
  EXPECT_EQ(back.domain(), odb_Enum::FREQUENCY);
  EXPECT_EQ(back.timePeriod(), 2.5);
  EXPECT_EQ(back.totalTime(), 4.0);
  EXPECT_EQ(back.previousStepName(), "Initial");
  EXPECT_EQ(back.procedure(), "*FREQUENCY");
  ASSERT_EQ(back.frames().size(), 2);
  for (int i = 0; i < 2; ++i) {
    odb_Frame written = step.frames(i);
    const odb_Frame& read = back.frames(i);
    EXPECT_EQ(read.frameIndex(), written.frameIndex());
    EXPECT_EQ(read.frameId(), written.frameId());
    EXPECT_EQ(read.frameValue(), written.frameValue());
    EXPECT_EQ(read.description(), written.description());
    EXPECT_EQ(read.loadCase(), written.loadCase());
  }
  EXPECT_EQ(back.loadCases().size(), 2);
  EXPECT_TRUE(back.loadCases().isMember("LC-B"));
}

TEST_F(StepFile, FramesAreReadWhenFirstAskedForAndUpdateReadsOnlyNewOnes) {
  odb_Step& written = NewStep("Step-1");
  written.Frame(1, 0.1, "");
  m_store->Commit();

  odb_StepRepository reader = odb_StepRepositoryAccess::Make(store_Database::Open(m_path, true));
  odb_StepRepositoryAccess::Load(reader);
  odb_Step& step = reader.get("Step-1");
  EXPECT_FALSE(step.update());  // nothing read yet, so nothing to bring up to date
  written.Frame(2, 0.2, "");
  m_store->Commit();
  EXPECT_EQ(step.frames().size(), 2);  // the first read sees what was committed after Load
  EXPECT_FALSE(step.update());

  written.Frame(3, 0.3, "");
  m_store->Commit();
  EXPECT_EQ(step.frames().size(), 2);
  EXPECT_TRUE(odb_StepRepositoryAccess::Update(reader));
  EXPECT_EQ(step.frames().size(), 3);
  EXPECT_EQ(step.frames(2).incrementNumber(), 3);
  EXPECT_FALSE(step.update());

  NewStep("Step-2");
  m_store->Commit();
  EXPECT_TRUE(odb_StepRepositoryAccess::Update(reader));
  EXPECT_TRUE(reader.isMember("Step-2"));
  EXPECT_FALSE(odb_StepRepositoryAccess::Update(reader));
}

TEST_F(StepFile, FrameReferencesKeepTheirFrameAcrossLaterGetsAndCopiesShareFrames) {
  odb_Step& step = FiveFrames(NewStep("Step-1"));
  odb_Step copy = step;
  odb_SequenceFrame& frames = step.frames();
  const odb_Frame& first = frames.get(0);
  odb_Frame& a = step.frames(1);
  odb_Frame& b = step.frames(4);
  step.Frame(9, 9.0, "added");
  EXPECT_EQ(copy.frames().size(), 6);
  EXPECT_EQ(copy.frames(5).description(), "added");
  const odb_Frame& viaCopy = copy.frames()[3];
  frames.get(3);
  odb_SequenceFrame view = step.frames();
  view.get(2);
  EXPECT_EQ(first.frameIndex(), 0);
  EXPECT_EQ(a.frameIndex(), 1);
  EXPECT_EQ(b.frameIndex(), 4);
  EXPECT_FLOAT_EQ(a.frameValue(), step.frames(1).frameValue());
  EXPECT_NE(a.frameValue(), b.frameValue());
  EXPECT_EQ(viaCopy.frameIndex(), 3);
  EXPECT_EQ(&viaCopy, &frames.get(3)) << "every view of a step hands out the same frame";
}

TEST_F(StepFile, GetFrameInAStepWhoseValuesGoBackBreaksTiesByCreationOrder) {
  odb_Step& step = NewStep("Step-1");
  for (double value : {0.0, 1.0, 2.0, 1.0}) step.Frame(0, value, "");  // a restart at 1.0
  EXPECT_EQ(Found(step, 1.0, odb_Enum::CLOSEST), 1);
  EXPECT_EQ(Found(step, 1.0, odb_Enum::BEFORE), 1);
  EXPECT_EQ(Found(step, 1.0, odb_Enum::AFTER), 3);
  EXPECT_EQ(Found(step, 1.0, odb_Enum::EXACT), 3);
  EXPECT_EQ(Found(step, 0.5, odb_Enum::AFTER), 3);
  EXPECT_EQ(Found(step, 1.6, odb_Enum::CLOSEST), 2);
  EXPECT_EQ(Found(step, 1.5, odb_Enum::CLOSEST), 1)
      << "1.0 and 2.0 are as near: frame 1 came first";
  EXPECT_EQ(Found(step, 1.5, odb_Enum::AFTER), 2);
}
