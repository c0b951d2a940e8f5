// odb_FrameData: what a frame handle shares with its copies; internal to the library.
//
// Built once from the frame's stored record when a frame handle is made (by its step or the
// step's frame sequence) and never changed after, so every copy of the handle can read it freely.
// The store and step id are kept for the outputs that frames will reach through them.
#ifndef ODB_FRAMEDATA_H
#define ODB_FRAMEDATA_H

#include <cstdint>
#include <memory>
#include <utility>

#include "odb_Enum.h"
#include "odb_Frame.h"
#include "odb_LoadCase.h"
#include "odb_String.h"

class store_Database;
struct odb_FrameFields;

struct odb_FrameData {
  int index = -1;
  int incrementNumber = -1;
  float frameValue = 0.0f;
  odb_String description;
  odb_LoadCase loadCase;
  odb_Enum::odb_DomainEnum domain = odb_Enum::TIME;
  std::shared_ptr<store_Database> store;
  std::int64_t stepId = 0;
  std::shared_ptr<odb_FrameFields> fields;  // null for an empty handle
};

// Makes frame handles from the implementation; `data` is never changed afterwards.
struct odb_FrameAccess {
  static odb_Frame Make(std::shared_ptr<const odb_FrameData> data) {
    return odb_Frame(std::move(data));
  }
};

#endif
