// A test fixture with the fault VFS installed as SQLite's default, warnings captured, and the
// small analysis that the fault tests save again and again.
//
// The analysis: part "P" with nodes 1..n along x and one C3D8 element 1 on nodes 1..8, placed as
// instance "P-1"; step "S1"; per frame k, a nodal VECTOR field "U" on every node and an
// integration-point TENSOR_3D_FULL field "S" on the element's 8 points, with values that depend
// on k; a history region at node 1 of "P-1" whose SCALAR output "U1" gets the pair (k / 10, k)
// with frame k. Start writes it up to frame 0 and saves; a run then writes frame 1 and saves.
#ifndef TESTS_FAULT_ANALYSIS_H
#define TESTS_FAULT_ANALYSIS_H

#include <string>
#include <utility>

#include "OdbSession.h"
#include "fault_Dump.h"
#include "fault_Vfs.h"
#include "odb_API.h"

class fault_Analysis : public OdbSession {
 protected:
  void SetUp() override;
  void TearDown() override;

  // Creates the database at `path` (under the test's folder) with `nodes` nodes (at least 8),
  // writes frame 0 and saves. With `spill`, the writer's page cache is cut to a page, so SQLite
  // writes pages into the file while fields are added, not only when the save commits.
  odb_Odb& Start(const std::string& name, int nodes, bool spill);
  // Writes frame k and its pair, reaching the step, instance and output from the database.
  static void WriteFrame(odb_Odb& odb, int k, int nodes);
  // Empty when the database shows exactly frames 0..last and the pairs of those frames, with
  // their values; otherwise what it shows instead.
  static std::string Shows(odb_Odb& odb, int last, int nodes);

  // The dump, without its creation stamp, of the file of `name` under the test's folder.
  fault_Dump DumpOf(const std::string& name) const {
    return fault_Dump::Of(m_dir.file(name)).WithoutStamp();
  }

  fault_Vfs& m_vfs = fault_Vfs::Instance();
};

// The message of what a call throws, and "" when it throws nothing.
template <class F>
std::string fault_Thrown(F&& call) {
  const std::string message = MessageOf(std::forward<F>(call));
  return message == "(nothing thrown)" ? std::string() : message;
}

// What a failed save throws, and what a handle retired by a failure throws.
constexpr const char fault_kSaveFailed[] = "Database save failed.";
constexpr const char fault_kRetired[] =
    "This object was reached before a failure took the database back to its last save: reach it "
    "again from the database.";

#endif
