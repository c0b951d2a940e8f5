#include "odb_Odb.h"

#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <vector>

#include "OdbSession.h"
#include "odb_API.h"

namespace {

using OdbFile = OdbSession;

// Two steps; the second starts at analysis time 1.0, so its frames sit at 1.0, 1.5 and 2.0.
odb_Odb& TwoSteps(const std::string& path) {
  odb_Odb& odb = Odb("", "", "", path.c_str());
  odb_Step& first = odb.Step("Step-1", "", odb_Enum::TIME, 1.0, "", "", 0.0);
  for (double v : {0.0, 0.5, 1.0}) first.Frame(0, v, "");
  odb_Step& second = odb.Step("Step-2", "", odb_Enum::TIME, 1.0, "Step-1", "", 1.0);
  for (double v : {0.0, 0.5, 1.0}) second.Frame(0, v, "");
  return odb;
}

TEST_F(OdbFile, GetFrameAddsTotalTimeAndBreaksTiesByMatchRule) {
  odb_Odb& odb = TwoSteps(m_dir.file("a.odb"));
  // Step-1 frame 2 and Step-2 frame 0 both sit at time 1.0.
  odb_Frame nearest = odb.getFrame(0.9, odb_Enum::CLOSEST);
  EXPECT_EQ(nearest.frameIndex(), 2) << "CLOSEST keeps the earlier of equal times";
  odb_Frame before = odb.getFrame(1.1, odb_Enum::BEFORE);
  EXPECT_EQ(before.frameIndex(), 2) << "BEFORE keeps the earlier of equal times";
  odb_Frame after = odb.getFrame(0.9, odb_Enum::AFTER);
  EXPECT_EQ(after.frameIndex(), 0) << "AFTER lets the later of equal times win";
  EXPECT_EQ(odb.getFrame(1.6, odb_Enum::CLOSEST).frameValue(), 0.5);
  EXPECT_EQ(odb.getFrame(1.4, odb_Enum::AFTER).frameValue(), 0.5);
  EXPECT_EQ(odb.getFrame(1.5, odb_Enum::EXACT).frameValue(), 0.5);
  EXPECT_EQ(MessageOf([&] { odb.getFrame(1.25, odb_Enum::EXACT); }), "Frame not found.");
  EXPECT_EQ(MessageOf([&] { odb.getFrame(-1.0, odb_Enum::BEFORE); }), "Frame not found.");
  EXPECT_EQ(odb.getFrame(0.0, static_cast<odb_Enum::odb_MatchEnum>(9)).frameValue(), 1.0)
      << "an unknown rule takes every frame: the last one wins";
}

TEST_F(OdbFile, ExactMatchComparesInSinglePrecision) {
  odb_Odb& odb = Odb("", "", "", m_dir.file("a.odb").c_str());
  odb.Step("S", "", odb_Enum::TIME, 1.0, "", "", -1.0).Frame(1, 0.1, "");
  EXPECT_EQ(MessageOf([&] { odb.getFrame(0.1, odb_Enum::EXACT); }), "Frame not found.");
  EXPECT_EQ(odb.getFrame(static_cast<float>(0.1), odb_Enum::EXACT).frameIndex(), 0)
      << "a negative total time adds nothing";
  odb_Odb& empty = Odb("", "", "", m_dir.file("b.odb").c_str());
  EXPECT_EQ(MessageOf([&] { empty.getFrame(0.0, odb_Enum::CLOSEST); }), "Frame not found.");
}

TEST_F(OdbFile, GetFrameTakesTimesThatGoBackInCreationOrder) {
  odb_Odb& odb = Odb("", "", "", m_dir.file("a.odb").c_str());
  odb_Step& step = odb.Step("S", "", odb_Enum::TIME, 1.0, "", "", 2.0);
  for (double v : {0.0, 1.0, 0.5, 1.0}) step.Frame(0, v, "");  // times 2, 3, 2.5, 3
  EXPECT_EQ(odb.getFrame(2.75, odb_Enum::CLOSEST).frameIndex(), 1)
      << "3.0 and 2.5 are as near: frame 1 came first";
  EXPECT_EQ(odb.getFrame(2.9, odb_Enum::BEFORE).frameIndex(), 2);
  EXPECT_EQ(odb.getFrame(2.1, odb_Enum::AFTER).frameIndex(), 2);
  EXPECT_EQ(odb.getFrame(2.75, odb_Enum::AFTER).frameIndex(), 3);
  EXPECT_EQ(odb.getFrame(3.0, odb_Enum::EXACT).frameIndex(), 3);
}

TEST_F(OdbFile, CreatorsAndSaveRefuseWithTheirMessages) {
  std::string path = m_dir.file("a.odb");
  odb_Odb& odb = Odb("", "", "", path.c_str());
  EXPECT_EQ(MessageOf([&] { odb.Step("S2", "", odb_Enum::TIME, 1.0, "S1", "", 0.0); }),
            "Previous step \"S1\" not found.");
  odb.Step("S1", "", odb_Enum::TIME, 1.0, "", "", 0.0);
  EXPECT_EQ(MessageOf([&] { odb.Step("S1", "", odb_Enum::TIME, 1.0, "", "", 0.0); }),
            "A Step named \"S1\" already exists.");
  odb.DiscretePart("P", odb_Enum::THREE_D, odb_Enum::DEFORMABLE_BODY);
  const std::string partExists = "A part named \"P\" already exists.";
  EXPECT_EQ(MessageOf([&] { odb.DiscretePart("P", odb_Enum::TWO_D_PLANAR, odb_Enum::EULERIAN); }),
            partExists);
  EXPECT_EQ(MessageOf([&] {
              odb.parts().DiscretePart("P", odb_Enum::THREE_D, odb_Enum::DEFORMABLE_BODY);
            }),
            partExists)
      << "the repository's own creator says the same";
  EXPECT_EQ(MessageOf([&] { odb.save(m_dir.file("elsewhere.odb").c_str()); }),
            "ODB not saved. Changing the path is not allowed.");
  EXPECT_FALSE(Exists(m_dir.file("elsewhere.odb")));
  odb.save(path.c_str());
  odb.save();
  closeOdb(odb);
  EXPECT_TRUE(openOdb(path.c_str()).steps().isMember("S1"));
}

TEST_F(OdbFile, UpdateReadsWhatAnotherProcessSaved) {
  std::string path = m_dir.file("a.odb");
  closeOdb(Odb("", "", "", path.c_str()));
  int ready[2], go[2];
  ASSERT_EQ(pipe(ready), 0);
  ASSERT_EQ(pipe(go), 0);
  pid_t reader = fork();
  ASSERT_GE(reader, 0);
  if (reader == 0) {
    odb_Odb& odb = openOdb(path.c_str(), true);
    bool ok = !odb.update() && odb.steps().size() == 0 && !odb.update();
    char c = 'r';
    ok = ok && write(ready[1], &c, 1) == 1 && read(go[0], &c, 1) == 1;
    ok = ok && odb.update() && odb.steps().size() == 1 && odb.steps()["S"].frames().size() == 1;
    ok = ok && write(ready[1], &c, 1) == 1 && read(go[0], &c, 1) == 1;
    ok = ok && odb.update() && odb.steps()["S"].frames().size() == 2 && !odb.update();
    _exit(ok ? 0 : 1);
  }
  char c;
  ASSERT_EQ(read(ready[0], &c, 1), 1);
  odb_Odb& writer = openOdb(path.c_str(), false);
  writer.Step("S", "", odb_Enum::TIME, 1.0, "", "", 0.0).Frame(1, 0.5, "");
  saveOdb(writer);
  ASSERT_EQ(write(go[1], &c, 1), 1);
  ASSERT_EQ(read(ready[0], &c, 1), 1);
  writer.steps()["S"].Frame(2, 1.0, "");
  saveOdb(writer);
  ASSERT_EQ(write(go[1], &c, 1), 1);
  int status = 0;
  waitpid(reader, &status, 0);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "the reader missed an update";
}

// The live-reader case: a writer saves large frames (each more than its page cache holds, so
// that it spills pages into the file while it writes) while two readers in other processes
// keep calling update() and reading the newest frame's stress, value by value. The writer
// starts each frame once both readers have checked the one before, so that the readers are
// polling while it writes and saves. A reader must never see part of a save, and must see
// every save.
namespace live {

const int kElements = 64000, kPoints = 8, kFrames = 5;
const std::size_t kValues = std::size_t(kElements) * kPoints * 6;

// The stress of frame f is this pattern plus 100000 f, exact in float: at value i of
// integration point row r = i / 6 and component c = i % 6, (r % 50000) + c / 4.
std::vector<float> Pattern() {
  std::vector<float> pattern(kValues);
  for (std::size_t i = 0; i < kValues; ++i) pattern[i] = float((i / 6) % 50000) + 0.25f * (i % 6);
  return pattern;
}

// A row of kElements bricks; node labels from 1, element labels from 1.
void WriteMesh(odb_Odb& odb) {
  odb_DiscretePart& part = odb.DiscretePart("ROW", odb_Enum::THREE_D, odb_Enum::DEFORMABLE_BODY);
  odb_SequenceInt nodes, elements;
  odb_SequenceSequenceFloat points;
  odb_SequenceSequenceInt rows;
  for (int i = 0; i <= kElements; ++i)
    for (int k = 0; k < 4; ++k) {
      nodes.append(4 * i + k + 1);
      float xyz[3] = {float(i), float(k % 2), float(k / 2)};
      points.append(odb_SequenceFloat(xyz, 3));
    }
  for (int e = 0; e < kElements; ++e) {
    const int a = 4 * e + 1, b = a + 4;
    int row[8] = {a, b, b + 1, a + 1, a + 2, b + 2, b + 3, a + 3};
    elements.append(e + 1);
    rows.append(odb_SequenceInt(row, 8));
  }
  part.addNodes(nodes, points);
  part.addElements(elements, rows, "C3D8");
  odb.rootAssembly().Instance("ROW-1", part);
  odb.Step("S", "", odb_Enum::TIME, 1.0, "", "", 0.0);
}

// True when every value, label and point of frame f's S is as written.
bool StressIsWhole(const odb_Frame& frame, int f, const std::vector<float>& pattern) {
  const odb_SequenceFieldBulkData& blocks = frame.fieldOutputs()["S"].bulkDataBlocks();
  if (blocks.size() != 1 || blocks[0].length() != kElements * kPoints || blocks[0].width() != 6)
    return false;
  const odb_FieldBulkData& block = blocks[0];
  const float* data = block.data();
  const float offset = 100000.0f * f;
  for (std::size_t i = 0; i < kValues; ++i)
    if (data[i] != pattern[i] + offset) return false;
  for (int at = 0; at < kElements * kPoints; ++at)
    if (block.elementLabels()[at] != at / kPoints + 1 ||
        block.integrationPoints()[at] != at % kPoints + 1)
      return false;
  return true;
}

// Reads every frame as it is saved and reports each one checked on `done`; the exit status
// says how it went.
int Reader(const std::string& path, int done) try {
  const std::vector<float> pattern = Pattern();
  odb_Odb& odb = openOdb(path.c_str(), true);
  odb.steps();
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(120);
  for (int checked = -1; checked < kFrames - 1;) {
    if (std::chrono::steady_clock::now() > deadline) return 3;
    odb.update();
    const odb_SequenceFrame& frames = odb.steps()["S"].frames();
    const int newest = frames.size() - 1;
    if (newest <= checked) continue;
    if (newest != checked + 1) return 4;
    if (!StressIsWhole(frames[newest], newest, pattern)) return 1;
    checked = newest;
    if (write(done, &checked, sizeof checked) != sizeof checked) return 2;
  }
  closeOdb(odb);
  return 0;
} catch (const odb_Exception& e) {
  std::fprintf(stderr, "reader: %s\n", e.JournalMessage().CStr());
  return 2;
}

// Writes and saves the frames, each once every reader has checked the one before.
void Writer(const std::string& path, const std::vector<int>& done) {
  odb_Odb& odb = openOdb(path.c_str(), false);
  odb_Instance& instance = odb.rootAssembly().instance("ROW-1");
  std::vector<int> labels(kElements);
  for (int e = 0; e < kElements; ++e) labels[e] = e + 1;
  const std::vector<float> pattern = Pattern();
  std::vector<float> stress(kValues);
  for (int f = 0; f < kFrames; ++f) {
    for (int fd : done) {
      int checked = -1;
      while (checked < f - 1 && read(fd, &checked, sizeof checked) == sizeof checked) {
      }
    }
    for (std::size_t i = 0; i < kValues; ++i) stress[i] = pattern[i] + 100000.0f * f;
    odb_Frame frame = odb.steps()["S"].Frame(f, 0.1 * f, "");
    frame.FieldOutput("S", "", odb_Enum::TENSOR_3D_FULL)
        .addData(odb_Enum::INTEGRATION_POINT, instance, kElements, labels.data(),
                 kElements * kPoints, 6, stress.data());
    saveOdb(odb);
  }
  closeOdb(odb);
}

}  // namespace live

TEST_F(OdbFile, LiveReadersSeeEverySaveWholeWhileAWriterSavesFrames) {
  const std::string path = m_dir.file("live.odb");
  odb_Odb& odb = Odb("", "", "", path.c_str());
  live::WriteMesh(odb);
  saveOdb(odb);
  closeOdb(odb);
  std::vector<pid_t> readers;
  std::vector<int> done;
  for (int r = 0; r < 2; ++r) {
    int fds[2];
    ASSERT_EQ(pipe(fds), 0);
    pid_t reader = fork();
    ASSERT_GE(reader, 0);
    if (reader == 0) {
      close(fds[0]);
      _exit(live::Reader(path, fds[1]));
    }
    close(fds[1]);
    readers.push_back(reader);
    done.push_back(fds[0]);
  }
  live::Writer(path, done);
  for (pid_t reader : readers) {
    int status = 0;
    waitpid(reader, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0)
        << "reader exit " << (WIFEXITED(status) ? WEXITSTATUS(status) : -1)
        << " (1: a frame read wrong, 2: an error, 3: the last frame never came, 4: a save "
           "skipped)";
  }
  for (int fd : done) close(fd);
}

TEST_F(OdbFile, SecondProcessWritingFindsTheLockAndReadsOnly) {
  std::string path = m_dir.file("a.odb");
  closeOdb(Odb("", "", "", path.c_str()));
  int ready[2], go[2];
  ASSERT_EQ(pipe(ready), 0);
  ASSERT_EQ(pipe(go), 0);
  pid_t holder = fork();
  ASSERT_GE(holder, 0);
  if (holder == 0) {
    odb_Odb& odb = openOdb(path.c_str(), false);
    char c = 'r';
    bool ok = !odb.isReadOnly() && write(ready[1], &c, 1) == 1 && read(go[0], &c, 1) == 1;
    closeOdb(odb);
    _exit(ok ? 0 : 1);
  }
  char c;
  ASSERT_EQ(read(ready[0], &c, 1), 1);
  EXPECT_TRUE(Exists(path + ".lck"));
  odb_Odb& second = openOdb(path.c_str(), false);
  EXPECT_TRUE(second.isReadOnly());
  EXPECT_NE(TakeWarnings().find("Warning: An output database lock file"), std::string::npos);
  ASSERT_EQ(write(go[1], &c, 1), 1);
  int status = 0;
  waitpid(holder, &status, 0);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  EXPECT_FALSE(Exists(path + ".lck")) << "the writer's close removed its lock";
}

}  // namespace
