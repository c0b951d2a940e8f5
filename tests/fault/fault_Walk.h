// What the damaged-file suite and the fuzz driver share: the valid file they damage, and the walk
// that reads a file completely.
#ifndef TESTS_FAULT_WALK_H
#define TESTS_FAULT_WALK_H

#include <string>

// Writes at `path` a small database with every kind of record: a part of hexahedra, a tetrahedron
// and shells with section points, an instance, node and element sets and a surface, a material, a
// section, two steps, three frames with nodal vectors and integration-point tensors, and a
// history output.
void fault_WriteValidFile(const std::string& path);

// Copies the database at `from` to `to` with pages of `pageSize` bytes, checksums included, so
// that damage to a few kilobytes reaches every kind of page.
void fault_CopyWithPageSize(const std::string& from, const std::string& to, int pageSize);

// Opens the file at `path` read-only, reads everything it holds (header, model, steps, frames,
// field values and bulk data, history) into a text, one line per record, numbers bit for bit,
// and closes it. Throws odb_Exception when the file is refused.
std::string fault_Walk(const std::string& path);

#endif
