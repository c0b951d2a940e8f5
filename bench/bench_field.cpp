// Field output figures, each against a baseline timed in the same run: writing 10 frames of a
// displacement U at the nodes and a stress S at 8 integration points of a block of hexahedra
// (bulk form and sequence form, against fwrite + fsync of the same bytes), reading S back through
// bulkDataBlocks() (against fread of the same bytes, both files in the page cache), the maximum
// Mises stress from bulk data (against the same loop over one plain array), walking values(), and
// the peak memory of reading one frame's S.
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bench_Block.h"
#include "bench_Timing.h"
#include "odb_API.h"
#include "store_PageChecksum.h"

namespace {

using Block = bench_Block;

const int kFrames = 10;

// The mesh, an instance and a step, saved; the fields are written onto it.
odb_Instance& MakeModel(odb_Odb& odb, const Block& b) {
  odb_Instance& instance = bench_WriteBlockMesh(odb, b);
  odb.Step("LOAD", "", odb_Enum::TIME, 1.0, "", "*STATIC", 0.0);
  saveOdb(odb);
  return instance;
}

// Writes `frames` frames with the bulk form (or the sequence form) and saves; returns seconds.
double WriteFrames(odb_Odb& odb, odb_Instance& instance, const Block& b, int frames, bool bulk) {
  odb_Step& step = odb.steps()["LOAD"];
  odb_SequenceSequenceFloat uRows, sRows;
  if (!bulk) {
    for (int i = 0; i < b.Nodes(); ++i) uRows.append(odb_SequenceFloat(&b.u[3 * i], 3));
    for (std::size_t i = 0; i < b.s.size() / 6; ++i)
      sRows.append(odb_SequenceFloat(&b.s[6 * i], 6));
  }
  const odb_SequenceInt nodes(b.nodeLabels.data(), b.Nodes());
  const odb_SequenceInt elements(b.elementLabels.data(), b.Elements());
  return Seconds([&] {
    for (int f = 0; f < frames; ++f) {
      odb_Frame frame = step.Frame(f + 1, 0.1 * (f + 1), "");
      odb_FieldOutput& u = frame.FieldOutput("U", "displacement", odb_Enum::VECTOR,
                                             odb_SequenceString(), odb_SequenceInvariant());
      odb_FieldOutput& s = frame.FieldOutput("S", "stress", odb_Enum::TENSOR_3D_FULL);
      if (bulk) {
        u.addData(odb_Enum::NODAL, instance, b.Nodes(), b.nodeLabels.data(), b.Nodes(), 3,
                  b.u.data());
        s.addData(odb_Enum::INTEGRATION_POINT, instance, b.Elements(), b.elementLabels.data(),
                  b.Elements() * 8, 6, b.s.data());
      } else {
        u.addData(odb_Enum::NODAL, instance, nodes, uRows);
        s.addData(odb_Enum::INTEGRATION_POINT, instance, elements, sRows);
      }
    }
    saveOdb(odb);
  });
}

double RawWrite(const Block& b, const std::string& path, int frames) {
  return Seconds([&] {
    std::FILE* f = std::fopen(path.c_str(), "wb");
    for (int i = 0; i < frames; ++i) {
      std::fwrite(b.nodeLabels.data(), sizeof(int), b.nodeLabels.size(), f);
      std::fwrite(b.u.data(), sizeof(float), b.u.size(), f);
      std::fwrite(b.elementLabels.data(), sizeof(int), b.elementLabels.size(), f);
      std::fwrite(b.s.data(), sizeof(float), b.s.size(), f);
    }
    std::fflush(f);
    fsync(fileno(f));
    std::fclose(f);
  });
}

// The larger of two values, and the largest of `n` values and `start`. Both loops must keep
// their running maximum in a register: in memory (where the compiler put it when the loop sat
// among calls into the library), it costs a store and a reload a value, about 3.5 ns here,
// which hid everything else.
inline float Larger(float a, float b) {
  return b > a ? b : a;
}

__attribute__((noinline)) float MaxOf(const float* values, int n, float start) {
  for (int i = 0; i < n; ++i) start = Larger(start, values[i]);
  return start;
}

float Mises(const float* t) {
  const float p = (t[0] + t[1] + t[2]) / 3;
  const float a = t[0] - p, b = t[1] - p, c = t[2] - p;
  return std::sqrt(1.5f * (a * a + b * b + c * c) +
                   3.0f * (t[3] * t[3] + t[4] * t[4] + t[5] * t[5]));
}

}  // namespace

// Opens `path`, reads the first frame's S as bulk data and prints how many kB the peak resident
// memory grew by.
int ReadOneFrame(const char* path) {
  odb_initializeAPI();
  std::ofstream("/proc/self/clear_refs") << "5";
  const long before = StatusKb("VmRSS:");
  odb_Odb& r = openOdb(path, true);
  const odb_SequenceFieldBulkData& blocks =
      r.steps()["LOAD"].frames(0).fieldOutputs()["S"].bulkDataBlocks();
  double sum = 0;
  for (int k = 0; k < blocks.size(); ++k) sum += blocks[k].data()[0];
  std::printf("%ld %g\n", StatusKb("VmHWM:") - before, sum);
  closeOdb(r);
  odb_finalizeAPI();
  return 0;
}

int main(int argc, char** argv) {
  if (argc == 3 && std::strcmp(argv[1], "--read-one-frame") == 0) return ReadOneFrame(argv[2]);
  int cells = 60;
  if (argc == 3 && std::strcmp(argv[1], "--cells") == 0) cells = std::atoi(argv[2]);
  const std::filesystem::path dir = std::filesystem::temp_directory_path() / "qtvodb_bench_field";
  std::filesystem::remove_all(dir);
  std::filesystem::create_directories(dir);
  const std::string path = (dir / "field.odb").string(), raw = (dir / "raw.bin").string();
  odb_initializeAPI();
  const Block b = bench_MakeBlock(cells);
  const double bytes = static_cast<double>(b.FrameBytes()) * kFrames;
  std::printf("block      %d elements, %d nodes, %d frames: %.1f MB of U and S\n", b.Elements(),
              b.Nodes(), kFrames, bytes / 1e6);

  // The write figures are the best of three runs each, taken in turns with the baseline: how long
  // the disk takes to flush moves by 2x from minute to minute on this machine.
  const std::string modelPath = (dir / "model.odb").string();
  odb_Odb* odb = &Odb("", "", "", modelPath.c_str());
  MakeModel(*odb, b);
  closeOdb(*odb);
  double rawWrite = 1e30, bulkWrite = 1e30, bulkClosed = 1e30;
  for (int run = 0; run < 3; ++run) {
    rawWrite = std::min(rawWrite, RawWrite(b, raw, kFrames));
    std::filesystem::copy_file(modelPath, path, std::filesystem::copy_options::overwrite_existing);
    odb = &openOdb(path.c_str(), false);
    const double written =
        WriteFrames(*odb, odb->rootAssembly().instance("BLOCK-1"), b, kFrames, true);
    const auto start = std::chrono::steady_clock::now();
    closeOdb(*odb);
    const double closing =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    bulkWrite = std::min(bulkWrite, written);
    bulkClosed = std::min(bulkClosed, written + closing);
  }
  std::printf("write      bulk form %.3f s, fwrite+fsync %.3f s: %.2fx\n", bulkWrite, rawWrite,
              bulkWrite / rawWrite);
  std::printf("write      the same until closeOdb returns %.3f s: %.2fx\n", bulkClosed,
              bulkClosed / rawWrite);

  const std::string seqPath = (dir / "sequence.odb").string();
  std::filesystem::copy_file(modelPath, seqPath);
  odb = &openOdb(seqPath.c_str(), false);
  const double seqWrite = WriteFrames(*odb, odb->rootAssembly().instance("BLOCK-1"), b, 2, false);
  const double rawTwo = RawWrite(b, raw, 2);
  std::printf("write      sequence form, 2 frames %.3f s, fwrite+fsync %.3f s: %.2fx\n", seqWrite,
              rawTwo, seqWrite / rawTwo);
  closeOdb(*odb);
  std::filesystem::remove(seqPath);

  // Reading: both files are in the page cache (just written, then read once before timing).
  RawWrite(b, raw, kFrames);
  std::vector<float> buffer(b.s.size());
  auto rawRead = [&] {
    std::FILE* f = std::fopen(raw.c_str(), "rb");
    std::size_t got = 0;
    std::vector<int> labels(b.nodeLabels.size() + b.elementLabels.size());
    std::vector<float> u(b.u.size());
    for (int i = 0; i < kFrames; ++i) {
      got += std::fread(labels.data(), sizeof(int), b.nodeLabels.size(), f);
      got += std::fread(u.data(), sizeof(float), u.size(), f);
      got += std::fread(labels.data(), sizeof(int), b.elementLabels.size(), f);
      got += std::fread(buffer.data(), sizeof(float), buffer.size(), f);
    }
    std::fclose(f);
    if (got * 4 != static_cast<std::size_t>(bytes) +
                       kFrames * 4 * (b.nodeLabels.size() + b.elementLabels.size()))
      std::printf("short read: %zu values\n", got);
  };
  rawRead();
  const double rawReadS = Best(3, rawRead);
  // The same, each frame's element labels and S into arrays of their own, as bulk data holds
  // every frame it read; the arrays are made once, as the library reuses the memory of its
  // earlier reads.
  std::vector<std::vector<int>> frameLabels(kFrames, std::vector<int>(b.elementLabels.size()));
  std::vector<std::vector<float>> frameS(kFrames, std::vector<float>(b.s.size()));
  auto rawKeptRead = [&] {
    std::FILE* f = std::fopen(raw.c_str(), "rb");
    std::vector<int> nodeLabels(b.nodeLabels.size());
    std::vector<float> u(b.u.size());
    std::size_t got = 0;
    for (int i = 0; i < kFrames; ++i) {
      got += std::fread(nodeLabels.data(), sizeof(int), nodeLabels.size(), f);
      got += std::fread(u.data(), sizeof(float), u.size(), f);
      got += std::fread(frameLabels[i].data(), sizeof(int), frameLabels[i].size(), f);
      got += std::fread(frameS[i].data(), sizeof(float), frameS[i].size(), f);
    }
    std::fclose(f);
    if (got == 0) std::printf("short read\n");
  };
  rawKeptRead();
  const double rawKeptReadS = Best(3, rawKeptRead);
  double sum = 0;
  auto ourRead = [&] {
    odb_Odb& r = openOdb(path.c_str(), true);
    odb_Step& step = r.steps()["LOAD"];
    for (int i = 0; i < step.frames().size(); ++i) {
      const odb_SequenceFieldBulkData& blocks = step.frames(i).fieldOutputs()["S"].bulkDataBlocks();
      for (int k = 0; k < blocks.size(); ++k)
        sum += blocks[k].data()[0] + blocks[k].elementLabels()[0];
    }
    closeOdb(r);
  };
  ourRead();
  const double ourReadS = Best(3, ourRead);
  std::printf(
      "read       all S by bulkDataBlocks() %.3f s, fread of the same bytes %.3f s: %.2fx\n",
      ourReadS, rawReadS, ourReadS / rawReadS);
  std::printf("read       ... fread into arrays kept per frame %.3f s: %.2fx\n", rawKeptReadS,
              ourReadS / rawKeptReadS);
  // The same read with the page checksums checked and not, in turns: what the checks cost.
  double checked = 1e9, unchecked = 1e9;
  for (int turn = 0; turn < 5; ++turn) {
    store_SetPageChecks(false);
    unchecked = std::min(unchecked, Best(1, ourRead));
    store_SetPageChecks(true);
    checked = std::min(checked, Best(1, ourRead));
  }
  std::printf(
      "read       with page checks %.3f s, without %.3f s: %.2fx (%.2fx fread), best of 5 "
      "in turns\n",
      checked, unchecked, checked / unchecked, checked / rawReadS);

  // Maximum Mises from bulk data already read, best of three fresh opens (a block keeps its Mises
  // values once computed), against the same loop over one plain array as large as all frames' S,
  // so that neither loop finds its data in the processor's cache.
  {
    std::vector<float> plainS;
    for (int f = 0; f < kFrames; ++f) plainS.insert(plainS.end(), b.s.begin(), b.s.end());
    float plainMax = 0, ourMax = 0;
    const double plain = Best(3, [&] {
      for (std::size_t i = 0; i < plainS.size() / 6; ++i)
        plainMax = Larger(plainMax, Mises(&plainS[6 * i]));
    });
    double ours = 1e30;
    for (int run = 0; run < 3; ++run) {
      odb_Odb& r = openOdb(path.c_str(), true);
      odb_Step& step = r.steps()["LOAD"];
      std::vector<odb_FieldBulkData> blocks;
      for (int i = 0; i < step.frames().size(); ++i) {
        const odb_SequenceFieldBulkData& all = step.frames(i).fieldOutputs()["S"].bulkDataBlocks();
        for (int k = 0; k < all.size(); ++k) blocks.push_back(all[k]);
      }
      for (const odb_FieldBulkData& block : blocks) block.data();
      ours = std::min(ours, Seconds([&] {
                        for (const odb_FieldBulkData& block : blocks) {
                          ourMax = MaxOf(block.mises(), block.length(), ourMax);
                        }
                      }));
      closeOdb(r);
    }
    std::printf("mises      max over bulk data %.3f s, plain loop %.3f s: %.2fx  [%.1f %.1f]\n",
                ours, plain, ours / plain, ourMax, plainMax);
  }
  {
    odb_Odb& r = openOdb(path.c_str(), true);
    odb_Step& step = r.steps()["LOAD"];
    // values() of one frame's S.
    const odb_FieldOutput& s = step.frames(0).fieldOutputs()["S"];
    const odb_SequenceFieldValue& values = s.values();
    double walk = Seconds([&] {
      for (int i = 0; i < values.size(); ++i) sum += values[i].fieldValueData()[0];
    });
    std::printf("values     one frame of S: %.1f M values/s\n", values.size() / walk / 1e6);
    closeOdb(r);
  }

  // Peak memory of reading one frame's S, measured in a fresh process: in this one, memory that
  // the runs above freed would be reused without growing.
  {
    const std::string probe =
        std::filesystem::read_symlink("/proc/self/exe").string() + " --read-one-frame " + path;
    std::FILE* child = popen(probe.c_str(), "r");
    long grown = -1;
    if (child && std::fscanf(child, "%ld", &grown) != 1) grown = -1;
    if (child) pclose(child);
    const double frameS = b.s.size() * sizeof(float);
    std::printf("memory     reading one frame of S: %.1f MB above before, %.2fx its %.1f MB\n",
                grown / 1e3, grown * 1e3 / frameS, frameS / 1e6);
  }
  std::printf("[%g]\n", sum);
  odb_finalizeAPI();
  if (!std::getenv("QTVODB_BENCH_KEEP")) std::filesystem::remove_all(dir);
  return 0;
}
