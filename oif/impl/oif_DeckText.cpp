#include "oif_DeckText.h"

#include <utility>

#include "cow_Assert.h"
#include "odb_Enum.h"

namespace {

const char* const kSource = "oif/impl/oif_DeckText";
constexpr std::size_t kLabelsPerLine = 16;

}  // namespace

std::string oif_Name(const std::string& name) {
  if (name.find_first_of(" ',") == std::string::npos) return name;
  return "\"" + name + "\"";
}

oif_Generate oif_GenerateTest(const int* labels, std::size_t n) {
  oif_Generate g;
  if (n < 3) return g;
  // The difference in 64 bits: labels far apart must not overflow into a false match.
  const long long step = static_cast<long long>(labels[1]) - labels[0];
  for (std::size_t i = 2; i < n; ++i)
    if (static_cast<long long>(labels[i]) - labels[i - 1] != step) return g;
  if (step != static_cast<int>(step)) return g;
  g.generate = true;
  g.first = labels[0];
  g.last = labels[n - 1];
  g.increment = static_cast<int>(step);
  return g;
}

void oif_WriteLabels(utl_Stream& out, const int* labels, std::size_t n, const oif_Generate& g) {
  if (g.generate) {
    out << g.first << ", " << g.last << ", " << g.increment;
    out.LineBreak();
    return;
  }
  for (std::size_t i = 0; i < n; ++i) {
    const std::size_t column = i % kLabelsPerLine;
    if (column != 0) out << ",";
    out << labels[i];
    const bool lineFull = column == kLabelsPerLine - 1;
    if (i + 1 == n) {
      // A lone label on the last line is followed by ", ".
      if (column == 0) out << ", ";
      out.LineBreak();
    } else if (lineFull) {
      out.LineBreak();
    }
  }
}

oif_SetItem::oif_SetItem(Kind kind, std::string name, std::string instance, bool internal,
                         std::shared_ptr<const std::vector<int>> labels)
    : m_kind(kind),
      m_name(std::move(name)),
      m_instance(std::move(instance)),
      m_internal(internal),
      m_labels(std::move(labels)) {}

void oif_SetItem::Write(utl_Stream& out) const {
  const int* labels = m_labels ? m_labels->data() : nullptr;
  const std::size_t n = m_labels ? m_labels->size() : 0;
  const oif_Generate g = oif_GenerateTest(labels, n);
  out << (m_kind == NODE ? "*Nset, nset=" : "*Elset, elset=") << oif_Name(m_name);
  if (!m_instance.empty()) out << ", instance=" << oif_Name(m_instance);
  if (m_internal) out << ", internal";
  if (g.generate) out << ", generate";
  out.LineBreak();
  oif_WriteLabels(out, labels, n, g);
}

std::string oif_DatumParameter(int datumType, bool typeForm) {
  switch (datumType) {
    case odb_Enum::RECTANGULAR:
      return "";
    case odb_Enum::CYLINDRICAL:
      return typeForm ? "type=C" : "system=CYLINDRICAL";
    case odb_Enum::SPHERICAL:
      return typeForm ? "type=S" : "system=SPHERICAL";
    default:
      cow_AssertFailed("Wrong datum type during input generation", kSource, 90);
      return "";
  }
}
