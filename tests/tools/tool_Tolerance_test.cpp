#include "tool_Tolerance.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>

#include "tool_Common.h"

namespace {

std::string ReadError(const std::string& text) {
  tool_Tolerances t;
  std::istringstream in(text);
  try {
    t.read(in, "tol.txt");
  } catch (const tool_Error& e) {
    return e.what();
  }
  return "";
}

}  // namespace

TEST(ToolTolerance, AgreeTakesEitherToleranceAndTreatsNanAsAValue) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float inf = std::numeric_limits<float>::infinity();
  const tool_Tolerance exact, absolute{0.1, 0}, relative{0, 0.01};
  EXPECT_TRUE(tool_Agree(1.5f, 1.5f, exact));
  EXPECT_FALSE(tool_Agree(1.5f, 1.5000001f, exact));
  EXPECT_TRUE(tool_Agree(nan, nan, exact));
  EXPECT_FALSE(tool_Agree(nan, 1.0f, tool_Tolerance{1e30, 1e30}));
  EXPECT_FALSE(tool_Agree(0.0f, nan, tool_Tolerance{1e30, 1e30}));
  EXPECT_TRUE(tool_Agree(inf, inf, exact));
  EXPECT_FALSE(tool_Agree(inf, -inf, tool_Tolerance{1e30, 1}));
  EXPECT_TRUE(tool_Agree(10.0, 10.09, absolute));
  EXPECT_FALSE(tool_Agree(10.0, 10.11, absolute));
  // Relative to the larger magnitude, so the rule is the same both ways round.
  EXPECT_TRUE(tool_Agree(100.0, 100.99, relative));
  EXPECT_TRUE(tool_Agree(100.99, 100.0, relative));
  EXPECT_FALSE(tool_Agree(100.0, 101.1, relative));
  EXPECT_FALSE(tool_Agree(0.0, 1e-9, relative));  // near zero only an absolute tolerance helps
}

TEST(ToolTolerance, ReadsVariablesTheDefaultAndComments) {
  tool_Tolerances t;
  std::istringstream in("# a comment\n\n*  1e-9  1e-6\nS  0.5 0.25  # stresses\n  U\t0 0\n");
  t.read(in, "tol.txt");
  EXPECT_EQ(t.of("S").absolute, 0.5);
  EXPECT_EQ(t.of("S").relative, 0.25);
  EXPECT_EQ(t.of("U").relative, 0);
  EXPECT_EQ(t.of("RF").absolute, 1e-9);
  EXPECT_EQ(t.of("RF").relative, 1e-6);
  EXPECT_EQ(tool_Tolerances().of("S").absolute, 0);  // nothing given: exact
}

TEST(ToolTolerance, RefusesLinesItCannotTakeNamingTheLine) {
  EXPECT_EQ(ReadError("S 1 2 3\n"),
            "tol.txt:1: expected a variable, an absolute and a relative tolerance; found 4 "
            "columns");
  EXPECT_EQ(ReadError("# fine\nS x 0\n"),
            "tol.txt:2: the absolute tolerance \"x\" is not a number of zero or more");
  EXPECT_EQ(ReadError("S 0 -1\n"),
            "tol.txt:1: the relative tolerance \"-1\" is not a number of zero or more");
  EXPECT_EQ(ReadError("S 0 nan\n"),
            "tol.txt:1: the relative tolerance \"nan\" is not a number of zero or more");
  EXPECT_EQ(ReadError("S 0 1e999\n"),
            "tol.txt:1: the relative tolerance \"1e999\" is not a number of zero or more");
  EXPECT_EQ(ReadError("S 0 0\nU 0 0\nS 1 1\n"), "tol.txt:3: the variable \"S\" is given twice");
  EXPECT_EQ(ReadError("* 0 0\n* 1 1\n"), "tol.txt:2: the default \"*\" is given twice");
  EXPECT_EQ(ReadError("S 0.1 0.2\n"), "");
}

// Named before default, and the command line before the file at each level.
TEST(ToolTolerance, CommandLineBeatsFileAndNamedBeatsDefault) {
  tool_Tolerances t;
  std::istringstream in("* 1 0.5\nS 2 0\nU 3 0\n");
  t.read(in, "tol.txt");
  t.setDefaultAbsolute(4);
  t.parseOption("S=5,0.125");
  EXPECT_EQ(t.of("S").absolute, 5);
  EXPECT_EQ(t.of("S").relative, 0.125);
  EXPECT_EQ(t.of("U").absolute, 3);
  EXPECT_EQ(t.of("RF").absolute, 4);
  EXPECT_EQ(t.of("RF").relative, 0.5);  // the command line gave only the absolute part
  for (const char* bad : {"S", "S=1", "=1,2", "S=1,", "S=a,1", "S=1,-2"})
    EXPECT_THROW(t.parseOption(bad), tool_Error) << bad;
}
