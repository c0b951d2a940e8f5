#include "tool_Tolerance.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <vector>

#include "tool_Common.h"

namespace {

// A tolerance from its text: a finite number, zero or more; false otherwise.
bool ParseTolerance(const std::string& text, double* value) {
  if (text.empty()) return false;
  char* end = nullptr;
  errno = 0;
  const double v = std::strtod(text.c_str(), &end);
  if (*end != '\0' || errno == ERANGE || !std::isfinite(v) || v < 0) return false;
  *value = v;
  return true;
}

}  // namespace

void tool_Tolerances::readFile(const std::string& path) {
  std::ifstream in(path);
  if (!in) throw tool_Error("cannot read the tolerance file \"" + path + "\"");
  read(in, path);
}

void tool_Tolerances::read(std::istream& in, const std::string& name) {
  std::string line;
  for (int number = 1; std::getline(in, line); ++number) {
    const std::size_t hash = line.find('#');
    if (hash != std::string::npos) line.erase(hash);
    std::istringstream words(line);
    std::vector<std::string> columns;
    for (std::string w; words >> w;) columns.push_back(w);
    if (columns.empty()) continue;
    const std::string where = name + ":" + std::to_string(number) + ": ";
    if (columns.size() != 3)
      throw tool_Error(where + "expected a variable, an absolute and a relative tolerance; found " +
                       std::to_string(columns.size()) + " columns");
    tool_Tolerance t;
    if (!ParseTolerance(columns[1], &t.absolute))
      throw tool_Error(where + "the absolute tolerance \"" + columns[1] +
                       "\" is not a number of zero or more");
    if (!ParseTolerance(columns[2], &t.relative))
      throw tool_Error(where + "the relative tolerance \"" + columns[2] +
                       "\" is not a number of zero or more");
    if (columns[0] == "*") {
      if (m_hasFileDefault) throw tool_Error(where + "the default \"*\" is given twice");
      m_fileDefault = t;
      m_hasFileDefault = true;
    } else if (!m_file.emplace(columns[0], t).second) {
      throw tool_Error(where + "the variable \"" + columns[0] + "\" is given twice");
    }
  }
}

void tool_Tolerances::parseOption(const std::string& text) {
  const std::size_t equals = text.find('=');
  const std::size_t comma = text.find(',', equals == std::string::npos ? 0 : equals);
  tool_Tolerance t;
  if (equals == std::string::npos || equals == 0 || comma == std::string::npos ||
      !ParseTolerance(text.substr(equals + 1, comma - equals - 1), &t.absolute) ||
      !ParseTolerance(text.substr(comma + 1), &t.relative))
    throw tool_Error("--tol \"" + text +
                     "\": expected NAME=ABS,REL with two numbers of zero or more, as S=1e-3,1e-5");
  m_cli[text.substr(0, equals)] = t;
}

void tool_Tolerances::setDefaultAbsolute(double a) {
  if (!m_hasCliDefault) m_cliDefault = m_fileDefault;
  m_cliDefault.absolute = a;
  m_hasCliDefault = true;
}

void tool_Tolerances::setDefaultRelative(double r) {
  if (!m_hasCliDefault) m_cliDefault = m_fileDefault;
  m_cliDefault.relative = r;
  m_hasCliDefault = true;
}

tool_Tolerance tool_Tolerances::of(const std::string& variable) const {
  auto it = m_cli.find(variable);
  if (it != m_cli.end()) return it->second;
  it = m_file.find(variable);
  if (it != m_file.end()) return it->second;
  if (m_hasCliDefault) return m_cliDefault;
  if (m_hasFileDefault) return m_fileDefault;
  return tool_Tolerance();
}

std::string tool_DescribeTolerance(const tool_Tolerance& t) {
  if (t.absolute == 0 && t.relative == 0) return "exact";
  return "abs " + tool_FormatDouble(t.absolute) + ", rel " + tool_FormatDouble(t.relative);
}
