// odb_FrameFields: the field outputs of one frame, shared by every handle on the frame; internal.
//
// Read from the file on first use; creators store the field's definition at once and add it.
#ifndef ODB_FRAMEFIELDS_H
#define ODB_FRAMEFIELDS_H

#include <cstdint>
#include <memory>
#include <string>

#include "odb_AssemblyData.h"
#include "odb_FieldOutput.h"

class store_Database;

struct odb_FrameFields {
  std::shared_ptr<store_Database> store;
  std::int64_t stepId = 0;
  int frameIndex = 0;
  odb_AssemblyLookup assembly;
  // "frame 3 of step 'LOAD'", for damage found in what the frame holds.
  std::string subject;

  bool read = false;
  int count = 0;
  odb_FieldOutputRepository fields;

  // Reads the stored fields once.
  void Read();
  // Stores a new field of this definition and adds it; throws "A field named 'NAME' already
  // exists." for a name held.
  odb_FieldOutput& Add(const odb_String& name, const odb_String& description,
                       odb_Enum::odb_DataTypeEnum type, const odb_SequenceString& componentLabels,
                       const odb_SequenceInvariant& validInvariants);
};

#endif
