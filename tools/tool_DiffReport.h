// What odb diff found: the differences of structure, as lines, and per variable the count of
// values compared, those outside their tolerance, and the largest difference with where it is.
#ifndef TOOL_DIFFREPORT_H
#define TOOL_DIFFREPORT_H

#include <cmath>
#include <cstdint>
#include <cstring>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "tool_Tolerance.h"

class tool_DiffReport {
 public:
  explicit tool_DiffReport(const tool_Tolerances& tolerances) : m_tolerances(tolerances) {}

  // A difference of structure: something one file has and the other lacks, or counts, labels,
  // types or connectivity that differ. Each makes the files differ.
  void structural(const std::string& text) { m_structural.push_back(text); }
  // The names both lists hold, in A's order; each name only one holds is a difference of
  // structure ("WHAT "NAME" only in A").
  std::vector<std::string> common(const std::vector<std::string>& a,
                                  const std::vector<std::string>& b, const std::string& what);
  std::size_t structuralCount() const { return m_structural.size(); }

  // Compares n values of `variable` ("field S", "history U2", "model coordinates"; the tolerance
  // is the one of the name after the kind). where(i) describes value i; it is called only for a
  // value that becomes the variable's largest difference.
  // T is float (values, coordinates) or double (history times).
  template <class T, class Where>
  void values(const std::string& kind, const std::string& name, const T* a, const T* b,
              std::size_t n, Where where);

  // Writes the report; returns 0 when the files agree, 1 when they differ.
  int write(std::ostream& out, bool verbose) const;

 private:
  struct Variable {
    tool_Tolerance tolerance;
    std::uint64_t compared = 0, outside = 0;
    // The largest difference: outside values before those within, then by size (NaN against a
    // number counts as infinite).
    bool hasWorst = false, worstOutside = false;
    double worst = 0;
    double a = 0, b = 0;
    bool singlePrecision = true;  // how a and b are printed
    std::string where;
  };
  Variable& Find(const std::string& kind, const std::string& name);

  const tool_Tolerances& m_tolerances;
  std::vector<std::string> m_structural;
  std::map<std::string, Variable> m_variables;
};

template <class T, class Where>
void tool_DiffReport::values(const std::string& kind, const std::string& name, const T* a,
                             const T* b, std::size_t n, Where where) {
  Variable& v = Find(kind, name);
  v.singlePrecision = sizeof(T) == sizeof(float);
  v.compared += n;
  // Files compared with their copies are the common case: the same bytes are the same values.
  if (n == 0 || std::memcmp(a, b, n * sizeof(T)) == 0) return;
  const tool_Tolerance t = v.tolerance;
  // The block's own largest difference first, so that where() runs once per block at most.
  bool found = false, foundOutside = false;
  double found_d = 0;
  std::size_t at = 0;
  std::uint64_t outside = 0;
  for (std::size_t i = 0; i < n; ++i) {
    if (a[i] == b[i]) continue;
    const bool agree = tool_Agree(a[i], b[i], t);
    if (agree && std::isnan(a[i])) continue;  // both NaN
    const double d =
        std::isnan(a[i]) || std::isnan(b[i]) ? HUGE_VAL : std::fabs(double(a[i]) - double(b[i]));
    outside += !agree;
    if (!found || (!agree && !foundOutside) || (!agree == foundOutside && d > found_d)) {
      found = true;
      foundOutside = !agree;
      found_d = d;
      at = i;
    }
  }
  v.outside += outside;
  if (!found) return;
  if (!v.hasWorst || (foundOutside && !v.worstOutside) ||
      (foundOutside == v.worstOutside && found_d > v.worst)) {
    v.hasWorst = true;
    v.worstOutside = foundOutside;
    v.worst = found_d;
    v.a = a[at];
    v.b = b[at];
    v.where = where(at);
  }
}

class odb_Odb;

// The two halves of a comparison: the model (parts, instances, sets), and the steps with their
// frames, fields and history. `quiet` turns the progress line off.
void tool_DiffModel(odb_Odb& a, odb_Odb& b, tool_DiffReport& report);
void tool_DiffResults(odb_Odb& a, odb_Odb& b, tool_DiffReport& report, bool quiet);

#endif
