// odb_FieldData: what the handles of one field output share; internal.
//
// The definition, where the field is stored (none for orphans), its sub-fields in the order they
// were first written, and the read-side views, rebuilt on first use after a change.
#ifndef ODB_FIELDDATA_H
#define ODB_FIELDDATA_H

#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "odb_AssemblyData.h"
#include "odb_FieldOutput.h"
#include "odb_SubFieldData.h"
#include "store_Database.h"

// Whether fields hold data at `position`: the nodes, and element nodes, integration points,
// centroids and whole elements.
inline bool odb_IsFieldPosition(odb_Enum::odb_ResultPositionEnum position) {
  switch (position) {
    case odb_Enum::NODAL:
    case odb_Enum::ELEMENT_NODAL:
    case odb_Enum::INTEGRATION_POINT:
    case odb_Enum::CENTROID:
    case odb_Enum::WHOLE_ELEMENT:
      return true;
    default:
      return false;
  }
}

struct odb_FieldData {
  odb_String name;
  odb_String description;
  odb_Enum::odb_DataTypeEnum type = odb_Enum::SCALAR;
  odb_SequenceString componentLabels;
  odb_SequenceInvariant validInvariants;
  bool orphan = true;

  // Where a frame's field lives; empty for orphans.
  std::shared_ptr<store_Database> store;
  std::int64_t id = 0, stepId = 0;
  int frameIndex = 0;
  // "field 'S' in frame 3 of step 'LOAD'", for damage found in its data.
  std::string subject;
  int index = 0;
  // The database's assembly, where instances are found.
  odb_AssemblyLookup assembly;

  bool blocksRead = false;
  std::vector<std::shared_ptr<odb_SubFieldData>> subFields;
  // Whether a stored block names no instance (data of the assembly itself): the locations of
  // such a field cannot be listed.
  bool assemblyLevel = false;

  bool viewsBuilt = false;
  odb_SequenceFieldValue values;
  odb_SequenceFieldBulkData bulk;
  odb_SequenceFieldLocation locations;

  // Floats per value (see odb_FieldOutput::width); 0 when not settled by the definition.
  int Width() const;
  // Reads the stored blocks once, grouping them into sub-fields.
  void ReadBlocks();
  // The views, rebuilt when the sub-fields changed.
  void BuildViews();
  void Changed() { viewsBuilt = false; }
  // A new orphan of the same definition and no data.
  std::shared_ptr<odb_FieldData> EmptyCopy() const;
};

// Reaches the data behind field output handles from the implementation.
struct odb_FieldOutputAccess {
  static odb_FieldOutput Make(std::shared_ptr<odb_FieldData> data) {
    return odb_FieldOutput(std::move(data));
  }
  static const std::shared_ptr<odb_FieldData>& Data(const odb_FieldOutput& f) { return f.m_data; }
};

#endif
