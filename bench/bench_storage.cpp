// Measures the storage figures through the public interface, each against a baseline timed in
// the same run: writing frames (against bare SQLite inserting the same rows), reading them back
// and opening a large file (against opening an empty one), and killing a writer at random
// moments to show that a reopened file is never damaged and never loses a save.
//
// Usage: bench_storage [--kill-runs N]   (N kill runs, 1000 by default; 0 skips them)
#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "bench_Timing.h"
#include "odb_API.h"
#include "odb_OdbData.h"
#include "store_Database.h"
#include "store_Schema.h"

namespace {

const int kSteps = 100;
const int kFramesPerStep = 1000;
volatile double g_sink;
std::string g_folder;  // removed on every way out: it may hold a 1 GiB file

void Fail(const char* what) {
  std::fprintf(stderr, "bench_storage: %s\n", what);
  if (!g_folder.empty()) std::filesystem::remove_all(g_folder);
  std::exit(1);
}

odb_String StepName(int s) {
  return odb_String(("Step-" + std::to_string(s + 1)).c_str());
}

// Writes the frames through the public interface, saving after each step as a solver would.
void WriteFrames(const std::string& path) {
  odb_Odb& odb = Odb("", "bench", "frames", path.c_str());
  const odb_String description("Increment");
  for (int s = 0; s < kSteps; ++s) {
    odb_Step& step = odb.Step(StepName(s), "", odb_Enum::TIME, 1.0, "", "*STATIC", s);
    for (int f = 0; f < kFramesPerStep; ++f) step.Frame(f, 0.001 * (f + 1), description);
    saveOdb(odb);
  }
  closeOdb(odb);
}

void Exec(sqlite3* db, const char* sql) {
  if (sqlite3_exec(db, sql, nullptr, nullptr, nullptr) != SQLITE_OK) Fail(sqlite3_errmsg(db));
}

// The same rows, with the same schema, pragmas and commits, written by bare SQLite.
void WriteRowsBare(const std::string& path) {
  std::filesystem::remove(path);
  sqlite3* db = nullptr;
  if (sqlite3_open(path.c_str(), &db) != SQLITE_OK) Fail("cannot create the baseline file");
  Exec(db, store_kCreateSchema);
  Exec(db, "COMMIT");
  Exec(db, store_kWriterPragmas);
  Exec(db, "BEGIN IMMEDIATE");
  sqlite3_stmt *step, *frame;
  sqlite3_prepare_v2(db, "INSERT INTO step(name, domain, time_period, total_time) VALUES(?,0,1,?)",
                     -1, &step, nullptr);
  sqlite3_prepare_v2(db,
                     "INSERT INTO frame(step_id, frame_index, increment, frame_value, "
                     "description) VALUES(?,?,?,?,'Increment')",
                     -1, &frame, nullptr);
  for (int s = 0; s < kSteps; ++s) {
    std::string name = "Step-" + std::to_string(s + 1);
    sqlite3_bind_text(step, 1, name.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_double(step, 2, s);
    if (sqlite3_step(step) != SQLITE_DONE) Fail(sqlite3_errmsg(db));
    sqlite3_reset(step);
    sqlite3_int64 id = sqlite3_last_insert_rowid(db);
    for (int f = 0; f < kFramesPerStep; ++f) {
      sqlite3_bind_int64(frame, 1, id);
      sqlite3_bind_int(frame, 2, f);
      sqlite3_bind_int(frame, 3, f);
      sqlite3_bind_double(frame, 4, static_cast<float>(0.001 * (f + 1)));
      if (sqlite3_step(frame) != SQLITE_DONE) Fail(sqlite3_errmsg(db));
      sqlite3_reset(frame);
    }
    Exec(db, "COMMIT; BEGIN IMMEDIATE;");
  }
  Exec(db, "COMMIT");
  sqlite3_finalize(step);
  sqlite3_finalize(frame);
  sqlite3_close(db);
}

// Every frame value of every step, read through a fresh read-only open.
long WalkFrames(const std::string& path) {
  odb_Odb& odb = openOdb(path.c_str(), true);
  long frames = 0;
  double sum = 0;
  for (odb_StepRepositoryIT it(odb.steps()); !it.isDone(); it.next()) {
    odb_Step step = it.currentValue();
    odb_SequenceFrame& sequence = step.frames();
    for (int i = 0; i < sequence.size(); ++i, ++frames) sum += sequence.get(i).frameValue();
  }
  g_sink = sum;
  closeOdb(odb);
  return frames;
}

double OpenClose(const std::string& path, bool readOnly) {
  return Seconds([&] { closeOdb(openOdb(path.c_str(), readOnly)); });
}

// An empty database and one holding 1 GiB of array data, both written just now: both are in
// the page cache, so the comparison is of what opening reads, not of the disk.
void OpenFigures(const std::string& dir, double& emptyRo, double& bigRo, double& emptyRw,
                 double& bigRw, double& bigBytes) {
  const std::string empty = dir + "/empty.odb", big = dir + "/big.odb";
  closeOdb(Odb("", "empty", "", empty.c_str()));
  {
    odb_Odb& odb = Odb("", "big", "", big.c_str());
    std::vector<unsigned char> filler(std::size_t(1) << 30);
    for (std::size_t i = 0; i < filler.size(); ++i) filler[i] = static_cast<unsigned char>(i * 131);
    odb_OdbAccess::Store(odb)->PutArray("filler", filler.data(), filler.size());
    saveOdb(odb);
    closeOdb(odb);
  }
  bigBytes = static_cast<double>(std::filesystem::file_size(big));
  emptyRo = bigRo = emptyRw = bigRw = 1e30;
  for (int i = 0; i < 20; ++i) {  // interleaved, so that drift hits both alike
    emptyRo = std::min(emptyRo, OpenClose(empty, true));
    bigRo = std::min(bigRo, OpenClose(big, true));
    emptyRw = std::min(emptyRw, OpenClose(empty, false));
    bigRw = std::min(bigRw, OpenClose(big, false));
  }
}

const int kBatch = 100;

// The killed writer: appends batches to the first step, saving after each and then reporting
// the number of frames saved. Runs until it is killed.
[[noreturn]] void WriteUntilKilled(const std::string& path, int report) {
  try {
    odb_Odb& odb = openOdb(path.c_str());
    odb_Step step = odb.steps().get("Step-1");
    for (int saved = step.frames().size();;) {
      for (int i = 0; i < kBatch; ++i) step.Frame(saved + i, 0.5, "");
      saveOdb(odb);
      saved += kBatch;
      if (write(report, &saved, sizeof saved) != sizeof saved) _exit(3);
    }
  } catch (...) {
    _exit(2);
  }
}

// Besides the verdicts, how much the runs exercised: saves reported in all, and kills that fell
// between a save's commit and its report (the file then holds one batch more than reported).
struct KillCounts {
  int runs = 0, damaged = 0, lost = 0;
  long saves = 0;
  int unreported = 0;
};

KillCounts KillTest(const std::string& dir, int runs) {
  KillCounts counts;
  const std::string path = dir + "/kill.odb";
  std::mt19937 random(42);
  for (int run = 0; run < runs; ++run, ++counts.runs) {
    {
      odb_Odb& odb = Odb("", "kill", "", path.c_str());
      odb.Step("Step-1", "", odb_Enum::TIME, 1.0, "", "*STATIC", 0.0);
      saveOdb(odb);
      closeOdb(odb);
    }
    int pipeEnds[2];
    if (pipe(pipeEnds) != 0) Fail("pipe failed");
    pid_t child = fork();
    if (child < 0) Fail("fork failed");
    if (child == 0) {
      close(pipeEnds[0]);
      WriteUntilKilled(path, pipeEnds[1]);
    }
    close(pipeEnds[1]);
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 100000));
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    if (!WIFSIGNALED(status)) Fail("the writer stopped before it was killed");
    int reported = 0;
    for (int n; read(pipeEnds[0], &n, sizeof n) == sizeof n;) reported = n;
    close(pipeEnds[0]);

    std::filesystem::remove(path + ".lck");  // the killed writer's stale lock
    int frames = -1;
    try {
      odb_Odb& odb = openOdb(path.c_str());
      sqlite3_stmt* check = nullptr;
      sqlite3_prepare_v2(odb_OdbAccess::Store(odb)->Connection(), "PRAGMA integrity_check", -1,
                         &check, nullptr);
      bool ok =
          sqlite3_step(check) == SQLITE_ROW &&
          std::strcmp(reinterpret_cast<const char*>(sqlite3_column_text(check, 0)), "ok") == 0;
      sqlite3_finalize(check);
      if (ok) frames = odb.steps().get("Step-1").frames().size();
      closeOdb(odb);
    } catch (const odb_Exception&) {
    }
    counts.saves += reported / kBatch;
    if (frames < 0)
      ++counts.damaged;
    else if (frames == reported + kBatch)
      ++counts.unreported;
    else if (frames != reported)
      ++counts.lost;
  }
  return counts;
}

}  // namespace

int main(int argc, char** argv) {
  int killRuns = 1000;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--kill-runs") == 0 && i + 1 < argc)
      killRuns = std::atoi(argv[++i]);
    else
      Fail("usage: bench_storage [--kill-runs N]");
  }
  char folder[] = "/tmp/bench_storage.XXXXXX";
  if (!mkdtemp(folder)) Fail("cannot make a temporary folder");
  const std::string dir = g_folder = folder;
  int count = 0;
  odb_initialize(count);
  std::printf("QTVodb storage benchmark (files in %s)\n", folder);

  const long frames = long(kSteps) * kFramesPerStep;
  const std::string path = dir + "/frames.odb";
  double bare = Best(3, [&] { WriteRowsBare(dir + "/bare.db"); });
  double ours = Best(3, [&] { WriteFrames(path); });
  std::printf("\nWrite %d steps x %d frames, saving after each step\n", kSteps, kFramesPerStep);
  std::printf("  bare SQLite, same rows   %8.1f ms  %9.0f frames/s\n", bare * 1e3, frames / bare);
  std::printf("  Odb/Step/Frame/saveOdb   %8.1f ms  %9.0f frames/s   ratio %.2f\n", ours * 1e3,
              frames / ours, ours / bare);

  long walked = 0;
  double walk = Best(3, [&] { walked = WalkFrames(path); });
  if (walked != frames) Fail("the walk did not find every frame");
  double emptyRo, bigRo, emptyRw, bigRw, bigBytes;
  OpenFigures(dir, emptyRo, bigRo, emptyRw, bigRw, bigBytes);
  std::printf("\nReopen read-only and walk every frame\n");
  std::printf("  openOdb+closeOdb, empty  %8.3f ms\n", emptyRo * 1e3);
  std::printf("  open, walk %ld frames   %8.1f ms   ratio %.0f\n", frames, walk * 1e3,
              walk / emptyRo);

  std::printf("\nopenOdb+closeOdb, best of 20: empty file vs %.2f GiB file (both in page cache)\n",
              bigBytes / (1 << 30));
  std::printf("  read-only   %8.3f ms vs %8.3f ms   ratio %.2f (target <= 1.5)\n", emptyRo * 1e3,
              bigRo * 1e3, bigRo / emptyRo);
  std::printf("  for writing %8.3f ms vs %8.3f ms   ratio %.2f (target <= 1.5)\n", emptyRw * 1e3,
              bigRw * 1e3, bigRw / emptyRw);

  if (killRuns > 0) {
    auto start = bench_Clock::now();
    KillCounts k = KillTest(dir, killRuns);
    std::printf("\nKill a writer (batches of %d frames, save after each) at a random 0-100 ms\n",
                kBatch);
    std::printf(
        "  runs %d   files damaged %d (must be 0)   saved states lost %d (must be 0)"
        "   %.0f s\n",
        k.runs, k.damaged, k.lost,
        std::chrono::duration<double>(bench_Clock::now() - start).count());
    std::printf("  saves reported %ld; kills between a save and its report %d\n", k.saves,
                k.unreported);
  }
  odb_finalize(count);
  std::filesystem::remove_all(dir);
  return 0;
}
