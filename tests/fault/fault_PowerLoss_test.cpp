// A power loss at every sync of a save, and at every write and truncation: whatever the disk had
// not synced is lost, and the file then opens at its last save or at the new one, whole, never a
// mix.
#include <gtest/gtest.h>

#include <filesystem>

#include "fault_Analysis.h"
#include "fault_Figures.h"

namespace {

struct Cut {
  fault_Op op;
  bool spill;
};

const char* OpName(fault_Op op) {
  return op == fault_Op::kSync ? "sync" : op == fault_Op::kWrite ? "write" : "truncation";
}

class PowerLoss : public fault_Analysis, public ::testing::WithParamInterface<Cut> {};

TEST_P(PowerLoss, TheFileOpensAtTheLastSaveOrTheNewOneNeverAMix) {
  const Cut cut = GetParam();
  const int nodes = cut.spill ? 6000 : 8;
  const std::string title =
      std::string("power lost at a ") + OpName(cut.op) + (cut.spill ? ", spilling" : "");
  odb_Odb& odb = Start("reference.odb", nodes, cut.spill);
  WriteFrame(odb, 1, nodes);
  saveOdb(odb);
  closeOdb(odb);
  const fault_Dump reference = DumpOf("reference.odb");
  int old = 0, fresh = 0, mixed = 0, n = 1;
  for (; n < 5000; ++n) {
    const std::string name = "cut-" + std::to_string(n) + ".odb";
    odb_Odb& writer = Start(name, nodes, cut.spill);
    const fault_Dump saved = DumpOf(name);
    m_vfs.Reset();
    m_vfs.CutPower(cut.op, n);
    fault_Thrown([&] {
      WriteFrame(writer, 1, nodes);
      saveOdb(writer);
    });
    const bool reached = m_vfs.Injected() > 0;
    closeOdb(writer);
    m_vfs.LosePower();
    const fault_Dump after = DumpOf(name);
    const int last = after == reference ? 1 : 0;
    if (after == saved) {
      ++old;
    } else if (after == reference) {
      ++fresh;
    } else {
      ++mixed;
      ADD_FAILURE() << title << ", call " << n << ": neither the last save nor the new one"
                    << fault_Lines(after.Missing(saved)) << fault_Lines(after.Extra(saved));
    }
    // The library opens what the power loss left, its journal rolled back, and reads it whole.
    odb_Odb& reader = openOdb(m_dir.file(name).c_str(), true);
    EXPECT_EQ(Shows(reader, last, nodes), "") << title << ", call " << n;
    closeOdb(reader);
    std::error_code ignored;
    std::filesystem::remove(m_dir.file(name), ignored);
    if (!reached) {
      // Past the save's last call: the save finished, and it survives the power loss.
      EXPECT_EQ(after, reference) << title << ": a finished save was lost";
      break;
    }
  }
  std::printf("[fault] %s: %d power losses, %d at the last save, %d at the new one, %d mixed\n",
              title.c_str(), n, old, fresh, mixed);
}

std::string Name(const ::testing::TestParamInfo<Cut>& info) {
  return std::string(OpName(info.param.op)) + (info.param.spill ? "_spilling" : "");
}

INSTANTIATE_TEST_SUITE_P(FaultVfs, PowerLoss,
                         ::testing::Values(Cut{fault_Op::kSync, false},
                                           Cut{fault_Op::kWrite, false},
                                           Cut{fault_Op::kTruncate, false},
                                           Cut{fault_Op::kSync, true}, Cut{fault_Op::kWrite, true},
                                           Cut{fault_Op::kTruncate, true}),
                         Name);

}  // namespace
