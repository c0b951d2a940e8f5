// odb_Step: one analysis step of a database, as a handle: its description, its frames and its
// load cases.
//
// The database owns the stored step; the handle holds a share of the step's data, so copying a
// step costs O(1) and every copy sees the frames and load cases that any other copy adds. Steps
// are created and found through the database's step repository (odb_StepRepository).
//
// Frames are read lazily: nothing of them is read until they are first asked for (their number,
// one of them, or a search); then all frame records of the step are read in one call and kept.
// update() reads only the frames that the database holds beyond those known. Load cases are read
// the same way, on first use. Creators (Frame, LoadCase) write to the database at once; the
// database's save makes them durable.
//
// History regions are read the same way, on first use; HistoryRegion writes a new one at once.
//
// The default fields of a step are not kept by this class.
//
// One thread at a time for a step, its copies and everything reached through them.
#ifndef ODB_STEP_H
#define ODB_STEP_H

#include "odb_Enum.h"
#include "odb_Export.h"
#include "odb_Frame.h"
#include "odb_HistoryPoint.h"
#include "odb_HistoryRegion.h"
#include "odb_LoadCase.h"
#include "odb_Repository.h"
#include "odb_SequenceFrame.h"
#include "odb_StepProcedure.h"
#include "odb_String.h"
#include "uti_LabelMap.h"
#include "uti_SharedPtr.h"

// The messages of steps.
enum odb_StepEnm : int {
  odb_Step_HISTORY_REGION_EXISTS = 0,  // %1$s: the region's name, %2$s: the step's name
  odb_Step_HISTORY_UNREADABLE = 1,     // %1$s: the history's name, %2$s: the reason
  odb_Step_BAD_FRAME_INDEX = 2,        //
  odb_Step_FRAME_NOT_FOUND = 3         //
};

template <>
struct QTVODB_EXPORT uti_LabelTable<odb_StepEnm, 1> {
  static const uti_LabelRow<odb_StepEnm> rows[];
};

struct odb_StepData;

class QTVODB_EXPORT odb_Step {
 public:
  using LoadCaseRepository = odb_Repository<odb_String, odb_LoadCase>;
  using HistoryRegionRepository = odb_HistoryRegionRepository;

  // An empty handle: it belongs to no database, has no frames and refuses the creators.
  odb_Step();

  odb_String name() const;
  odb_String description() const;
  odb_Enum::odb_DomainEnum domain() const;
  // The procedure keyword line, for example "*STATIC".
  odb_String procedure() const;
  // The step's own duration.
  double timePeriod() const;
  // The analysis time at the start of the step.
  double totalTime() const;
  odb_String previousStepName() const;
  // The procedure's kind and settings (odb_StepProcedure), read from the file on first use;
  // kind UNSPECIFIED for a step made from a procedure text alone or by an earlier release.
  odb_StepProcedure procedureSettings() const;
  // The text an input deck writes after the step's procedure lines; stored at once. Throws for
  // an empty step handle.
  void setSolverInput(const odb_String& text);
  odb_String solverInput() const { return procedureSettings().solverInput; }

  // Appends a frame and returns it. The value is stored in single precision; the frame's index
  // is the number of frames minus one. Throws for an empty step handle.
  odb_Frame Frame(int incrementNumber, double frameValue, const odb_String& description);
  // Frame(loadCase, description, 0.0).
  odb_Frame Frame(const odb_LoadCase& loadCase, const odb_String& description);
  // Appends a frame of `loadCase`, which must be one of loadCases() (else throws "Key "NAME"
  // not found in repository"); the empty load case gives a frame without one. The frame's
  // increment number is its index.
  odb_Frame Frame(const odb_LoadCase& loadCase, const odb_String& description, double frameValue);

  // Frame i (0-based); throws "Incorrect index for frame." for i < 0 or i >= the number of
  // frames. The reference stays valid, and refers to frame i, as long as the step lives.
  odb_Frame& frames(int i) { return m_frames.get(i); }
  const odb_Frame& frames(int i) const { return m_frames.constGet(i); }
  odb_Frame& frame(int i) { return frames(i); }
  const odb_Frame& frame(int i) const { return frames(i); }
  // All frames in creation order (which is not always the order of their values).
  odb_SequenceFrame& frames() { return m_frames; }
  const odb_SequenceFrame& frames() const { return m_frames; }
  odb_SequenceFrame& frame() { return m_frames; }
  const odb_SequenceFrame& frame() const { return m_frames; }

  // Creates and stores the load case `name` and returns it; when the step already holds that
  // name, returns the existing one and writes nothing. Throws for an empty name (the empty load
  // case means "no load case") and for an empty step handle. The reference stays valid until
  // the step's load cases change.
  odb_LoadCase& LoadCase(const odb_String& name);
  // The step's load cases by name. The writable form throws for an empty step handle.
  LoadCaseRepository& loadCases();
  const LoadCaseRepository& loadCases() const;

  // Creates and stores a history region at `point` and returns it. An empty name gives the
  // point's name (numbered " (2)", " (3)" ... when the step has a region of that name already),
  // an empty description the point's description. A node or element point without an instance
  // takes the one instance that places its part. Throws "A historyRegion named 'NAME' already
  // exists in step 'STEP'." for a name given and taken, "Key "NAME" not found in repository" for
  // a load case that is not one of loadCases(), and for an empty step handle. The reference
  // stays valid until the step's regions change.
  odb_HistoryRegion& HistoryRegion(const odb_String& name, const odb_String& description,
                                   const odb_HistoryPoint& point,
                                   const odb_LoadCase& loadCase = odb_LoadCase());
  // The step's history regions by name. The writable form throws for an empty step handle.
  HistoryRegionRepository& historyRegions();
  const HistoryRegionRepository& historyRegions() const;

  // The frame whose value is nearest to `value` under `match`. Every frame of the step is
  // looked at, in creation order, and frame values need not increase: a restart or a load case
  // may give a frame a value below the one before it. "Earlier" and "later" below therefore
  // mean created earlier or later, whatever the values. CLOSEST: the nearest value (of two
  // equally near frames, the earlier); BEFORE: the nearest value at or below `value` (of two
  // equally near, the earlier); AFTER: the nearest value at or above `value` (of two equally
  // near, the later); EXACT: the last frame whose single-precision value equals `value`; any
  // other match value: the last frame. In a step of values 0, 1, 2, 1 (frames 0 to 3),
  // CLOSEST and BEFORE give frame 1 for 1.0, AFTER and EXACT give frame 3, and AFTER gives
  // frame 3 for 0.5 too. Throws "Frame not found" when no frame qualifies.
  odb_Frame getFrame(double value, odb_Enum::odb_MatchEnum match) const;
  // As above over the frames of `loadCase` only; the empty load case searches every frame.
  odb_Frame getFrame(const odb_LoadCase& loadCase, double value,
                     odb_Enum::odb_MatchEnum match) const;

  // Reads the frames (and load cases) that the database holds beyond those this step knows,
  // for example committed since by another process; true when there were any. Before frames
  // were first read there is nothing to bring up to date: returns false, and the first read
  // will find them all.
  bool update();

  // True for a default-constructed handle.
  bool isEmpty() const { return !m_data; }

 private:
  friend struct odb_StepAccess;

  explicit odb_Step(std::shared_ptr<odb_StepData> data);
  std::shared_ptr<odb_StepData> m_data;
  odb_SequenceFrame m_frames;
};

#endif
