// End to end, what a user pays, against plain files and HDF5 in the same run: an N x N x N block
// of 8-node bricks and 10 frames of U at the nodes and S at 8 integration points, written whole
// (create, mesh, frames, save, durable close; saving once and after every frame), read back whole
// (open, mesh, every frame) in a fresh process and again in the same process, opened and closed
// alone, and the file's size; then the size of a small model's file. Each figure is the median of
// the runs, the three systems taken in turns.
//
//   bench_endtoend [--cells N]... [--runs R]     (default: --cells 40 --cells 60 --runs 3)
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "bench_Systems.h"
#include "odb_API.h"

namespace {

const bench_System* const kSystems[] = {&bench_Raw, &bench_Hdf5, &bench_Odb};
const int kSystemCount = 3;
const int kFrames = 10;

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values.empty() ? 0 : values[values.size() / 2];
}

double FileBytes(const std::string& path) {
  struct stat st;
  return ::stat(path.c_str(), &st) == 0 ? double(st.st_size) : 0;
}

// The figures of one system over the runs.
struct Figures {
  std::vector<double> write, writePerFrame, close, mesh, firstRead, repeatRead, open;
  double bytes = 0;
};

// Reads `path` twice and prints the seconds of the first read, the second and an open alone:
// what the parent measures in a fresh process.
int ReadChild(const char* system, const char* path, const bench_Shape& shape) {
  odb_initializeAPI();
  for (const bench_System* s : kSystems) {
    if (std::strcmp(s->name, system) != 0) continue;
    bench_ReadBuffers first, second;
    const double a = s->read(shape, path, first).Total();
    const double b = s->read(shape, path, second).Total();
    const double open = s->open(path);
    if (first.sum != second.sum) std::fprintf(stderr, "%s: two reads differ\n", system);
    std::printf("%.6f %.6f %.6f %.17g\n", a, b, open, first.sum);
  }
  odb_finalizeAPI();
  return 0;
}

// Runs this program as a reader in a new process and returns its figures.
bool ReadInNewProcess(const char* system, const std::string& path, const bench_Shape& shape,
                      double& first, double& repeat, double& open, double& sum) {
  char command[4096];
  std::snprintf(command, sizeof command, "/proc/%d/exe --read '%s' '%s' %d %d %d", int(getpid()),
                system, path.c_str(), shape.nodes, shape.elements, shape.frames);
  std::FILE* child = popen(command, "r");
  if (!child) return false;
  const bool ok = std::fscanf(child, "%lf %lf %lf %lf", &first, &repeat, &open, &sum) == 4;
  return pclose(child) == 0 && ok;
}

void Measure(int cells, int runs, const std::filesystem::path& dir) {
  const bench_Model model = bench_MakeModel(cells, cells, cells, kFrames);
  const double bytes = model.MeshBytes() + kFrames * model.FrameBytes();
  std::printf("\n%d x %d x %d bricks: %d nodes, %d elements, %d frames, %.0f MB of arrays\n", cells,
              cells, cells, model.Nodes(), model.Elements(), kFrames, bytes / 1e6);
  Figures figures[kSystemCount];
  double sums[kSystemCount] = {};
  for (int run = 0; run < runs; ++run)
    for (int k = 0; k < kSystemCount; ++k) {
      const bench_System& s = *kSystems[k];
      const std::string path = (dir / (std::string(s.name) + ".out")).string();
      // Each write starts with nothing of the others' left to flush: a system timed while the
      // disk still writes back the file before it would pay for that file too.
      std::filesystem::remove(path);
      ::sync();
      const bench_WriteTimes perFrame = s.write(model, path, true);
      std::filesystem::remove(path);
      ::sync();
      const bench_WriteTimes once = s.write(model, path, false);
      Figures& f = figures[k];
      f.writePerFrame.push_back(perFrame.Total());
      f.write.push_back(once.Total());
      f.close.push_back(once.close);
      f.mesh.push_back(once.mesh);
      f.bytes = FileBytes(path);
      double first = 0, repeat = 0, open = 0;
      if (!ReadInNewProcess(s.name, path, model.Shape(), first, repeat, open, sums[k]))
        std::printf("%s: the reader failed\n", s.name);
      f.firstRead.push_back(first);
      f.repeatRead.push_back(repeat);
      f.open.push_back(open);
    }
  for (int k = 1; k < kSystemCount; ++k)
    if (sums[k] != sums[0]) std::printf("%s read other values than raw\n", kSystems[k]->name);

  std::printf("%-58s %12s %12s %12s %8s %8s\n", "median of runs", "raw", "HDF5", "QTVodb",
              "HDF5/raw", "ours/raw");
  auto row = [&](const char* what, std::vector<double> Figures::*series, double scale,
                 const char* unit) {
    double m[kSystemCount];
    for (int k = 0; k < kSystemCount; ++k) m[k] = Median(figures[k].*series);
    char cells3[kSystemCount][32];
    for (int k = 0; k < kSystemCount; ++k)
      std::snprintf(cells3[k], 32, "%.3f %s", m[k] * scale, unit);
    std::printf("%-58s %12s %12s %12s %8.2f %8.2f   ours/HDF5 %.2f\n", what, cells3[0], cells3[1],
                cells3[2], m[1] / m[0], m[2] / m[0], m[2] / m[1]);
  };
  row("whole write, one save, until durable and closed", &Figures::write, 1, "s");
  row("whole write, a save after every frame", &Figures::writePerFrame, 1, "s");
  row("  of the one-save write: the durable close", &Figures::close, 1, "s");
  row("  of the one-save write: create and mesh", &Figures::mesh, 1, "s");
  row("first read in a fresh process: open, mesh, all results", &Figures::firstRead, 1, "s");
  row("second read in the same process", &Figures::repeatRead, 1, "s");
  row("open and close, best of 20", &Figures::open, 1e3, "ms");
  std::printf("%-58s %9.1f MB %9.1f MB %9.1f MB %8.3f %8.3f\n", "file size", figures[0].bytes / 1e6,
              figures[1].bytes / 1e6, figures[2].bytes / 1e6, figures[1].bytes / figures[0].bytes,
              figures[2].bytes / figures[0].bytes);
}

// A small model: 60 nodes, 24 elements and three frames of U and S.
void SmallFile(const std::filesystem::path& dir) {
  const bench_Model model = bench_MakeModel(2, 3, 4, 3);
  std::printf("\nsmall model: %d nodes, %d elements, %d frames of U and S, %.1f KB of arrays\n",
              model.Nodes(), model.Elements(), model.frames,
              (model.MeshBytes() + model.frames * model.FrameBytes()) / 1e3);
  for (const bench_System* s : kSystems) {
    const std::string path = (dir / (std::string(s->name) + ".small")).string();
    s->write(model, path, false);
    std::printf("  %-8s %8.1f KB\n", s->name, FileBytes(path) / 1e3);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 7 && std::strcmp(argv[1], "--read") == 0)
    return ReadChild(argv[2], argv[3],
                     {std::atoi(argv[4]), std::atoi(argv[5]), std::atoi(argv[6])});
  std::vector<int> cells;
  int runs = 3;
  for (int i = 1; i + 1 < argc; i += 2) {
    if (std::strcmp(argv[i], "--cells") == 0) cells.push_back(std::atoi(argv[i + 1]));
    if (std::strcmp(argv[i], "--runs") == 0) runs = std::atoi(argv[i + 1]);
  }
  if (cells.empty()) cells = {40, 60};
  const std::filesystem::path dir = std::filesystem::temp_directory_path() / "qtvodb_bench_e2e";
  std::filesystem::remove_all(dir);
  std::filesystem::create_directories(dir);
  odb_initializeAPI();
  std::printf("end to end: %d runs, systems in turns; ratios of medians\n", runs);
  for (int n : cells) Measure(n, runs, dir);
  SmallFile(dir);
  odb_finalizeAPI();
  std::filesystem::remove_all(dir);
  return 0;
}
