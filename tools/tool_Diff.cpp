// The results half of odb diff (steps, frames, fields, history) and the command itself.
#include "tool_Diff.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <vector>

#include "tool_Common.h"
#include "tool_DiffReport.h"
#include "tool_Progress.h"

namespace {

// What tells the blocks of a field apart: instance, position, element type, section point.
std::string BlockKey(const odb_FieldBulkData& block) {
  std::string key = tool_Str(block.instance().name()) + ", " + tool_PositionName(block.position());
  const std::string type = tool_Str(block.baseElementType());
  if (!type.empty()) key += ", " + type;
  const int sp = block.sectionPoint().number();
  if (sp > 0) key += ", section point " + std::to_string(sp);
  return key;
}

// Buffers reused from block to block, so that a diff holds two blocks at a time.
struct Buffers {
  tool_Buffer<int> labelsA, labelsB;
  tool_Buffer<float> dataA, dataB;
};

class ResultsDiff {
 public:
  ResultsDiff(tool_DiffReport& report, tool_Progress& progress)
      : m_report(report), m_progress(progress) {}

  void Step(const odb_Step& a, const odb_Step& b);

 private:
  void Frame(const std::string& where, const odb_Frame& a, const odb_Frame& b);
  void Field(const std::string& where, const odb_FieldOutput& a, const odb_FieldOutput& b);
  void Block(const std::string& where, const std::string& name,
             const std::vector<std::string>& components, const odb_FieldBulkData& a,
             const odb_FieldBulkData& b);
  void History(const std::string& where, const odb_Step& a, const odb_Step& b);

  tool_DiffReport& m_report;
  tool_Progress& m_progress;
  Buffers m_buffers;
};

void ResultsDiff::Step(const odb_Step& a, const odb_Step& b) {
  const std::string where = "step " + tool_Str(a.name());
  if (a.domain() != b.domain())
    m_report.structural(where + ": domain " + tool_DomainName(a.domain()) + " in A, " +
                        tool_DomainName(b.domain()) + " in B");
  const int na = a.frames().size(), nb = b.frames().size(), n = std::min(na, nb);
  if (na != nb)
    m_report.structural(where + ": " + std::to_string(na) + " frames in A, " + std::to_string(nb) +
                        " in B; the first " + std::to_string(n) + " are compared");
  std::vector<float> va, vb;
  for (int f = 0; f < n; ++f) {
    va.push_back(static_cast<float>(a.frames(f).frameValue()));
    vb.push_back(static_cast<float>(b.frames(f).frameValue()));
  }
  m_report.values("frame", "frame_value", va.data(), vb.data(), va.size(),
                  [&](std::size_t i) { return where + " frame " + std::to_string(i); });
  for (int f = 0; f < n; ++f) {
    Frame(where + " frame " + std::to_string(f), a.frames(f), b.frames(f));
    m_progress.done();
  }
  History(where, a, b);
}

void ResultsDiff::Frame(const std::string& where, const odb_Frame& a, const odb_Frame& b) {
  for (const std::string& name :
       m_report.common(tool_FieldNames(a), tool_FieldNames(b), where + ": field"))
    Field(where, a.fieldOutputs()[name.c_str()], b.fieldOutputs()[name.c_str()]);
}

void ResultsDiff::Field(const std::string& where, const odb_FieldOutput& a,
                        const odb_FieldOutput& b) {
  const std::string name = tool_Str(a.name()), owner = where + ", field " + name;
  if (a.type() != b.type()) {
    m_report.structural(owner + ": " + tool_TypeName(a.type()) + " in A, " +
                        tool_TypeName(b.type()) + " in B");
    return;
  }
  const odb_SequenceString ca = a.componentLabels(), cb = b.componentLabels();
  if (!ca.isEqual(cb)) {
    m_report.structural(owner + ": the component labels differ");
    return;
  }
  std::vector<std::string> components;
  for (int c = 0; c < ca.size(); ++c) components.push_back(tool_Str(ca[c]));
  const odb_SequenceFieldBulkData &ba = a.bulkDataBlocks(), &bb = b.bulkDataBlocks();
  std::map<std::string, int> inB;
  for (int i = 0; i < bb.size(); ++i) inB.emplace(BlockKey(bb[i]), i);
  std::set<std::string> matched;
  for (int i = 0; i < ba.size(); ++i) {
    const std::string key = BlockKey(ba[i]);
    const auto it = inB.find(key);
    if (it == inB.end() || !matched.insert(key).second) {
      m_report.structural(owner + ": values at (" + key + ") only in A");
      continue;
    }
    Block(where, name, components, ba[i], bb[it->second]);
  }
  for (const auto& [key, index] : inB)
    if (!matched.count(key)) m_report.structural(owner + ": values at (" + key + ") only in B");
}

void ResultsDiff::Block(const std::string& where, const std::string& name,
                        const std::vector<std::string>& components, const odb_FieldBulkData& a,
                        const odb_FieldBulkData& b) {
  const std::string owner = where + ", field " + name + " at (" + BlockKey(a) + ")";
  if (a.length() != b.length() || a.width() != b.width() ||
      a.valuesPerElement() != b.valuesPerElement()) {
    m_report.structural(owner + ": " + std::to_string(a.length()) + " values of " +
                        std::to_string(a.width()) + " in A, " + std::to_string(b.length()) +
                        " of " + std::to_string(b.width()) + " in B");
    return;
  }
  Buffers& m = m_buffers;
  a.readLabels(m.labelsA.view(static_cast<std::size_t>(a.numberOfLabels())));
  b.readLabels(m.labelsB.view(static_cast<std::size_t>(b.numberOfLabels())));
  if (m.labelsA.size() != m.labelsB.size() ||
      !std::equal(m.labelsA.data(), m.labelsA.data() + m.labelsA.size(), m.labelsB.data())) {
    m_report.structural(owner + ": the " + (a.position() == odb_Enum::NODAL ? "node" : "element") +
                        " labels differ");
    return;
  }
  const std::size_t n = static_cast<std::size_t>(a.length()) * a.width();
  a.readData(m.dataA.view(n));
  b.readData(m.dataB.view(n));
  m_progress.addBytes(2 * (n * sizeof(float) + m.labelsA.size() * sizeof(int)));
  const int width = a.width(), perLabel = a.valuesPerElement();
  const odb_Enum::odb_ResultPositionEnum position = a.position();
  const std::string instance = tool_Str(a.instance().name());
  m_report.values("field", name, m.dataA.data(), m.dataB.data(), n, [&](std::size_t i) {
    const std::size_t row = i / width;
    const int label = m.labelsA[row / perLabel], k = static_cast<int>(row % perLabel);
    std::string text = where + ", instance " + instance;
    if (position == odb_Enum::NODAL) {
      text += ", node " + std::to_string(label);
    } else {
      text += ", element " + std::to_string(label);
      if (position == odb_Enum::INTEGRATION_POINT)
        text += " integration point " + std::to_string(k + 1);
      else if (position == odb_Enum::ELEMENT_NODAL)
        text += " node " + std::to_string(a.instance().getElementFromLabel(label).nodeLabels()[k]);
    }
    const int sp = a.sectionPoint().number();
    if (sp > 0) text += " section point " + std::to_string(sp);
    const std::size_t c = i % width;
    return text + ", " + (c < components.size() ? components[c] : name);
  });
}

void ResultsDiff::History(const std::string& where, const odb_Step& a, const odb_Step& b) {
  std::vector<std::string> ra, rb;
  for (odb_HistoryRegionRepositoryIT it(a.historyRegions()); !it.isDone(); it.next())
    ra.push_back(tool_Str(it.currentKey()));
  for (odb_HistoryRegionRepositoryIT it(b.historyRegions()); !it.isDone(); it.next())
    rb.push_back(tool_Str(it.currentKey()));
  for (const std::string& region : m_report.common(ra, rb, where + ": history region")) {
    const odb_HistoryRegion &ha = a.historyRegions()[region.c_str()],
                            &hb = b.historyRegions()[region.c_str()];
    std::vector<std::string> oa, ob;
    for (odb_HistoryOutputRepositoryIT it(ha.historyOutputs()); !it.isDone(); it.next())
      oa.push_back(tool_Str(it.currentKey()));
    for (odb_HistoryOutputRepositoryIT it(hb.historyOutputs()); !it.isDone(); it.next())
      ob.push_back(tool_Str(it.currentKey()));
    const std::string owner = where + ", history region " + region;
    for (const std::string& name : m_report.common(oa, ob, owner + ": output")) {
      const odb_HistoryData da = ha.historyOutputs()[name.c_str()].data();
      const odb_HistoryData db = hb.historyOutputs()[name.c_str()].data();
      if (da.size() != db.size()) {
        m_report.structural(owner + ", output " + name + ": " + std::to_string(da.size()) +
                            " pairs in A, " + std::to_string(db.size()) + " in B");
        continue;
      }
      const auto at = [&](std::size_t i) {
        return owner + ", output " + name + ", pair " + std::to_string(i) + " (time " +
               tool_FormatDouble(da.time(static_cast<int>(i))) + ")";
      };
      const std::size_t n = static_cast<std::size_t>(da.size());
      m_report.values("history", "history_time", da.times(), db.times(), n, at);
      m_report.values("history", name, da.values(), db.values(), n, at);
      m_progress.addBytes(2 * n * (sizeof(double) + sizeof(float)));
    }
  }
}

}  // namespace

void tool_DiffResults(odb_Odb& a, odb_Odb& b, tool_DiffReport& report, bool quiet) {
  const std::vector<std::string> steps =
      report.common(tool_StepNames(a), tool_StepNames(b), "step");
  int frames = 0;
  for (const std::string& s : steps)
    frames += std::min(a.steps()[s.c_str()].frames().size(), b.steps()[s.c_str()].frames().size());
  tool_Progress progress("diff", "frame", frames, quiet);
  ResultsDiff diff(report, progress);
  for (const std::string& s : steps) diff.Step(a.steps()[s.c_str()], b.steps()[s.c_str()]);
  progress.finish();
}

int tool_Diff(const tool_DiffRequest& request, std::ostream& out) {
  odb_Odb& a = tool_Open(request.a);
  // A file compared with itself is opened once: the library keeps one database per path.
  std::error_code error;
  odb_Odb& b = std::filesystem::equivalent(request.a, request.b, error) ? a : tool_Open(request.b);
  tool_DiffReport report(request.tolerances);
  tool_DiffModel(a, b, report);
  tool_DiffResults(a, b, report, request.quiet);
  out << "A: " << tool_Str(a.path()) << "\nB: " << tool_Str(b.path()) << '\n';
  closeOdb(a);
  if (&a != &b) closeOdb(b);
  return report.write(out, request.verbose);
}
