// Every write, sync, read and truncation of one save failed in turn, once or from then on, with
// EIO and with ENOSPC: the save (or the write that met the fault first) fails with a clear error,
// the file keeps its last save bit for bit, the writer shows that save again, and once the fault
// is gone the same writer saves the frame again and the file then holds exactly it.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>

#include "fault_Analysis.h"
#include "fault_Figures.h"

namespace {

struct Case {
  fault_Op op;
  int error;
  bool persistent;
  bool spill;  // pages reach the file while fields are added, not only at the save
};

const char* OpName(fault_Op op) {
  static const char* const kNames[] = {"write", "sync", "read", "truncate"};
  return kNames[static_cast<int>(op)];
}

std::string Title(const Case& c) {
  return std::string(OpName(c.op)) + (c.error == ENOSPC ? " ENOSPC" : " EIO") +
         (c.persistent ? " from then on" : " once") + (c.spill ? ", spilling" : "");
}

// A small analysis saves in a few dozen calls; the spilling one adds fields large enough to
// spill several pages while they are written.
int NodesOf(const Case& c) {
  return c.spill ? 6000 : 8;
}

// Whether a message or a warning gives the cause, as a sentence's start or inside one.
bool Reports(const std::string& text) {
  return text.find("isk is full") != std::string::npos ||
         text.find("I/O error occurred") != std::string::npos;
}

class SaveFaults : public fault_Analysis, public ::testing::WithParamInterface<Case> {
 protected:
  // One run with the nth call failing; false once n is past the calls of the run.
  bool Run(const Case& c, int n, const fault_Dump& reference, fault_Figures& figures);
};

bool SaveFaults::Run(const Case& c, int n, const fault_Dump& reference, fault_Figures& figures) {
  const int nodes = NodesOf(c);
  const std::string name = "run-" + std::to_string(n) + ".odb";
  const std::string where = Title(c) + ", call " + std::to_string(n);
  odb_Odb& odb = Start(name, nodes, c.spill);
  const fault_Dump saved = DumpOf(name);
  TakeWarnings();
  m_vfs.Reset();
  m_vfs.Fail(c.op, n, c.error, c.persistent);
  bool inSave = false;
  std::string failure = fault_Thrown([&] { WriteFrame(odb, 1, nodes); });
  if (failure.empty()) {
    failure = fault_Thrown([&] { saveOdb(odb); });
    inSave = !failure.empty();
  }
  m_vfs.Clear();
  const int injected = m_vfs.Injected();
  if (injected == 0) {
    closeOdb(odb);
    return false;
  }
  figures.runs += 1;
  figures.injected += injected;
  const std::string warnings = TakeWarnings();
  // What a program that opened the file now, before the writer touches it again, would find.
  const fault_Dump after = DumpOf(name);
  if (failure.empty()) {
    // SQLite got past the fault on its own (a read it needed no more): then the save is whole.
    EXPECT_EQ(after, reference) << where << ": a save that reported no error left another state";
    EXPECT_EQ(Shows(odb, 1, nodes), "") << where;
    figures.silent += 1;
    closeOdb(odb);
    return true;
  }
  if (inSave) {
    EXPECT_EQ(failure, fault_kSaveFailed) << where;
    EXPECT_TRUE(Reports(warnings)) << where << ": no cause among the warnings: " << warnings;
  } else {
    EXPECT_TRUE(Reports(failure)) << where << ": " << failure;
  }
  if (c.op == fault_Op::kWrite && c.error == ENOSPC)
    EXPECT_NE((inSave ? warnings : failure).find("isk is full"), std::string::npos) << where;
  // A save whose very last step the disk did not confirm, twice, is in the file, and the writer
  // keeps showing it; every other failure leaves the last save, in the file and the writer.
  const bool unconfirmed = warnings.find("did not confirm") != std::string::npos;
  const fault_Dump& expected = unconfirmed ? reference : saved;
  const std::string shown = Shows(odb, unconfirmed ? 1 : 0, nodes);
  EXPECT_EQ(shown, "") << where << ": the writer does not show what the file holds";
  figures.memoryWrong += shown.empty() ? 0 : 1;
  figures.unconfirmed += unconfirmed ? 1 : 0;
  const std::vector<std::string> missing = after.Missing(expected), extra = after.Extra(expected);
  EXPECT_TRUE(missing.empty()) << where << ": saved rows lost" << fault_Lines(missing);
  EXPECT_TRUE(extra.empty()) << where << ": unsaved rows in the file" << fault_Lines(extra);
  figures.lost += missing.empty() ? 0 : 1;
  figures.visible += extra.empty() ? 0 : 1;
  // The cause is gone: the same writer writes again what it does not show, and saves.
  const std::string retry = fault_Thrown([&] {
    if (!unconfirmed) WriteFrame(odb, 1, nodes);
    saveOdb(odb);
  });
  const fault_Dump retried = DumpOf(name);
  const bool saves = retry.empty() && retried == reference && Shows(odb, 1, nodes).empty();
  EXPECT_EQ(retry, "") << where << ": the writer cannot save again";
  EXPECT_EQ(retried, reference) << where << ": the save after the fault wrote another state"
                                << fault_Lines(retried.Extra(reference))
                                << fault_Lines(retried.Missing(reference));
  closeOdb(odb);
  odb_Odb& reader = openOdb(m_dir.file(name).c_str(), true);
  const std::string read = Shows(reader, 1, nodes);
  EXPECT_EQ(read, "") << where << ": the frames saved after the fault do not read back";
  closeOdb(reader);
  figures.stuck += retry.empty() ? 0 : 1;
  figures.retried += saves && read.empty() ? 1 : 0;
  std::error_code ignored;
  std::filesystem::remove(m_dir.file(name), ignored);
  return true;
}

TEST_P(SaveFaults, EveryFailingCallLeavesTheLastSaveAndTheWriterSavesAgain) {
  const Case c = GetParam();
  const int nodes = NodesOf(c);
  odb_Odb& odb = Start("reference.odb", nodes, c.spill);
  WriteFrame(odb, 1, nodes);
  saveOdb(odb);
  closeOdb(odb);
  const fault_Dump reference = DumpOf("reference.odb");
  fault_Figures figures;
  int n = 1;
  while (n < 5000 && Run(c, n, reference, figures) && !HasFailure()) ++n;
  EXPECT_GT(figures.runs, 0) << Title(c) << ": no call was ever failed";
  figures.Print(Title(c));
  fault_Figures::Totals().Add(figures);
}

std::string Name(const ::testing::TestParamInfo<Case>& info) {
  std::string name = Title(info.param);
  for (char& ch : name)
    if (!std::isalnum(static_cast<unsigned char>(ch))) ch = '_';
  return name;
}

std::vector<Case> Cases() {
  std::vector<Case> cases;
  for (bool spill : {false, true})
    for (fault_Op op : {fault_Op::kWrite, fault_Op::kSync, fault_Op::kRead, fault_Op::kTruncate})
      for (int error : {EIO, ENOSPC})
        for (bool persistent : {false, true}) {
          // A read or a truncation (a commit empties its journal so) fails with EIO whatever
          // the system's reason.
          if (error == ENOSPC && (op == fault_Op::kRead || op == fault_Op::kTruncate)) continue;
          // A save reads pages back only once they spilled into the file.
          if (!spill && op == fault_Op::kRead) continue;
          cases.push_back({op, error, persistent, spill});
        }
  return cases;
}

INSTANTIATE_TEST_SUITE_P(FaultVfs, SaveFaults, ::testing::ValuesIn(Cases()), Name);

}  // namespace
