#include "odb_WipReporter.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <sstream>
#include <string>

#include "AssertRecorder.h"
#include "odb_Exception.h"
#include "thr_ThreadSingleton.h"

namespace {

odb_SequenceString Texts(std::initializer_list<const char*> texts) {
  odb_SequenceString list;
  for (const char* t : texts) list.append(t);
  return list;
}

// Restores the process-wide progress switch that a test flips.
class ProgressSwitch {
 public:
  ProgressSwitch() : m_saved(odb_WipReporter::GeneratesWipMessages()) {}
  ~ProgressSwitch() { odb_WipReporter::GenerateWipMessages(m_saved); }

 private:
  bool m_saved;
};

}  // namespace

TEST(WipReporter, ErrorLineIsWrittenBeforeTheExceptionLeaves) {
  std::ostringstream out;
  odb_WipReporter reporter(out);
  try {
    reporter.Error(Texts({"first", "second"}));
    FAIL() << "Error returned";
  } catch (const odb_Exception& e) {
    EXPECT_EQ(out.str(), "ERROR: first\n");
    EXPECT_EQ(e.Code(), 6);
    EXPECT_EQ(e.Detail(), "first");
  }
}

TEST(WipReporter, ErrorThrowsEvenWithItsLineSwitchedOff) {
  std::ostringstream out;
  odb_WipReporter reporter(out);
  reporter.SetOutput(odb_WipReporter::ERROR_LINES, false);
  EXPECT_THROW(reporter.Error(odb_String("quiet")), odb_Exception);
  EXPECT_EQ(out.str(), "");
}

TEST(WipReporter, LandmarkOnlyWhileProgressIsOnWarningsAlways) {
  ProgressSwitch restore;
  std::ostringstream out;
  odb_WipReporter reporter(out);
  odb_WipReporter::GenerateWipMessages(false);
  reporter.Landmark("hidden");
  reporter.Warning("w1");
  odb_WipReporter::GenerateWipMessages(true);
  reporter.Landmark("shown");
  reporter.Warning(Texts({"w2", "ignored"}));
  EXPECT_EQ(out.str(), "Warning: w1\nLandmark: shown\nWarning: w2\n");

  reporter.SetOutput(odb_WipReporter::WARNING_LINES, false);
  reporter.SetOutput(odb_WipReporter::LANDMARK_LINES, false);
  reporter.Warning("w3");
  reporter.Landmark("l3");
  EXPECT_EQ(out.str(), "Warning: w1\nLandmark: shown\nWarning: w2\n");
}

TEST(WipReporter, UnimplementedOperationsReportTheirAssertions) {
  std::ostringstream out;
  odb_WipReporter reporter(out);
  AssertRecorder recorder;
  reporter.Verbose("v");
  reporter.Print("p");
  reporter.Print(Texts({"p"}));
  EXPECT_FALSE(reporter.Interrupted());
  reporter.CommandDone();
  reporter.InterruptedThrow();
  const char* expected[] = {
      "\"Verbose is unimplemented\" == 0",     "\"Print is unimplemented\" == 0",
      "\"Print is unimplemented\" == 0",       "\"Interrupted is unimplemented\" == 0",
      "\"CommandDone is unimplemented\" == 0", "\"InterruptedThrow is unimplemented\" == 0"};
  const int sites[] = {74, 80, 86, 92, 99, 105};
  ASSERT_EQ(recorder.fired().size(), 6u);
  for (int i = 0; i < 6; ++i) {
    EXPECT_EQ(recorder.fired()[i].condition, expected[i]);
    EXPECT_EQ(recorder.fired()[i].source, "odb/impl/odb_WipReporter");
    EXPECT_EQ(recorder.fired()[i].line, sites[i]);
  }
  EXPECT_EQ(out.str(), "");

  // Switched off, verbose and print output are dropped without a report.
  reporter.SetOutput(odb_WipReporter::VERBOSE_LINES, false);
  reporter.SetOutput(odb_WipReporter::PRINT_LINES, false);
  reporter.Verbose("v");
  reporter.Print("p");
  EXPECT_EQ(recorder.fired().size(), 6u);
}
