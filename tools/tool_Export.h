// odb export: the mesh of every instance, placed, and per frame the field values, as VTK files
// that ParaView opens: one .vtu per frame and a .pvd time series over them, in a folder.
//
// Nodal fields become point data. Element fields become cell data: the values at an element's
// integration points (or nodes) averaged, its centroid or whole-element value as it is. Values
// at integration points are also extrapolated to the element's nodes where the element type
// allows it (tool_Extrapolation.h), and averaged at each node over the elements around it, as
// point data named "NAME (nodal average)"; element-nodal values are averaged the same way. A field
// at a section point gets " SP n" after its name. Points and cells without a value hold NaN.
// Elements that VTK has no cell for are left out, and said once per type.
//
// Reading, computing and writing overlap: the calling thread reads frame after frame through the
// library, a second thread computes the arrays of the frame read before (tool_ExportFrame.h),
// a third writes the file of the one before that. Memory holds the mesh and two frames' values
// and arrays, whatever the number of frames.
#ifndef TOOL_EXPORT_H
#define TOOL_EXPORT_H

#include <ostream>
#include <string>

struct tool_ExportRequest {
  std::string path, format = "vtu", folder;
  bool quiet = false;
};

// Writes the files; returns the path of the .pvd. Notes on left-out elements go to `notes`.
// Throws tool_Error for an unknown format, a file that cannot be read, or a folder that cannot
// be written.
std::string tool_Export(const tool_ExportRequest& request, std::ostream& notes);

#endif
