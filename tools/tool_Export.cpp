#include "tool_Export.h"

#include <cstdio>
#include <filesystem>
#include <future>
#include <vector>

#include "tool_Common.h"
#include "tool_ExportFrame.h"
#include "tool_ExportGrid.h"
#include "tool_Progress.h"
#include "tool_Vtu.h"

namespace {

std::string Stem(const std::string& path) {
  const std::string stem = std::filesystem::path(path).stem().string();
  return stem.empty() ? "odb" : stem;
}

}  // namespace

std::string tool_Export(const tool_ExportRequest& request, std::ostream& notes) {
  if (request.format != "vtu")
    throw tool_Error("unknown format \"" + request.format + "\"; the formats are: vtu");
  odb_Odb& odb = tool_Open(request.path);
  std::error_code error;
  std::filesystem::create_directories(request.folder, error);
  if (error || !std::filesystem::is_directory(request.folder))
    throw tool_Error("cannot make the folder \"" + request.folder +
                     "\": " + (error ? error.message() : "a file of that name is in the way"));
  const tool_Grid grid = tool_BuildGrid(odb, notes);

  struct FrameRef {
    odb_Step step;
    int index;
    double time;
  };
  std::vector<FrameRef> frames;
  for (odb_StepRepositoryIT it(odb.steps()); !it.isDone(); it.next()) {
    const odb_Step& step = it.currentValue();
    const double start = std::max(step.totalTime(), 0.0);
    for (int f = 0; f < step.frames().size(); ++f)
      frames.push_back({step, f, start + step.frames(f).frameValue()});
  }

  const std::string stem = Stem(request.path);
  const std::filesystem::path folder(request.folder);
  std::vector<std::pair<double, std::string>> series;
  const std::size_t count = frames.empty() ? 1 : frames.size();  // no frames: the mesh alone
  tool_Progress progress("export", "frame", static_cast<int>(count), request.quiet);
  // Three stages overlap, one thread each: this thread reads frame i (it alone calls the
  // library), a second computes frame i-1's arrays, a third writes frame i-2's file. Two sets of
  // read values and two of arrays take turns; one computation runs at a time, and a set of arrays
  // is filled again only once its file is written.
  struct Slot {
    tool_FrameData data;
    tool_Arrays points, cells;
    std::future<std::uint64_t> written;
  };
  Slot slots[2];
  tool_FrameArrays make(grid);
  std::future<void> computing;
  const auto computed = [&] {
    if (!computing.valid()) return;
    computing.get();  // a failed computation or write throws here
    progress.done();
  };
  char number[32];
  for (std::size_t i = 0; i < count; ++i) {
    Slot& slot = slots[i % 2];
    // The computation of frame i - 2 read these values; it ended before frame i - 1's began.
    slot.data.used = 0;
    if (!frames.empty()) {
      tool_ReadFrame(frames[i].step.frames(frames[i].index), grid, slot.data);
      progress.addBytes(slot.data.bytes);
    }
    computed();  // frame i - 1
    std::snprintf(number, sizeof number, "_%04zu.vtu", i);
    const std::string file = stem + number, target = (folder / file).string();
    computing = std::async(std::launch::async, [&make, &grid, &slot, target] {
      if (slot.written.valid()) slot.written.get();  // frame i - 2's file, from these arrays
      slot.points.NextFrame();
      slot.cells.NextFrame();
      make.Make(slot.data, slot.points, slot.cells);
      slot.written = std::async(std::launch::async, [&grid, &slot, target] {
        return tool_WriteVtu(target, grid.mesh, slot.points.Used(), slot.cells.Used());
      });
    });
    series.emplace_back(frames.empty() ? 0.0 : frames[i].time, file);
  }
  computed();
  for (std::size_t i = count; i < count + 2; ++i)  // the last two files, in order
    if (slots[i % 2].written.valid()) progress.addBytes(slots[i % 2].written.get());
  const std::string pvd = (folder / (stem + ".pvd")).string();
  tool_WritePvd(pvd, series);
  progress.finish();
  closeOdb(odb);
  return pvd;
}
