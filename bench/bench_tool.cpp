// The odb tool's figures, each against a baseline timed in the same run, on a file like
// bench_field's: a block of hexahedra with a displacement U at the nodes and a stress S at 8
// integration points, 10 frames. All files are in the page cache (just written, and read once
// before timing); the tool is timed as a user runs it, a whole process from start to exit, and
// every time is the best of 5 runs.
//   - odb info, on this file and on one of an eighth of its size: metadata only, so the two times
//     should be alike and well under 0.1 s;
//   - odb export --format vtu of all frames, against reading the same bulk data through the
//     library's bulk calls plus writing the same bytes with fwrite (target: at most 2x);
//   - odb diff of the file against a copy of itself, against reading both files' bulk data
//     (target: at most 2x).
//
//   bench_tool [--cells N] [--keep]   (default 30, a 62 MB file; --cells 60 gives the figures of
//                                      bench/README.md; --keep leaves the files in the temporary
//                                      folder)
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "bench_Block.h"
#include "bench_Timing.h"
#include "odb_API.h"

namespace {

const int kFrames = 10;

// Writes the file: `cells`^3 C3D8 elements, U at the nodes and S at 8 points, 10 frames.
void WriteFile(const std::string& path, int cells) {
  const int n = cells + 1, nodes = n * n * n, elements = cells * cells * cells;
  odb_Odb& odb = Odb("", "bench", "", path.c_str());
  const bench_Block block = bench_MakeBlock(cells);
  const std::vector<int>&nodeLabels = block.nodeLabels, &elementLabels = block.elementLabels;
  odb_Instance& instance = bench_WriteBlockMesh(odb, block);
  odb_Step& step = odb.Step("LOAD", "", odb_Enum::TIME, 1.0, "", "*STATIC", 0.0);
  std::vector<float> u(3 * static_cast<std::size_t>(nodes));
  std::vector<float> s(static_cast<std::size_t>(elements) * 8 * 6);
  for (int f = 0; f < kFrames; ++f) {
    for (std::size_t i = 0; i < u.size(); ++i) u[i] = 1e-3f * static_cast<float>((i + f) % 977);
    for (std::size_t i = 0; i < s.size(); ++i)
      s[i] = static_cast<float>(((i + f) * 7919) % 1000) - 500.0f;
    odb_Frame frame = step.Frame(f + 1, 0.1 * (f + 1), "");
    frame.VectorOutput("U", "displacement", 3)
        .addData(odb_Enum::NODAL, instance, nodes, nodeLabels, nodes, 3, u);
    frame.FieldOutput("S", "stress", odb_Enum::TENSOR_3D_FULL)
        .addData(odb_Enum::INTEGRATION_POINT, instance, elements, elementLabels, elements * 8, 6,
                 s);
  }
  saveOdb(odb);
  closeOdb(odb);
}

// Seconds the tool takes, best of `runs`; exits when it fails.
double Tool(const std::string& args, int runs) {
  const std::string command =
      std::string("'") + ODB_TOOL_PATH + "' --quiet " + args + " >/dev/null";
  return Best(runs, [&] {
    const int status = std::system(command.c_str());
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
      std::fprintf(stderr, "failed: %s\n", command.c_str());
      std::exit(1);
    }
  });
}

// Reads every field block of every frame through the bulk calls into reused buffers; returns
// the bytes read.
std::uint64_t ReadBulk(const std::string& path) {
  odb_Odb& odb = openOdb(path.c_str(), true);
  std::vector<int> labels;
  std::vector<float> data;
  std::uint64_t bytes = 0;
  for (odb_StepRepositoryIT it(odb.steps()); !it.isDone(); it.next()) {
    const odb_Step& step = it.currentValue();
    for (int f = 0; f < step.frames().size(); ++f)
      for (odb_FieldOutputRepositoryIT field(step.frames(f).fieldOutputs()); !field.isDone();
           field.next()) {
        const odb_SequenceFieldBulkData& blocks = field.currentValue().bulkDataBlocks();
        for (int b = 0; b < blocks.size(); ++b) {
          labels.resize(static_cast<std::size_t>(blocks[b].numberOfLabels()));
          data.resize(static_cast<std::size_t>(blocks[b].length()) * blocks[b].width());
          blocks[b].readLabels(labels);
          blocks[b].readData(data);
          bytes += 4 * (labels.size() + data.size());
        }
      }
  }
  closeOdb(odb);
  return bytes;
}

// Writes `sizes` files of those sizes with fwrite from one buffer, as the export writes its files.
void WriteBytes(const std::filesystem::path& dir, const std::vector<std::uintmax_t>& sizes,
                const std::vector<char>& buffer) {
  for (std::size_t i = 0; i < sizes.size(); ++i) {
    std::FILE* f = std::fopen((dir / ("raw_" + std::to_string(i))).c_str(), "wb");
    std::fwrite(buffer.data(), 1, sizes[i], f);
    std::fclose(f);
  }
}

}  // namespace

int main(int argc, char** argv) {
  int cells = 30;
  bool keep = false;  // --keep leaves the files in the temporary folder, to look into
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--cells") == 0 && i + 1 < argc) cells = std::atoi(argv[++i]);
    if (std::strcmp(argv[i], "--keep") == 0) keep = true;
  }
  const std::filesystem::path dir = std::filesystem::temp_directory_path() / "qtvodb_bench_tool";
  std::filesystem::remove_all(dir);
  std::filesystem::create_directories(dir);
  const std::string path = (dir / "field.odb").string(), copy = (dir / "copy.odb").string();
  const std::string small = (dir / "small.odb").string();
  odb_initializeAPI();
  WriteFile(path, cells);
  WriteFile(small, cells / 2);
  std::filesystem::copy_file(path, copy);
  const double mb = std::filesystem::file_size(path) / 1e6;
  std::printf("file       %d^3 elements, %d frames: %.0f MB (and %.1f MB at %d^3)\n", cells,
              kFrames, mb, std::filesystem::file_size(small) / 1e6, cells / 2);

  // info: metadata only.
  const double info = Tool("info '" + path + "'", 5), infoSmall = Tool("info '" + small + "'", 5);
  std::printf("info       %.3f s on %.0f MB, %.3f s on an eighth of it (target under 0.1 s)\n",
              info, mb, infoSmall);

  // export against reading the bulk data plus fwrite of the bytes the export writes.
  const std::filesystem::path out = dir / "vtu", raw = dir / "raw";
  const std::string exportArgs = "export '" + path + "' --format vtu '" + out.string() + "'";
  Tool(exportArgs, 1);
  std::vector<std::uintmax_t> sizes;
  std::uintmax_t written = 0;
  for (const auto& entry : std::filesystem::directory_iterator(out)) {
    sizes.push_back(entry.file_size());
    written += entry.file_size();
  }
  std::uintmax_t largest = 0;
  for (std::uintmax_t s : sizes) largest = std::max(largest, s);
  std::vector<char> buffer(largest, 'x');
  std::filesystem::create_directories(raw);
  std::uint64_t bulk = ReadBulk(path);
  const double read = Best(5, [&] { bulk = ReadBulk(path); });
  WriteBytes(raw, sizes, buffer);
  const double write = Best(5, [&] { WriteBytes(raw, sizes, buffer); });
  const double exported = Tool(exportArgs, 5);
  std::printf(
      "export     %.3f s for %zu files, %.0f MB; bulk read %.3f s (%.0f MB) + fwrite "
      "%.3f s: %.2fx (target at most 2x)\n",
      exported, sizes.size(), written / 1e6, read, bulk / 1e6, write, exported / (read + write));

  // diff against a copy, against reading both files' bulk data.
  ReadBulk(copy);
  const double readBoth = Best(5, [&] {
    ReadBulk(path);
    ReadBulk(copy);
  });
  const double diff = Tool("diff '" + path + "' '" + copy + "'", 5);
  std::printf(
      "diff       %.3f s against a copy; bulk read of both %.3f s: %.2fx (target at most "
      "2x)\n",
      diff, readBoth, diff / readBoth);
  odb_finalizeAPI();
  if (!keep) std::filesystem::remove_all(dir);
  return 0;
}
