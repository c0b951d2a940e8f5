// odb_SequenceFrame: the frames of one step, in creation order, as a read-only view.
//
// The view holds a share of its step's data, not the frames themselves: frames are read from
// the database, all at once, the first time any of them (or their number) is asked for, and a
// frame handle is built from its record on the first get of that frame. The step keeps every
// handle built, so the reference that get, constGet and operator[] return stays valid, and
// refers to the same frame, for as long as the step lives (any handle or view of it): later gets
// of other frames do not change it. A handle costs a few hundred bytes. Copying a view costs
// O(1), and every copy sees the frames the step adds later. Indices are 0-based. One thread at a
// time for a view, its step and their copies.
#ifndef ODB_SEQUENCEFRAME_H
#define ODB_SEQUENCEFRAME_H

#include "odb_Export.h"
#include "odb_Frame.h"
#include "uti_SharedPtr.h"

struct odb_StepData;

class QTVODB_EXPORT odb_SequenceFrame {
 public:
  // A view of no frames.
  odb_SequenceFrame() = default;

  // The number of frames of the step, as last read from the database (see odb_Step::update).
  int size() const;
  bool isEmpty() const { return size() == 0; }

  // Frame i; throws "Incorrect index for frame." for i < 0 or i >= size().
  odb_Frame& get(int i);
  const odb_Frame& constGet(int i) const;
  const odb_Frame& operator[](int i) const { return constGet(i); }

 private:
  friend struct odb_SequenceFrameAccess;

  explicit odb_SequenceFrame(std::shared_ptr<odb_StepData> step);
  std::shared_ptr<odb_StepData> m_step;
};

#endif
