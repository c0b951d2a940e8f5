#include <filesystem>
#include <fstream>

#include "ToolTest.h"

using ToolInfo = ToolTest;

TEST_F(ToolInfo, ListsModelStepsFramesFieldsAndHistory) {
  const ToolResult r = Run({"info", Sample("a.odb")});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.err, "");
  for (const char* line :
       {"title: Tool sample", ", schema 333",
        "  MIXED (THREE_D): 35 nodes, 7 elements: 2 C3D8, 1 C3D6, 1 C3D10, 1 S4R, 1 B32, 1 USR2",
        "    node sets (1): CORNER", "    element sets (1): HEXES",
        "  PART-2 of MIXED: 35 nodes, 7 elements",
        "  LOAD (TIME, *STATIC): 2 frames, values 0.5 to 1",
        "  HOLD (TIME, *STATIC): 1 frame, values 1 to 1",
        "    frames 0-1:", "      EVOL SCALAR at WHOLE_ELEMENT, 3 values",
        "      S TENSOR_3D_FULL at INTEGRATION_POINT (S11 S22 S33 S12 S13 S23), 16 values",
        "      U VECTOR at NODAL (U1 U2 U3), 70 values", "      Node PART-1.1 (NODAL): U1"})
    EXPECT_TRUE(Holds(r.out, line)) << line << "\n" << r.out;
  // The library's own sets (the fields' labels, the history point) are not the user's.
  EXPECT_FALSE(Holds(r.out, "api_set"));
}

// Every failure is one line naming the file, and exit status 2, never a crash.
TEST_F(ToolInfo, RefusesMissingForeignAndDamagedFilesInOneLine) {
  const std::string good = Sample("good.odb");
  const std::string foreign = File("notes.txt");
  std::ofstream(foreign) << "not a database\n";
  // Damaged: a run of garbage over the middle of the file, and a file cut in half.
  const std::string damaged = File("damaged.odb"), cut = File("cut.odb");
  std::filesystem::copy_file(good, damaged);
  std::filesystem::copy_file(good, cut);
  const auto size = std::filesystem::file_size(good);
  {
    std::fstream f(damaged, std::ios::in | std::ios::out | std::ios::binary);
    f.seekp(static_cast<std::streamoff>(size / 2));
    const std::string garbage(8192, '\x5a');
    f.write(garbage.data(), static_cast<std::streamsize>(garbage.size()));
  }
  std::filesystem::resize_file(cut, size / 2);
  for (const std::string& path : {File("missing.odb"), foreign, damaged, cut, File("")}) {
    const ToolResult r = Run({"info", path});
    EXPECT_EQ(r.status, 2) << path << "\n" << r.out << r.err;
    ASSERT_FALSE(r.err.empty()) << path;
    EXPECT_EQ(r.err.rfind("odb: ", 0), 0u) << r.err;
    EXPECT_EQ(r.err.find('\n'), r.err.size() - 1) << "more than one line: " << r.err;
  }
  EXPECT_EQ(Run({"info", File("missing.odb")}).err,
            "odb: cannot open \"" + File("missing.odb") + "\": no such file\n");
}

TEST_F(ToolInfo, UsageErrorsExitWithStatus2) {
  EXPECT_EQ(Run({}).status, 2);
  EXPECT_EQ(Run({"info"}).status, 2);
  EXPECT_EQ(Run({"frobnicate", "x.odb"}).status, 2);
  EXPECT_EQ(Run({"--help"}).status, 0);
}
