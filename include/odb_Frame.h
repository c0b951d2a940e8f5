// odb_Frame: one frame of a step (one stored increment, mode or load case), as a handle.
//
// A frame is written once, by its step's creators (odb_Step::Frame), and never changes after;
// the handle holds a shared, read-only copy of its record, so copying a frame costs O(1) and a
// frame stays valid after its step handle is gone. The database itself (not the handle) owns the
// stored frame. A default-constructed frame is an empty handle: it belongs to no step and its
// accessors give the neutral values noted below.
//
// What the numbers mean depends on the step's domain:
//   TIME, ARC_LENGTH   frameId = the increment number given at creation; mode() = -1 (none);
//                      frequency() = 0.
//   FREQUENCY, MODAL   the increment number given at creation is the mode number: frameId and
//                      mode() both report it; frequency() = frameValue().
// Cyclic symmetry is not written by this library: every frame reports cyclicModeNumber() -1,
// isImaginary() false and no associated frame.
//
// One thread at a time for a frame and its copies.
#ifndef ODB_FRAME_H
#define ODB_FRAME_H

#include "odb_Enum.h"
#include "odb_Export.h"
#include "odb_FieldOutput.h"
#include "odb_LoadCase.h"
#include "odb_String.h"
#include "uti_LabelMap.h"
#include "uti_SharedPtr.h"

// The messages of frames.
enum odb_FrameEnm : int {
  odb_Frame_FIELD_EXISTS = 0  // %s: the field output's name
};

template <>
struct QTVODB_EXPORT uti_LabelTable<odb_FrameEnm, 1> {
  static const uti_LabelRow<odb_FrameEnm> rows[];
};

struct odb_FrameData;

class QTVODB_EXPORT odb_Frame {
 public:
  // An empty handle.
  odb_Frame() = default;

  // The index of the frame in its step, 0 for the first, in creation order; -1 when empty.
  int frameIndex() const;
  // The identifier within the step (see the table above); -1 when empty.
  int frameId() const;
  // The increment (or mode) number given at creation; -1 when empty.
  int incrementNumber() const;
  // The value as stored, in single precision: a frame created with 0.1 reports double(0.1f).
  double frameValue() const;
  // The mode number for FREQUENCY and MODAL steps, -1 otherwise.
  int mode() const;
  // The frame value for FREQUENCY and MODAL steps, 0 otherwise.
  double frequency() const;
  odb_String description() const;
  // The domain of the frame's step (TIME when empty).
  odb_Enum::odb_DomainEnum domain() const;
  // The frame's load case; the empty load case when it has none.
  const odb_LoadCase& loadCase() const;

  // -1: no cyclic-symmetry mode.
  int cyclicModeNumber() const { return -1; }
  bool isImaginary() const { return false; }
  bool hasAssociatedFrame() const { return false; }
  // The other half of a cyclic-symmetry pair; since no frame has one, an empty frame.
  odb_Frame associatedFrame() const { return odb_Frame(); }

  // Picks up what other writers added to this frame since the handle was made and returns true
  // when there was any. A frame's own record never changes once written and a frame holds
  // nothing else yet, so this returns false.
  bool update() { return false; }

  // The frame's field outputs by name, read from the file on first use and shared by every
  // handle on this frame. Throws for an empty handle.
  odb_FieldOutputRepository& fieldOutputs() const;
  odb_FieldOutputRepository& fieldOutput() const { return fieldOutputs(); }

  // Creates and stores a field output and returns it. Without component labels a tensor gets
  // its name followed by each component's suffix (S11, S22, S33, S12, S13, S23); without valid
  // invariants, the invariants its type offers. Throws "A field named 'NAME' already exists."
  // for a name the frame holds. Any data type is accepted here; addData refuses those it cannot
  // write. The reference stays valid until the frame's fields change.
  odb_FieldOutput& FieldOutput(
      const odb_String& name, const odb_String& description, odb_Enum::odb_DataTypeEnum type,
      const odb_SequenceString& componentLabels = odb_SequenceString(),
      const odb_SequenceInvariant& validInvariants = odb_SequenceInvariant());
  // A new field of this frame with `source`'s definition and a copy of its data.
  odb_FieldOutput& FieldOutput(const odb_FieldOutput& source, const odb_String& name,
                               const odb_String& description);
  // A VECTOR field of `dimension` components labelled NAME1, NAME2, ...
  odb_FieldOutput& VectorOutput(const odb_String& name, const odb_String& description,
                                int dimension);
  // A MATRIX field of rows x columns components labelled NAME11, NAME12, ... row by row.
  odb_FieldOutput& MatrixOutput(const odb_String& name, const odb_String& description, int rows,
                                int columns);

  // True for a default-constructed handle.
  bool isEmpty() const { return !m_data; }

 private:
  friend struct odb_FrameAccess;

  explicit odb_Frame(std::shared_ptr<const odb_FrameData> data);
  const odb_FrameData& Data() const;

  std::shared_ptr<const odb_FrameData> m_data;
};

#endif
