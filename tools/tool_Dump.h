// odb dump: the values of one field of one frame as CSV, one row per value: the instance, the
// position, the element and node labels, the integration point, the section point, then one
// column per component. Blocks are read one at a time into buffers reused from block to block,
// and rows are written as they are made, so memory stays at one block whatever the file's size.
#ifndef TOOL_DUMP_H
#define TOOL_DUMP_H

#include <cstdio>
#include <string>

struct tool_DumpRequest {
  std::string path, step, field;
  int frame = 0;         // 0 the first, -1 the last
  std::string position;  // empty: every position
  std::string instance;  // empty: every instance
  bool quiet = false;
};

// Writes the CSV to `out`; throws tool_Error for an unknown step, frame, field, position or
// instance, naming what exists.
void tool_Dump(const tool_DumpRequest& request, std::FILE* out);

#endif
