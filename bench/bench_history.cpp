// Measures history output through the public interface against baselines timed in the same run:
// appending 10 million (time, value) pairs one addData call at a time and saving (against
// std::vector push_back of the same pairs and a durable fwrite of their bytes), and reading them
// back with data() after a reopen (against fread of the same bytes). Each baseline runs twice:
// with std::vector's own memory, and with the huge-page advised memory that the library uses for
// its pair arrays, so that the gain of the advice and the cost of the rest show apart.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "bench_Timing.h"
#include "odb_API.h"
#include "store_LargeAllocator.h"

namespace {

const int kPairs = 10000000;
const double kPairBytes = sizeof(double) + sizeof(float);
volatile double g_sink;
std::string g_folder;

void Fail(const char* what) {
  std::fprintf(stderr, "bench_history: %s\n", what);
  if (!g_folder.empty()) std::filesystem::remove_all(g_folder);
  std::exit(1);
}

double Time(int i) {
  return 1e-4 * i;
}
double Value(int i) {
  return 0.5 * (i % 1000);
}

// The baseline write: the same pairs pushed into two vectors, then written and synced.
template <template <class> class Allocator>
void WriteBaseline(const std::string& path) {
  std::vector<double, Allocator<double>> times;
  std::vector<float, Allocator<float>> values;
  for (int i = 0; i < kPairs; ++i) {
    times.push_back(Time(i));
    values.push_back(static_cast<float>(Value(i)));
  }
  FILE* f = std::fopen(path.c_str(), "wb");
  if (!f) Fail("cannot create the baseline file");
  std::fwrite(times.data(), sizeof(double), times.size(), f);
  std::fwrite(values.data(), sizeof(float), values.size(), f);
  std::fflush(f);
  fsync(fileno(f));
  std::fclose(f);
}

template <template <class> class Allocator>
double ReadBaseline(const std::string& path) {
  std::vector<double, Allocator<double>> times(kPairs);
  std::vector<float, Allocator<float>> values(kPairs);
  FILE* f = std::fopen(path.c_str(), "rb");
  if (!f) Fail("cannot open the baseline file");
  if (std::fread(times.data(), sizeof(double), times.size(), f) != times.size() ||
      std::fread(values.data(), sizeof(float), values.size(), f) != values.size())
    Fail("short read of the baseline file");
  std::fclose(f);
  double sum = 0;
  for (int i = 0; i < kPairs; ++i) sum += times[i] + values[i];
  return sum;
}

// Creates the database, appends every pair one call at a time and saves; the close is timed
// apart by the caller.
void WriteOurs(const std::string& path) {
  odb_Odb& odb = Odb("", "bench", "history", path.c_str());
  odb_Step& step = odb.Step("Step-1", "", odb_Enum::TIME, 1.0, "", "*STATIC", 0.0);
  odb_HistoryRegion& region = step.HistoryRegion("", "", odb_HistoryPoint(odb.rootAssembly()));
  odb_HistoryOutput& output = region.HistoryOutput("ALLIE", "strain energy");
  for (int i = 0; i < kPairs; ++i) output.addData(Time(i), Value(i));
  saveOdb(odb);
}

double ReadOurs(const std::string& path, int& size) {
  odb_Odb& odb = openOdb(path.c_str(), true);
  const odb_HistoryData data =
      odb.steps()["Step-1"].historyRegions()["Assembly Assembly"].historyOutputs()["ALLIE"].data();
  size = data.size();
  double sum = 0;
  for (int i = 0; i < data.size(); ++i) sum += data.time(i) + data.value(i);
  closeOdb(odb);
  return sum;
}

void Row(const char* figure, const char* baseline, double base, const char* ours, double us,
         const char* target) {
  std::printf("| %s | %s %.1f ms (%.1f M pairs/s) | %s %.1f ms (%.1f M pairs/s) | %.2f | %s |\n",
              figure, baseline, base * 1e3, kPairs / base / 1e6, ours, us * 1e3, kPairs / us / 1e6,
              us / base, target);
}

}  // namespace

int main() {
  char folder[] = "/tmp/bench_history.XXXXXX";
  if (!mkdtemp(folder)) Fail("cannot make a folder");
  g_folder = folder;
  const std::string raw = g_folder + "/pairs.bin";
  const std::string path = g_folder + "/history.odb";
  odb_initializeAPI();

  const double baseWrite = Best(3, [&] { WriteBaseline<std::allocator>(raw); });
  const double hugeWrite = Best(3, [&] { WriteBaseline<store_LargeAllocator>(raw); });
  double oursWrite = 1e30, close = 0;
  for (int run = 0; run < 3; ++run) {
    const double t = Seconds([&] { WriteOurs(path); });
    if (t < oursWrite) {
      oursWrite = t;
      close = Seconds([&] { closeOdb(odb_OdbRepository::Instance().get(path.c_str())); });
    } else {
      closeOdb(odb_OdbRepository::Instance().get(path.c_str()));
    }
  }

  double baseSum = 0, oursSum = 0;
  int size = 0;
  const double baseRead = Best(3, [&] { baseSum = ReadBaseline<std::allocator>(raw); });
  const double hugeRead = Best(3, [&] { baseSum = ReadBaseline<store_LargeAllocator>(raw); });
  const double oursRead = Best(3, [&] { oursSum = ReadOurs(path, size); });
  if (size != kPairs || baseSum != oursSum) Fail("the pairs read back differ from those written");

  // The nested-sequence form, one small list per pair, on a tenth of the pairs.
  double nested = 0;
  {
    odb_Odb& odb = openOdb(path.c_str(), true);
    odb_HistoryOutput& output =
        odb.steps()["Step-1"].historyRegions()["Assembly Assembly"].historyOutputs()["ALLIE"];
    const odb_HistoryOutput tenth = output.getSubset(-1.0, Time(kPairs / 10));
    nested = Seconds([&] {
      const odb_SequenceSequenceFloat rows = tenth.data();
      g_sink = rows[rows.size() - 1][0];
    });
    closeOdb(odb);
  }
  g_sink = baseSum + oursSum;

  std::printf("| figure | baseline | ours | ratio | target |\n|---|---|---|---|---|\n");
  Row("append 10,000,000 pairs one `addData(time, value)` at a time, then `saveOdb`",
      "std::vector push_back + fwrite + fsync:", baseWrite,
      "Odb/HistoryRegion/HistoryOutput/addData/saveOdb:", oursWrite, ">= 10 M pairs/s");
  Row("the same, baseline in huge-page advised vectors", "push_back + fwrite + fsync:", hugeWrite,
      "as above:", oursWrite, "none");
  Row("reopen read-only and read them back with `data()`, summing every pair",
      "fread of the same bytes:", baseRead, "openOdb/data()/closeOdb:", oursRead,
      ">= 50 M pairs/s");
  Row("the same, baseline in huge-page advised vectors", "fread:", hugeRead, "as above:", oursRead,
      "none");
  std::printf(
      "\nfile %.1f MiB for %.1f MiB of pairs; closeOdb after the save %.1f ms; the "
      "nested-sequence form of 1,000,000 pairs %.1f ms (%.1f M pairs/s)\n",
      std::filesystem::file_size(path) / 1048576.0, kPairs * kPairBytes / 1048576.0, close * 1e3,
      nested * 1e3, kPairs / 10 / nested / 1e6);

  odb_finalizeAPI();
  std::filesystem::remove_all(g_folder);
  return 0;
}
