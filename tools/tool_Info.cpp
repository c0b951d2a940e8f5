#include "tool_Info.h"

#include <cstdint>
#include <filesystem>
#include <iomanip>
#include <sstream>
#include <vector>

#include "tool_Common.h"
#include "tool_Json.h"

namespace {

struct TypeCount {
  std::string type;
  std::int64_t count;
};

struct SetNames {
  std::vector<std::string> nodeSets, elementSets, surfaces;
  bool Empty() const { return nodeSets.empty() && elementSets.empty() && surfaces.empty(); }
};

struct PartInfo {
  std::string name, dimension;
  std::int64_t nodes = 0, elements = 0;
  std::vector<TypeCount> types;  // in order of first appearance
  SetNames sets;
};

struct InstanceInfo {
  std::string name, part;
  std::int64_t nodes = 0, elements = 0;
  SetNames sets;
};

struct FieldInfo {
  std::string name, description, type;
  std::vector<std::string> positions, components;
  std::int64_t values = 0;
  bool operator==(const FieldInfo& o) const {
    return name == o.name && type == o.type && positions == o.positions &&
           components == o.components && values == o.values;
  }
};

struct FrameInfo {
  int index = 0, increment = 0;
  float value = 0;  // frame values are kept in single precision
  std::string description;
  std::vector<FieldInfo> fields;
};

struct HistoryInfo {
  std::string region, position;
  std::vector<std::string> outputs;
};

struct StepInfo {
  std::string name, description, domain, procedure;
  double timePeriod = 0, totalTime = 0;
  std::vector<FrameInfo> frames;
  std::vector<HistoryInfo> history;
};

struct Report {
  std::string path, name, title, description;
  std::uintmax_t bytes = 0;
  std::vector<PartInfo> parts;
  std::vector<InstanceInfo> instances;
  SetNames assemblySets;
  std::vector<StepInfo> steps;
};

// The names of the sets a user made; the library's own (field and history bookkeeping) are left
// out.
std::vector<std::string> UserSets(odb_SetRepository& sets) {
  std::vector<std::string> names;
  for (odb_SetRepositoryIT it(sets); !it.isDone(); it.next())
    if (!it.currentValue().isInternal()) names.push_back(tool_Str(it.currentKey()));
  return names;
}

SetNames SetsOf(odb_SetRepository& nodeSets, odb_SetRepository& elementSets,
                odb_SetRepository& surfaces) {
  return SetNames{UserSets(nodeSets), UserSets(elementSets), UserSets(surfaces)};
}

PartInfo PartOf(odb_DiscretePart& part) {
  PartInfo info;
  info.name = tool_Str(part.name());
  info.dimension = tool_DimensionName(part.embeddedSpace());
  const odb_SequenceNode& nodes = part.nodes();
  const odb_SequenceElement& elements = part.elements();
  info.nodes = nodes.size();
  info.elements = elements.size();
  // Elements of one type usually come in runs: compare with the run's type before searching.
  odb_String current;
  std::size_t slot = 0;
  for (int i = 0; i < elements.size(); ++i) {
    const odb_String type = elements.element(i).type();
    if (info.types.empty() || type != current) {
      const std::string name = tool_Str(type);
      for (slot = 0; slot < info.types.size() && info.types[slot].type != name; ++slot) {
      }
      if (slot == info.types.size()) info.types.push_back({name, 0});
      current = type;
    }
    ++info.types[slot].count;
  }
  info.sets = SetsOf(part.nodeSets(), part.elementSets(), part.surfaces());
  return info;
}

FieldInfo FieldOf(const odb_FieldOutput& field) {
  FieldInfo info;
  info.name = tool_Str(field.name());
  info.description = tool_Str(field.description());
  info.type = tool_TypeName(field.type());
  const odb_SequenceString labels = field.componentLabels();
  for (int i = 0; i < labels.size(); ++i) info.components.push_back(tool_Str(labels[i]));
  const odb_SequenceFieldBulkData& blocks = field.bulkDataBlocks();
  for (int b = 0; b < blocks.size(); ++b) {
    const std::string position = tool_PositionName(blocks[b].position());
    bool known = false;
    for (const std::string& p : info.positions) known = known || p == position;
    if (!known) info.positions.push_back(position);
    info.values += blocks[b].length();
  }
  return info;
}

StepInfo StepOf(const odb_Step& step) {
  StepInfo info;
  info.name = tool_Str(step.name());
  info.description = tool_Str(step.description());
  info.domain = tool_DomainName(step.domain());
  info.procedure = tool_Str(step.procedure());
  info.timePeriod = step.timePeriod();
  info.totalTime = step.totalTime();
  const odb_SequenceFrame& frames = step.frames();
  for (int f = 0; f < frames.size(); ++f) {
    const odb_Frame& frame = frames[f];
    FrameInfo fi;
    fi.index = frame.frameIndex();
    fi.increment = frame.incrementNumber();
    fi.value = static_cast<float>(frame.frameValue());
    fi.description = tool_Str(frame.description());
    for (odb_FieldOutputRepositoryIT it(frame.fieldOutputs()); !it.isDone(); it.next())
      fi.fields.push_back(FieldOf(it.currentValue()));
    info.frames.push_back(fi);
  }
  for (odb_HistoryRegionRepositoryIT it(step.historyRegions()); !it.isDone(); it.next()) {
    HistoryInfo hi;
    hi.region = tool_Str(it.currentKey());
    hi.position = tool_PositionName(it.currentValue().position());
    for (odb_HistoryOutputRepositoryIT o(it.currentValue().historyOutputs()); !o.isDone(); o.next())
      hi.outputs.push_back(tool_Str(o.currentKey()));
    info.history.push_back(hi);
  }
  return info;
}

Report Gather(const std::string& path) {
  odb_Odb& odb = tool_Open(path);
  Report r;
  r.path = tool_Str(odb.path());
  r.bytes = std::filesystem::file_size(path);
  r.name = tool_Str(odb.name());
  r.title = tool_Str(odb.analysisTitle());
  r.description = tool_Str(odb.description());
  for (odb_DiscretePartRepositoryIT it(odb.parts()); !it.isDone(); it.next()) {
    odb_DiscretePart part = it.currentValue();
    r.parts.push_back(PartOf(part));
  }
  odb_Assembly& assembly = odb.rootAssembly();
  for (odb_InstanceRepositoryIT it(assembly.instances()); !it.isDone(); it.next()) {
    odb_Instance instance = it.currentValue();
    InstanceInfo ii;
    ii.name = tool_Str(instance.name());
    ii.part = tool_Str(instance.partName());
    ii.nodes = instance.nodes().size();
    ii.elements = instance.elements().size();
    ii.sets = SetsOf(instance.nodeSets(), instance.elementSets(), instance.surfaces());
    r.instances.push_back(ii);
  }
  r.assemblySets = SetsOf(assembly.nodeSets(), assembly.elementSets(), assembly.surfaces());
  for (odb_StepRepositoryIT it(odb.steps()); !it.isDone(); it.next())
    r.steps.push_back(StepOf(it.currentValue()));
  closeOdb(odb);
  return r;
}

// --- JSON ---

void JsonSets(tool_Json& j, const SetNames& s) {
  j.beginObject("sets");
  j.strings("nodeSets", s.nodeSets);
  j.strings("elementSets", s.elementSets);
  j.strings("surfaces", s.surfaces);
  j.endObject();
}

void WriteJson(const Report& r, std::ostream& out) {
  tool_Json j(out);
  j.beginObject();
  j.field("path", r.path);
  j.field("bytes", static_cast<std::int64_t>(r.bytes));
  // The library opens files of its own schema only (others are refused or upgraded first).
  j.field("schemaVersion", QTVODB_SCHEMA_VERSION);
  j.field("name", r.name);
  j.field("title", r.title);
  j.field("description", r.description);
  j.beginArray("parts");
  for (const PartInfo& p : r.parts) {
    j.beginObject();
    j.field("name", p.name);
    j.field("dimension", p.dimension);
    j.field("nodes", p.nodes);
    j.field("elements", p.elements);
    j.beginObject("elementTypes");
    for (const TypeCount& t : p.types) j.field(t.type, t.count);
    j.endObject();
    JsonSets(j, p.sets);
    j.endObject();
  }
  j.endArray();
  j.beginArray("instances");
  for (const InstanceInfo& i : r.instances) {
    j.beginObject();
    j.field("name", i.name);
    j.field("part", i.part);
    j.field("nodes", i.nodes);
    j.field("elements", i.elements);
    JsonSets(j, i.sets);
    j.endObject();
  }
  j.endArray();
  j.beginObject("assembly");
  JsonSets(j, r.assemblySets);
  j.endObject();
  j.beginArray("steps");
  for (const StepInfo& s : r.steps) {
    j.beginObject();
    j.field("name", s.name);
    j.field("description", s.description);
    j.field("domain", s.domain);
    j.field("procedure", s.procedure);
    j.field("timePeriod", s.timePeriod);
    j.field("totalTime", s.totalTime);
    j.beginArray("frames");
    for (const FrameInfo& f : s.frames) {
      j.beginObject();
      j.field("index", f.index);
      j.field("increment", f.increment);
      j.field("value", f.value);
      j.field("description", f.description);
      j.beginArray("fieldOutputs");
      for (const FieldInfo& fo : f.fields) {
        j.beginObject();
        j.field("name", fo.name);
        j.field("description", fo.description);
        j.field("type", fo.type);
        j.strings("positions", fo.positions);
        j.strings("components", fo.components);
        j.field("values", fo.values);
        j.endObject();
      }
      j.endArray();
      j.endObject();
    }
    j.endArray();
    j.beginArray("historyRegions");
    for (const HistoryInfo& h : s.history) {
      j.beginObject();
      j.field("name", h.region);
      j.field("position", h.position);
      j.strings("outputs", h.outputs);
      j.endObject();
    }
    j.endArray();
    j.endObject();
  }
  j.endArray();
  j.endObject();
}

// --- Text ---

std::string Size(std::uintmax_t bytes) {
  std::ostringstream s;
  s << std::fixed << std::setprecision(1);
  if (bytes >= (1u << 30))
    s << bytes / double(1u << 30) << " GiB";
  else if (bytes >= (1u << 20))
    s << bytes / double(1u << 20) << " MiB";
  else if (bytes >= 1024)
    s << bytes / 1024.0 << " KiB";
  else
    s << bytes << " bytes";
  return s.str();
}

// At most `most` names, then how many more there are: a listing stays a screenful.
std::string Some(const std::vector<std::string>& names, std::size_t most = 8) {
  if (names.size() <= most) return tool_Join(names);
  std::vector<std::string> first(names.begin(), names.begin() + most);
  return tool_Join(first) + " and " + std::to_string(names.size() - most) + " more";
}

void TextSets(std::ostream& out, const std::string& indent, const SetNames& s) {
  if (!s.nodeSets.empty())
    out << indent << "node sets (" << s.nodeSets.size() << "): " << Some(s.nodeSets) << '\n';
  if (!s.elementSets.empty())
    out << indent << "element sets (" << s.elementSets.size() << "): " << Some(s.elementSets)
        << '\n';
  if (!s.surfaces.empty())
    out << indent << "surfaces (" << s.surfaces.size() << "): " << Some(s.surfaces) << '\n';
}

std::string FieldLine(const FieldInfo& f) {
  std::string line = f.name + " " + f.type + " at " + tool_Join(f.positions);
  if (f.components.size() > 1) {
    line += " (";
    for (std::size_t c = 0; c < f.components.size(); ++c) line += (c ? " " : "") + f.components[c];
    line += ")";
  }
  return line + ", " + std::to_string(f.values) + " values";
}

void WriteText(const Report& r, std::ostream& out) {
  out << r.path << ": " << Size(r.bytes) << ", schema " << QTVODB_SCHEMA_VERSION << '\n';
  out << "title: " << r.title << '\n';
  if (!r.description.empty()) out << "description: " << r.description << '\n';
  out << "parts (" << r.parts.size() << "):\n";
  for (const PartInfo& p : r.parts) {
    out << "  " << p.name << " (" << p.dimension << "): " << p.nodes << " nodes, " << p.elements
        << " elements";
    for (std::size_t t = 0; t < p.types.size(); ++t)
      out << (t ? ", " : ": ") << p.types[t].count << " " << p.types[t].type;
    out << '\n';
    TextSets(out, "    ", p.sets);
  }
  out << "instances (" << r.instances.size() << "):\n";
  for (const InstanceInfo& i : r.instances) {
    out << "  " << i.name << " of " << i.part << ": " << i.nodes << " nodes, " << i.elements
        << " elements\n";
    TextSets(out, "    ", i.sets);
  }
  if (!r.assemblySets.Empty()) {
    out << "assembly:\n";
    TextSets(out, "  ", r.assemblySets);
  }
  out << "steps (" << r.steps.size() << "):\n";
  for (const StepInfo& s : r.steps) {
    out << "  " << s.name << " (" << s.domain << ", " << s.procedure << "): " << s.frames.size()
        << (s.frames.size() == 1 ? " frame" : " frames");
    if (!s.frames.empty())
      out << ", values " << tool_FormatFloat(s.frames.front().value) << " to "
          << tool_FormatFloat(s.frames.back().value);
    out << '\n';
    // Frames holding the same fields are listed once, as a range.
    for (std::size_t f = 0; f < s.frames.size();) {
      std::size_t last = f;
      while (last + 1 < s.frames.size() && s.frames[last + 1].fields == s.frames[f].fields) ++last;
      out << "    frame" << (last > f ? "s " : " ") << f;
      if (last > f) out << "-" << last;
      if (s.frames[f].fields.empty())
        out << ": no field output\n";
      else
        out << ":\n";
      for (const FieldInfo& fi : s.frames[f].fields) out << "      " << FieldLine(fi) << '\n';
      f = last + 1;
    }
    if (!s.history.empty()) {
      out << "    history regions (" << s.history.size() << "):\n";
      const std::size_t most = 8;
      for (std::size_t h = 0; h < s.history.size() && h < most; ++h)
        out << "      " << s.history[h].region << " (" << s.history[h].position
            << "): " << Some(s.history[h].outputs) << '\n';
      if (s.history.size() > most)
        out << "      and " << s.history.size() - most << " more (--json lists them all)\n";
    }
  }
}

}  // namespace

void tool_Info(const std::string& path, bool json, std::ostream& out) {
  const Report r = Gather(path);
  if (json)
    WriteJson(r, out);
  else
    WriteText(r, out);
}
