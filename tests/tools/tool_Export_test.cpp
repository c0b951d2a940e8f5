#include <filesystem>
#include <fstream>

#include "ToolTest.h"

// What the export writes is read back with VTK by tool_export_test.py; here, its refusals.
using ToolExport = ToolTest;

TEST_F(ToolExport, RefusesAnUnknownFormatAndAFolderItCannotMake) {
  const std::string path = Sample("a.odb");
  const ToolResult format = Run({"export", path, "--format", "vtk", File("out")});
  EXPECT_EQ(format.status, 2);
  EXPECT_EQ(format.err, "odb: unknown format \"vtk\"; the formats are: vtu\n");
  EXPECT_FALSE(std::filesystem::exists(File("out")));
  const std::string blocked = File("blocked");
  std::ofstream(blocked) << "a file, not a folder\n";
  const ToolResult folder = Run({"export", path, "--format", "vtu", blocked});
  EXPECT_EQ(folder.status, 2);
  EXPECT_EQ(folder.err.rfind("odb: cannot make the folder \"" + blocked + "\": ", 0), 0u)
      << folder.err;
}

TEST_F(ToolExport, AFileThatCannotBeWrittenEndsTheExportWithStatus2) {
  const std::string path = Sample("a.odb"), out = File("out");
  std::filesystem::create_directories(out + "/a_0001.vtu");  // a folder where a file must go
  const ToolResult r = Run({"export", path, "--format", "vtu", out});
  EXPECT_EQ(r.status, 2);
  EXPECT_EQ(r.err.rfind("odb export: element type USR2", 0), 0u) << r.err;
  EXPECT_TRUE(Holds(r.err, "odb: cannot write \"" + out + "/a_0001.vtu\": ")) << r.err;
}
