#include <filesystem>
#include <fstream>
#include <sstream>

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

// The edge of every subcommand: a database with no model and no steps.
TEST_F(ToolExport, AnEmptyDatabaseIsSummedUpComparedAndExported) {
  const std::string path = File("empty.odb");
  odb_Odb& odb = Odb("", "empty", "", path.c_str());
  saveOdb(odb);
  closeOdb(odb);
  const ToolResult info = Run({"info", path});
  EXPECT_EQ(info.status, 0) << info.err;
  EXPECT_TRUE(Holds(info.out, "parts (0):\ninstances (0):\nsteps (0):\n")) << info.out;
  EXPECT_EQ(Run({"diff", path, path}).status, 0);
  EXPECT_EQ(Run({"dump", path, "--step", "A", "--frame", "0", "--field", "U"}).err,
            "odb: no step \"A\"; the steps are: none\n");
  const ToolResult exported = Run({"export", path, "--format", "vtu", File("out")});
  EXPECT_EQ(exported.status, 0) << exported.err;
  std::ifstream pvd(File("out/empty.pvd"));
  std::stringstream text;
  text << pvd.rdbuf();
  EXPECT_TRUE(
      Holds(text.str(), "<DataSet timestep=\"0\" group=\"\" part=\"0\" file=\"empty_0000.vtu\"/>"))
      << text.str();
  std::ifstream vtu(File("out/empty_0000.vtu"));
  std::stringstream grid;
  grid << vtu.rdbuf();
  EXPECT_TRUE(Holds(grid.str(), "<Piece NumberOfPoints=\"0\" NumberOfCells=\"0\">")) << grid.str();
}
