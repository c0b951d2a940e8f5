#include "tool_DiffReport.h"

#include <cstdio>
#include <set>

#include "tool_Common.h"

tool_DiffReport::Variable& tool_DiffReport::Find(const std::string& kind, const std::string& name) {
  auto it = m_variables.find(kind + " " + name);
  if (it == m_variables.end()) {
    it = m_variables.emplace(kind + " " + name, Variable()).first;
    it->second.tolerance = m_tolerances.of(name);
  }
  return it->second;
}

std::vector<std::string> tool_DiffReport::common(const std::vector<std::string>& a,
                                                 const std::vector<std::string>& b,
                                                 const std::string& what) {
  std::vector<std::string> both;
  const std::set<std::string> inB(b.begin(), b.end()), inA(a.begin(), a.end());
  for (const std::string& n : a)
    if (inB.count(n))
      both.push_back(n);
    else
      structural(what + " \"" + n + "\" only in A");
  for (const std::string& n : b)
    if (!inA.count(n)) structural(what + " \"" + n + "\" only in B");
  return both;
}

int tool_DiffReport::write(std::ostream& out, bool verbose) const {
  const std::size_t most = 40;
  if (!m_structural.empty()) {
    out << "structure (" << m_structural.size() << " differences):\n";
    for (std::size_t i = 0; i < m_structural.size() && i < most; ++i)
      out << "  " << m_structural[i] << '\n';
    if (m_structural.size() > most) out << "  and " << m_structural.size() - most << " more\n";
  }
  int outsideVariables = 0;
  bool headed = false;
  for (const auto& [key, v] : m_variables) {
    if (v.outside) ++outsideVariables;
    if (!v.hasWorst && !verbose) continue;
    if (!headed) out << "values (largest difference of each variable):\n";
    headed = true;
    out << "  " << key << ": ";
    if (!v.hasWorst) {
      out << "equal, " << v.compared << " values\n";
      continue;
    }
    out << v.outside << " of " << v.compared
        << " values outside " + tool_DescribeTolerance(v.tolerance) << "; largest difference ";
    if (std::isinf(v.worst))
      out << "NaN against a number";
    else
      out << tool_FormatDouble(v.worst);
    if (v.singlePrecision)
      out << " (" << tool_FormatFloat(float(v.a)) << " against " << tool_FormatFloat(float(v.b));
    else
      out << " (" << tool_FormatDouble(v.a) << " against " << tool_FormatDouble(v.b);
    const double scale = std::fmax(std::fabs(v.a), std::fabs(v.b));
    if (std::isfinite(v.worst) && scale > 0) {
      char relative[32];
      std::snprintf(relative, sizeof relative, "%.3g", v.worst / scale);
      out << ", relative " << relative;
    }
    out << ") at " << v.where << '\n';
  }
  const bool differ = !m_structural.empty() || outsideVariables > 0;
  if (differ)
    out << "DIFFERENT: " << m_structural.size() << " differences of structure, " << outsideVariables
        << " of " << m_variables.size() << " variables outside their tolerance\n";
  else
    out << "SAME: " << m_variables.size() << " variables within their tolerance\n";
  return differ ? 1 : 0;
}
