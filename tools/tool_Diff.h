// odb diff: compares two result databases the way a regression suite does: the model (parts,
// instances, labels, coordinates, connectivity, element types, sets), the steps and their
// frames, and every field and history output value, with tolerances per variable
// (tool_Tolerance.h). It reports each difference of structure (a step, frame, field, block or
// set that only one file has, counts or labels that differ) and, per variable, the largest
// difference and where it occurs.
#ifndef TOOL_DIFF_H
#define TOOL_DIFF_H

#include <ostream>
#include <string>

#include "tool_Tolerance.h"

struct tool_DiffRequest {
  std::string a, b;
  tool_Tolerances tolerances;
  bool quiet = false;    // no progress line
  bool verbose = false;  // list the variables that agree too
};

// Writes the report to `out` and returns 0 when the files agree within the tolerances, 1 when
// they differ; throws tool_Error when a file cannot be read (exit status 2).
int tool_Diff(const tool_DiffRequest& request, std::ostream& out);

#endif
