#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>

#include "ToolTest.h"
#include "tool_Common.h"

namespace {

// Adds `delta` to one stress component of one frame: element 2, point 3, S13 (index 4).
ToolSample WithS(int frame, float delta) {
  ToolSample o;
  o.editS = [frame, delta](int f, std::vector<float>& s) {
    if (f == frame) s[((1 * 8) + 2) * 6 + 4] += delta;
  };
  return o;
}

}  // namespace

using ToolDiff = ToolTest;

TEST_F(ToolDiff, FileAndItsCopyAreTheSame) {
  const std::string a = Sample("a.odb"), b = File("b.odb");
  std::filesystem::copy_file(a, b);
  const ToolResult r = Run({"diff", a, b});
  EXPECT_EQ(r.status, 0) << r.out << r.err;
  EXPECT_TRUE(Holds(r.out, "SAME: 7 variables within their tolerance")) << r.out;
  // A file written again with the same numbers is the same too.
  EXPECT_EQ(Run({"diff", a, Sample("c.odb")}).status, 0);
}

TEST_F(ToolDiff, ReportsTheLargestDifferenceAndWhereItIs) {
  const std::string a = Sample("a.odb"), b = Sample("b.odb", WithS(1, 0.5f));
  const ToolResult r = Run({"diff", a, b});
  EXPECT_EQ(r.status, 1) << r.out << r.err;
  const float was = tool_sample::S(2, 3, 1, 4);
  EXPECT_TRUE(Holds(r.out, "  field S: 1 of 288 values outside exact; largest difference 0.5 (" +
                               tool_FormatFloat(was) + " against " + tool_FormatFloat(was + 0.5f)))
      << r.out;
  EXPECT_TRUE(
      Holds(r.out, "at step LOAD frame 1, instance PART-1, element 2 integration point 3, S13\n"))
      << r.out;
  EXPECT_TRUE(Holds(r.out, "DIFFERENT: 0 differences of structure, 1 of 7 variables")) << r.out;
}

// The difference is 0.5 on a value of 1234: 4.05e-4 of the larger value, 1234.5.
TEST_F(ToolDiff, AbsoluteAndRelativeTolerancesEachAcceptADifference) {
  const std::string a = Sample("a.odb"), b = Sample("b.odb", WithS(1, 0.5f));
  const auto status = [&](std::vector<std::string> options) {
    std::vector<std::string> args{"diff", a, b};
    args.insert(args.end(), options.begin(), options.end());
    return Run(args).status;
  };
  EXPECT_EQ(status({"--abs", "0.4"}), 1);
  EXPECT_EQ(status({"--abs", "0.5"}), 0);
  EXPECT_EQ(status({"--rel", "4e-4"}), 1);
  EXPECT_EQ(status({"--rel", "4.1e-4"}), 0);
  EXPECT_EQ(status({"--abs", "0.4", "--rel", "4.1e-4"}), 0);
  // Per variable: another variable's tolerance does not help S.
  EXPECT_EQ(status({"--tol", "S=0,4.1e-4"}), 0);
  EXPECT_EQ(status({"--tol", "U=1,1"}), 1);
  // Options go before the files as well, each --tol taking one value.
  EXPECT_EQ(Run({"diff", "--tol", "S=0,4.1e-4", "--tol", "U=1,1", "--quiet", a, b}).status, 0);
  // A tolerance file, and the command line over it.
  const std::string file = File("tolerances.txt");
  std::ofstream(file) << "# variable abs rel\n*  0 0\nS  0.6 0   # stresses\n";
  EXPECT_EQ(status({"--tolerances", file}), 0);
  EXPECT_EQ(status({"--tolerances", file, "--tol", "S=0,0"}), 1);
  EXPECT_EQ(status({"--tolerances", file, "--abs", "1"}),
            0);  // S is named: the default is not used
}

TEST_F(ToolDiff, NanEqualsNanButNotANumber) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  ToolSample withNan;
  withNan.editS = [nan](int, std::vector<float>& s) { s[7] = nan; };
  const std::string a = Sample("a.odb", withNan), b = Sample("b.odb", withNan);
  EXPECT_EQ(Run({"diff", a, b}).status, 0);
  const ToolResult r = Run({"diff", a, Sample("c.odb"), "--abs", "1e30"});
  EXPECT_EQ(r.status, 1) << r.out;
  EXPECT_TRUE(Holds(r.out,
                    "field S: 3 of 288 values outside abs 1e+30, rel 0; largest "
                    "difference NaN against a number (nan against "))
      << r.out;
}

TEST_F(ToolDiff, ReportsDifferentFrameCountsAndComparesTheFramesBothHave) {
  ToolSample three;
  three.loadFrames = 3;
  const std::string a = Sample("a.odb"), b = Sample("b.odb", three);
  const ToolResult r = Run({"diff", a, b, "--abs", "2000"});  // HOLD's frame differs in value
  EXPECT_EQ(r.status, 1) << r.out << r.err;
  EXPECT_TRUE(Holds(r.out, "  step LOAD: 2 frames in A, 3 in B; the first 2 are compared\n"))
      << r.out;
  EXPECT_TRUE(Holds(r.out, "output U1: 2 pairs in A, 3 in B")) << r.out;
  EXPECT_EQ(r.err, "");
}

TEST_F(ToolDiff, ReportsVariablesOnlyOneFileHas) {
  ToolSample extra;
  extra.extraField = true;
  const ToolResult r = Run({"diff", Sample("a.odb", extra), Sample("b.odb")});
  EXPECT_EQ(r.status, 1);
  EXPECT_TRUE(Holds(r.out, "step LOAD frame 0: field \"E\" only in A")) << r.out;
  EXPECT_TRUE(Holds(r.out, "step HOLD frame 0: field \"E\" only in A")) << r.out;
  EXPECT_TRUE(Holds(r.out, "DIFFERENT: 3 differences of structure")) << r.out;
}

TEST_F(ToolDiff, ComparesTheModelCoordinatesWithTheirOwnTolerance) {
  ToolSample moved;
  moved.moveNode1 = 0.25f;
  const std::string a = Sample("a.odb"), b = Sample("b.odb", moved);
  const ToolResult r = Run({"diff", a, b});
  EXPECT_EQ(r.status, 1);
  // Node 1 of the part and of both instances moved; the turned instance's by a rounding in x too.
  EXPECT_TRUE(Holds(r.out,
                    "of 315 values outside exact; largest difference 0.25 (0 against "
                    "0.25, relative 1) at part MIXED, node 1, coordinate 1\n"))
      << r.out;
  EXPECT_EQ(Run({"diff", a, b, "--tol", "coordinates=0.25,0"}).status, 0);
}

TEST_F(ToolDiff, ErrorsExitWithStatus2) {
  const std::string a = Sample("a.odb");
  const ToolResult missing = Run({"diff", a, File("none.odb")});
  EXPECT_EQ(missing.status, 2);
  EXPECT_EQ(missing.err, "odb: cannot open \"" + File("none.odb") + "\": no such file\n");
  const std::string file = File("bad.txt");
  std::ofstream(file) << "S 1e-3\n";
  const ToolResult bad = Run({"diff", a, a, "--tolerances", file});
  EXPECT_EQ(bad.status, 2);
  EXPECT_EQ(bad.err, "odb: " + file +
                         ":1: expected a variable, an absolute and a relative tolerance; found 2 "
                         "columns\n");
  EXPECT_EQ(Run({"diff", a, a, "--tol", "S"}).status, 2);
  EXPECT_EQ(Run({"diff", a, a, "--abs", "-1"}).status, 2);
}
