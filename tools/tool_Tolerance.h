// Tolerances of odb diff, per variable, and the rule that says whether two values agree.
//
// Two values agree when they are equal (infinities of one sign included), when both are NaN, or
// when their difference is within the absolute tolerance or within the relative tolerance times
// the larger magnitude of the two: |a - b| <= abs, or |a - b| <= rel * max(|a|, |b|). A NaN
// against a number, and an infinity against anything but itself, never agree. Zero tolerances ask
// for equality.
//
// A variable is a field or history output name (S, U, RF2), or one of the model's quantities:
// "coordinates" (node coordinates), "frame_value" and "history_time". Its tolerance is the first
// found of: given for it on the command line, given for it in the tolerance file, the command
// line's default (--abs, --rel), the file's default ("*"), and zero.
//
// The tolerance file holds one variable a line: its name, the absolute and the relative
// tolerance, separated by blanks; "*" names the default; "#" starts a comment.
//
//   # variable  abs     rel
//   *           0       1e-6
//   S           1e-3    1e-5
#ifndef TOOL_TOLERANCE_H
#define TOOL_TOLERANCE_H

#include <cmath>
#include <istream>
#include <map>
#include <string>

struct tool_Tolerance {
  double absolute = 0, relative = 0;
};

// Whether a and b agree under `t` (see above). Inline: diff calls it for every value.
// Floats (field and history values) convert to double exactly.
inline bool tool_Agree(double a, double b, const tool_Tolerance& t) {
  if (a == b) return true;
  if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
  if (std::isinf(a) || std::isinf(b)) return false;  // else inf - x would be within rel * inf
  const double d = std::fabs(a - b);
  return d <= t.absolute || d <= t.relative * std::fmax(std::fabs(a), std::fabs(b));
}

class tool_Tolerances {
 public:
  // Reads a tolerance file; throws tool_Error "FILE:LINE: ..." for a line it cannot take (a
  // missing or extra column, a number that is not one or is negative, a variable given twice).
  void readFile(const std::string& path);
  void read(std::istream& in, const std::string& name);
  // Takes "NAME=ABS,REL" from the command line; throws tool_Error for another form.
  void parseOption(const std::string& text);
  // The command line's default for variables named nowhere.
  void setDefault(const tool_Tolerance& t) {
    m_cliDefault = t;
    m_hasCliDefault = true;
  }
  void setDefaultAbsolute(double a);
  void setDefaultRelative(double r);

  // The tolerance of `variable`, by the order above.
  tool_Tolerance of(const std::string& variable) const;

 private:
  std::map<std::string, tool_Tolerance> m_cli, m_file;
  tool_Tolerance m_cliDefault, m_fileDefault;
  bool m_hasCliDefault = false, m_hasFileDefault = false;
};

// The text of a tolerance, as the report prints it: "abs 0.001, rel 1e-05", or "exact".
std::string tool_DescribeTolerance(const tool_Tolerance& t);

#endif
