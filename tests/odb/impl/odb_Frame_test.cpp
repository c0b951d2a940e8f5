#include "odb_Frame.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <limits>
#include <memory>
#include <string>

#include "StepFile.h"

namespace {

// One step of the given domain in a fresh database file.
class FrameFile : public StepFile {
 protected:
  odb_Step& StepOf(odb_Enum::odb_DomainEnum domain) {
    return NewStep(odb_String(m_steps.size()), domain);
  }
};

}  // namespace

TEST_F(FrameFile, ValueIsKeptInSinglePrecision) {
  odb_Frame frame = StepOf(odb_Enum::TIME).Frame(1, 0.1, "Increment 1");
  EXPECT_EQ(frame.frameValue(), static_cast<double>(0.1f));
  EXPECT_NE(frame.frameValue(), 0.1);
  EXPECT_EQ(frame.description(), "Increment 1");
  // Beyond the float range the value saturates instead of being undefined.
  EXPECT_EQ(StepOf(odb_Enum::TIME).Frame(1, 1e300, "").frameValue(),
            std::numeric_limits<double>::infinity());
}

TEST_F(FrameFile, TimeFramesAreIdentifiedByIncrementAndHaveNoMode) {
  for (odb_Enum::odb_DomainEnum domain : {odb_Enum::TIME, odb_Enum::ARC_LENGTH}) {
    odb_Step& step = StepOf(domain);
    step.Frame(4, 0.0, "");
    odb_Frame frame = step.Frame(8, 0.75, "");
    EXPECT_EQ(frame.frameIndex(), 1);
    EXPECT_EQ(frame.frameId(), 8);
    EXPECT_EQ(frame.mode(), -1);
    EXPECT_EQ(frame.frequency(), 0.0);
    EXPECT_EQ(frame.domain(), domain);
  }
}

TEST_F(FrameFile, FrequencyFramesReportModeAndFrequency) {
  for (odb_Enum::odb_DomainEnum domain : {odb_Enum::FREQUENCY, odb_Enum::MODAL}) {
    odb_Frame frame = StepOf(domain).Frame(3, 12.5, "Mode 3");
    EXPECT_EQ(frame.frameId(), 3);
    EXPECT_EQ(frame.mode(), 3);
    EXPECT_EQ(frame.frequency(), 12.5);
    EXPECT_EQ(frame.domain(), domain);
  }
}
