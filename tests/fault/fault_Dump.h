// fault_Dump: what a database file holds, as text, the way a program that opens it next would
// find it.
//
// The file and its journal are copied aside and the copy is opened through the unix VFS (never
// the fault VFS), so a hot journal left by a failed save is rolled back in the copy only, as the
// next open of the file would, and the writer that still has the file open is left alone. Every
// row of every table becomes one line, floats in hexadecimal and blobs in hex, so two dumps are
// equal only when the files hold the same values bit for bit; lines are sorted, so the order in
// which pages happen to hold rows does not count.
#ifndef TESTS_FAULT_DUMP_H
#define TESTS_FAULT_DUMP_H

#include <ostream>
#include <string>
#include <vector>

struct fault_Dump {
  std::vector<std::string> lines;

  // The dump of the file at `path` (and of `path`-journal beside it). A file that cannot be
  // opened or read gives one line that says why; the integrity check's answer is a line too.
  static fault_Dump Of(const std::string& path);

  // The same dump without the file's creation stamp, which tells two files apart even when they
  // hold the same analysis.
  fault_Dump WithoutStamp() const;

  // Lines of `before` that this dump lacks, and lines it has that `before` lacks.
  std::vector<std::string> Missing(const fault_Dump& before) const;
  std::vector<std::string> Extra(const fault_Dump& before) const;

  bool operator==(const fault_Dump& other) const { return lines == other.lines; }
  bool operator!=(const fault_Dump& other) const { return lines != other.lines; }
};

// How a dump appears in a failed expectation: its size; the difference is printed beside it.
inline void PrintTo(const fault_Dump& dump, std::ostream* out) {
  *out << dump.lines.size() << " lines";
}

// The first few lines of a difference, for a failure message.
std::string fault_Lines(const std::vector<std::string>& lines);

#endif
