// The C++ side of the Python module's figures (bench_python.py), timed on the same files in the
// same run: without arguments it runs bench_python.py with this build's module, which calls it
// back for each baseline.
//
//   bench_python [--cells N] [--runs R]  the whole comparison (`make bench` runs it as is)
//   bench_python read FILE RUNS          best of RUNS: open, every frame's S by bulkDataBlocks()
//                                        (data and element labels), close
//   bench_python write MODEL OUT CELLS RUNS
//                                        best of RUNS: copy MODEL to OUT, write 10 frames of U
//                                        and S by the bulk addData, save (the close not timed)
//   bench_python mises FILE RUNS         best of RUNS over every frame's S, read beforehand: the
//                                        maximum Mises stress by a loop over the rows, and by the
//                                        library's mises() of each block
// Each prints its seconds on one line.
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "bench_Timing.h"
#include "odb_API.h"

namespace {

const int kFrames = 10;

double Read(const char* path) {
  double sum = 0;
  const double seconds = Seconds([&] {
    odb_Odb& odb = openOdb(path, true);
    odb_Step& step = odb.steps()["LOAD"];
    for (int i = 0; i < step.frames().size(); ++i) {
      const odb_SequenceFieldBulkData& blocks = step.frames(i).fieldOutputs()["S"].bulkDataBlocks();
      for (int k = 0; k < blocks.size(); ++k)
        sum += blocks[k].data()[0] + blocks[k].elementLabels()[0];
    }
    closeOdb(odb);
  });
  if (sum == 12345.678) std::printf("\n");  // keeps the reads
  return seconds;
}

// The values of bench_field: the same numbers the Python side makes with numpy.
double Write(const char* model, const char* out, int cells) {
  const int n = cells + 1;
  std::vector<int> nodes(n * n * n), elements(cells * cells * cells);
  for (std::size_t i = 0; i < nodes.size(); ++i) nodes[i] = int(i) + 1;
  for (std::size_t i = 0; i < elements.size(); ++i) elements[i] = int(i) + 1;
  std::vector<float> u(3 * nodes.size()), s(elements.size() * 8 * 6);
  for (std::size_t i = 0; i < u.size(); ++i) u[i] = 1e-3f * static_cast<float>(i % 977);
  for (std::size_t i = 0; i < s.size(); ++i) s[i] = static_cast<float>((i * 7919) % 1000) - 500.0f;
  std::filesystem::copy_file(model, out, std::filesystem::copy_options::overwrite_existing);
  odb_Odb& odb = openOdb(out, false);
  odb_Instance& instance = odb.rootAssembly().instance("BLOCK-1");
  const double seconds = Seconds([&] {
    odb_Step& step = odb.steps()["LOAD"];
    for (int f = 0; f < kFrames; ++f) {
      odb_Frame frame = step.Frame(f + 1, 0.1 * (f + 1), "");
      frame.FieldOutput("U", "displacement", odb_Enum::VECTOR)
          .addData(odb_Enum::NODAL, instance, int(nodes.size()), nodes.data(), int(nodes.size()), 3,
                   u.data());
      frame.FieldOutput("S", "stress", odb_Enum::TENSOR_3D_FULL)
          .addData(odb_Enum::INTEGRATION_POINT, instance, int(elements.size()), elements.data(),
                   int(elements.size()) * 8, 6, s.data());
    }
    saveOdb(odb);
  });
  closeOdb(odb);
  return seconds;
}

float Mises(const float* t) {
  const float p = (t[0] + t[1] + t[2]) / 3;
  const float a = t[0] - p, b = t[1] - p, c = t[2] - p;
  return std::sqrt(1.5f * (a * a + b * b + c * c) +
                   3.0f * (t[3] * t[3] + t[4] * t[4] + t[5] * t[5]));
}

__attribute__((noinline)) float MaxMises(const float* rows, int n, float start) {
  for (int i = 0; i < n; ++i) {
    const float m = Mises(rows + 6 * i);
    start = m > start ? m : start;
  }
  return start;
}

__attribute__((noinline)) float MaxOf(const float* values, int n, float start) {
  for (int i = 0; i < n; ++i) start = values[i] > start ? values[i] : start;
  return start;
}

// Every frame's S blocks of a fresh open, read.
std::vector<odb_FieldBulkData> ReadBlocks(odb_Odb& odb) {
  odb_Step& step = odb.steps()["LOAD"];
  std::vector<odb_FieldBulkData> blocks;
  for (int i = 0; i < step.frames().size(); ++i) {
    const odb_SequenceFieldBulkData& all = step.frames(i).fieldOutputs()["S"].bulkDataBlocks();
    for (int k = 0; k < all.size(); ++k) blocks.push_back(all[k]);
  }
  for (const odb_FieldBulkData& block : blocks) block.data();
  return blocks;
}

// Prints the loop's seconds, then those of the library's mises(), each a best of `runs`, and
// the two maxima. mises() keeps what it computed, so each run opens the file afresh.
void MisesTimes(const char* path, int runs) {
  float loop = 0, library = 0;
  double loopSeconds = 1e30, librarySeconds = 1e30;
  for (int run = 0; run < runs; ++run) {
    odb_Odb& odb = openOdb(path, true);
    const std::vector<odb_FieldBulkData> blocks = ReadBlocks(odb);
    loopSeconds = std::min(loopSeconds, Seconds([&] {
                             for (const odb_FieldBulkData& block : blocks)
                               loop = MaxMises(block.data(), block.length(), loop);
                           }));
    librarySeconds = std::min(librarySeconds, Seconds([&] {
                                for (const odb_FieldBulkData& block : blocks)
                                  library = MaxOf(block.mises(), block.length(), library);
                              }));
    closeOdb(odb);
  }
  std::printf("%.6f %.6f %.3f %.3f\n", loopSeconds, librarySeconds, loop, library);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 1 || std::strncmp(argv[1], "--", 2) == 0) {
    setenv("PYTHONPATH", QTVODB_BENCH_MODULE_DIR, 1);
    const std::string self = std::filesystem::read_symlink("/proc/self/exe").string();
    std::vector<char*> args = {const_cast<char*>("python3"), const_cast<char*>(QTVODB_BENCH_SCRIPT),
                               const_cast<char*>("--baseline"), const_cast<char*>(self.c_str())};
    args.insert(args.end(), argv + 1, argv + argc);
    args.push_back(nullptr);
    execv("/usr/bin/python3", args.data());
    std::perror("bench_python: cannot run /usr/bin/python3");
    return 1;
  }
  odb_initializeAPI();
  const std::string mode = argv[1];
  if (mode == "read" && argc == 4) {
    std::printf("%.6f\n", Best(std::atoi(argv[3]), [&] { Read(argv[2]); }));
  } else if (mode == "write" && argc == 6) {
    double best = 1e30;
    for (int run = 0; run < std::atoi(argv[5]); ++run)
      best = std::min(best, Write(argv[2], argv[3], std::atoi(argv[4])));
    std::printf("%.6f\n", best);
  } else if (mode == "mises" && argc == 4) {
    MisesTimes(argv[2], std::atoi(argv[3]));
  } else {
    std::fprintf(
        stderr,
        "usage: bench_python [read FILE RUNS | write MODEL OUT CELLS RUNS | mises FILE RUNS]\n");
    return 2;
  }
  odb_finalizeAPI();
  return 0;
}
