// store_Field: the field outputs of frames as the file stores them.
//
// A field output is one row (name, description, data type, component labels, valid invariants)
// keyed by its step and frame. Its data are blocks: one per addition of data to one element type
// (or the nodes) at one position and section point of one part instance. A block keeps the labels
// handed in (element or node labels, `perLabel` locations each) and, per location, `width` floats
// of data, optionally as many conjugate floats and `orientationWidth` floats of orientation; each
// of these arrays is a chunked blob written once. Blocks of the same sub-field (same position,
// instance, element type, category and section point) are joined again by the reader.
//
// Free functions over an open store_Database; they write inside its open transaction. One thread
// at a time, as for the database.
#ifndef STORE_FIELD_H
#define STORE_FIELD_H

#include <cstdint>
#include <string>
#include <vector>

class store_Database;

struct store_FieldRecord {
  std::int64_t id = 0;  // assigned by the store
  int index = 0;        // position among the frame's fields
  std::string name;
  std::string description;
  int type = 0;
  std::vector<std::string> componentLabels;
  std::vector<int> invariants;
};

struct store_FieldBlockRecord {
  int position = 0;
  std::string instance;
  std::string elementType;  // empty for nodal data
  std::string sectionCategory;
  int sectionPoint = -1;  // -1: none
  std::string sectionPointDescription;
  std::string setName;
  int count = 0;  // labels
  int perLabel = 1;
  int width = 0;
  int orientationWidth = 0;
  std::int64_t labels = 0, data = 0;
  std::int64_t conjugate = 0, orientation = 0;  // 0: none
};

// The fields of one frame, in creation order.
std::vector<store_FieldRecord> store_Fields(store_Database& db, std::int64_t stepId,
                                            int frameIndex);
// Stores a new field of a frame; sets record.id.
void store_AddField(store_Database& db, std::int64_t stepId, int frameIndex,
                    store_FieldRecord& record);
// The blocks of a field in the order written.
std::vector<store_FieldBlockRecord> store_FieldBlocks(store_Database& db, std::int64_t fieldId);
void store_AddFieldBlock(store_Database& db, std::int64_t fieldId, const store_FieldBlockRecord& b);
// The number of blocks that all fields of a step hold.
int store_StepFieldBlockCount(store_Database& db, std::int64_t stepId);

#endif
