#include "fault_Walk.h"

#include <sqlite3.h>

#include <cstdio>
#include <cstring>
#include <sstream>

#include "odb_API.h"
#include "store_Database.h"
#include "store_Statement.h"

namespace {

// A float or double as its bits: any change to a number shows.
std::string Bits(double v) {
  char text[40];
  std::snprintf(text, sizeof text, "%a", v);
  return text;
}

template <class T, class Visit>
void Each(const odb_Repository<odb_String, T>& repository, const Visit& visit) {
  for (odb_RepositoryIterator<odb_String, T> it(repository); !it.isDone(); it.next())
    visit(it.currentKey(), it.currentValue());
}

void Nodes(std::ostringstream& out, const odb_SequenceNode& nodes) {
  for (int i = 0; i < nodes.size(); ++i) {
    const odb_Node node = nodes[i];
    out << " n" << node.label();
    for (int k = 0; k < 3; ++k) out << ' ' << Bits(node.coordinates()[k]);
  }
  out << '\n';
}

void Elements(std::ostringstream& out, const odb_SequenceElement& elements) {
  for (int i = 0; i < elements.size(); ++i) {
    const odb_Element e = elements[i];
    out << " e" << e.label() << ' ' << e.type().CStr() << ' ' << e.sectionCategory().name().CStr();
    for (int k = 0; k < e.numberOfNodes(); ++k) out << ' ' << e.nodeLabels()[k];
  }
  out << '\n';
}

void Sets(std::ostringstream& out, const char* kind, odb_SetRepository& sets) {
  Each(sets, [&](const odb_String& name, const odb_Set& set) {
    out << "  " << kind << ' ' << name.CStr() << ' ' << set.isInternal() << ":";
    const odb_SequenceString instances = set.instanceNames();
    for (int i = 0; i < instances.size(); ++i) out << ' ' << instances[i].CStr();
    if (set.type() == odb_Set::NODE_SET) {
      Nodes(out, set.nodes());
    } else {
      Elements(out, set.elements());
      const odb_SequenceElementFace faces = set.faces();
      for (int i = 0; i < faces.size(); ++i) out << " f" << int(faces[i]);
      out << '\n';
    }
  });
}

void Entity(std::ostringstream& out, odb_DiscreteEntity& entity) {
  out << " dim " << entity.embeddedSpace() << " type " << entity.type() << '\n';
  Nodes(out, entity.nodes());
  Elements(out, entity.elements());
  Sets(out, "nset", entity.nodeSets());
  Sets(out, "elset", entity.elementSets());
  Sets(out, "surface", entity.surfaces());
  for (const odb_SectionAssignment& a : entity.sectionAssignments())
    out << "  assignment " << a.region.CStr() << ' ' << a.section.CStr() << '\n';
}

void Model(std::ostringstream& out, odb_Odb& odb) {
  Each(odb.sectionCategories(), [&](const odb_String& name, const odb_SectionCategory& c) {
    out << "category " << name.CStr() << ' ' << c.description().CStr();
    const odb_SequenceSectionPoint points = c.sectionPoints();
    for (int i = 0; i < points.size(); ++i)
      out << ' ' << points[i].number() << ' ' << points[i].description().CStr();
    out << '\n';
  });
  Each(odb.materials(), [&](const odb_String& name, const odb_Material& m) {
    out << "material " << name.CStr();
    if (m.hasElastic()) out << ' ' << Bits(m.youngsModulus()) << ' ' << Bits(m.poissonsRatio());
    if (m.hasDensity()) out << ' ' << Bits(m.density());
    out << '\n';
  });
  Each(odb.sections(), [&](const odb_String& name, const odb_Section& s) {
    out << "section " << name.CStr() << ' ' << s.kind() << ' ' << s.material().CStr() << ' '
        << Bits(s.thickness()) << ' ' << s.integrationPoints() << ' ' << s.profile().CStr();
    const odb_SequenceDouble dimensions = s.dimensions();
    for (int i = 0; i < dimensions.size(); ++i) out << ' ' << Bits(dimensions[i]);
    out << '\n';
  });
  Each(odb.parts(), [&](const odb_String& name, const odb_DiscretePart& stored) {
    odb_DiscretePart part = stored;
    out << "part " << name.CStr();
    Entity(out, part);
  });
  odb_Assembly& assembly = odb.rootAssembly();
  Each(assembly.instances(), [&](const odb_String& name, const odb_Instance& stored) {
    odb_Instance instance = stored;
    out << "instance " << name.CStr() << " of " << instance.partName().CStr();
    for (int k = 0; k < 3; ++k) out << ' ' << Bits(instance.translation()[k]);
    out << ' ' << Bits(instance.rotationAngle());
    Entity(out, instance);
  });
  Sets(out, "assembly nset", assembly.nodeSets());
  Sets(out, "assembly elset", assembly.elementSets());
  Sets(out, "assembly surface", assembly.surfaces());
}

void Field(std::ostringstream& out, const odb_FieldOutput& field) {
  out << "   field " << field.name().CStr() << ' ' << field.description().CStr() << ' '
      << field.type();
  const odb_SequenceString labels = field.componentLabels();
  for (int i = 0; i < labels.size(); ++i) out << ' ' << labels[i].CStr();
  const odb_SequenceInvariant invariants = field.validInvariants();
  for (int i = 0; i < invariants.size(); ++i) out << " i" << int(invariants[i]);
  out << '\n';
  const odb_SequenceFieldValue& values = field.values();
  for (int i = 0; i < values.size(); ++i) {
    const odb_FieldValue& v = values[i];
    out << "    " << v.position() << ' ' << v.instance().name().CStr() << ' ' << v.elementLabel()
        << ' ' << v.nodeLabel() << ' ' << v.integrationPoint() << ' ' << v.sectionPoint().number();
    const odb_SequenceFloat data = v.data();
    for (int k = 0; k < data.size(); ++k) out << ' ' << Bits(data[k]);
    out << '\n';
  }
  const odb_SequenceFieldBulkData& blocks = field.bulkDataBlocks();
  for (int b = 0; b < blocks.size(); ++b) {
    const odb_FieldBulkData& block = blocks[b];
    out << "    bulk " << block.position() << ' ' << block.baseElementType().CStr() << ' '
        << block.length() << 'x' << block.width();
    for (int i = 0; i < block.length(); ++i) {
      out << ' ' << block.elementLabels()[i] << '/' << block.nodeLabels()[i];
      for (int k = 0; k < block.width(); ++k)
        out << ' ' << Bits(block.data()[static_cast<std::size_t>(i) * block.width() + k]);
    }
    out << '\n';
  }
}

void Results(std::ostringstream& out, odb_Odb& odb) {
  odb_StepRepositoryIT steps(odb.steps());
  for (steps.first(); !steps.isDone(); steps.next()) {
    const odb_Step& step = steps.currentValue();
    out << "step " << step.name().CStr() << ' ' << step.description().CStr() << ' ' << step.domain()
        << ' ' << Bits(step.timePeriod()) << ' ' << Bits(step.totalTime()) << ' '
        << step.previousStepName().CStr() << ' ' << step.procedure().CStr() << '\n';
    for (int f = 0; f < step.frames().size(); ++f) {
      const odb_Frame frame = step.frames(f);
      out << "  frame " << frame.frameIndex() << ' ' << frame.incrementNumber() << ' '
          << Bits(frame.frameValue()) << ' ' << frame.description().CStr() << ' '
          << frame.loadCase().name().CStr() << '\n';
      Each(frame.fieldOutputs(),
           [&](const odb_String&, const odb_FieldOutput& field) { Field(out, field); });
    }
    Each(step.historyRegions(), [&](const odb_String& name, const odb_HistoryRegion& region) {
      out << "  region " << name.CStr() << ' ' << region.description().CStr() << ' '
          << region.position() << ' ' << region.historyPoint().node().label() << '\n';
      Each(region.historyOutputs(), [&](const odb_String& key, const odb_HistoryOutput& output) {
        out << "   output " << key.CStr() << ' ' << output.description().CStr() << ' '
            << output.type();
        const odb_HistoryData data = output.data();
        for (int i = 0; i < data.size(); ++i)
          out << ' ' << Bits(data.time(i)) << ':' << Bits(data.value(i));
        out << '\n';
      });
    });
  }
}

}  // namespace

std::string fault_Walk(const std::string& path) {
  odb_Odb& odb = openOdb(path.c_str(), true);
  std::ostringstream out;
  try {
    out << "odb " << odb.analysisTitle().CStr() << " / " << odb.description().CStr() << '\n';
    Model(out, odb);
    Results(out, odb);
  } catch (...) {
    closeOdb(odb);
    throw;
  }
  closeOdb(odb);
  return out.str();
}

void fault_CopyWithPageSize(const std::string& from, const std::string& to, int pageSize) {
  std::remove(to.c_str());
  std::shared_ptr<store_Database> db = store_Database::Open(from, false);
  // VACUUM INTO writes through this connection's VFS, which gives the copy's pages their
  // checksums; the copy keeps the source's reserved bytes and takes the pending page size.
  const std::string sql = "PRAGMA page_size = " + std::to_string(pageSize) +
                          "; COMMIT; VACUUM INTO '" + to + "'; BEGIN";
  char* error = nullptr;
  if (sqlite3_exec(db->Connection(), sql.c_str(), nullptr, nullptr, &error) != SQLITE_OK) {
    const std::string reason = error ? error : "?";
    sqlite3_free(error);
    throw store_Error("Cannot copy " + from + ": " + reason);
  }
  db->Close();
}

void fault_WriteValidFile(const std::string& path) {
  odb_Odb& odb =
      Odb("fault", "Damage suite", "The file every damaged copy comes from", path.c_str());
  odb_DiscretePart& part = odb.DiscretePart("BLOCK", odb_Enum::THREE_D, odb_Enum::DEFORMABLE_BODY);
  odb_SequenceInt labels;
  odb_SequenceSequenceFloat points;
  for (int z = 0; z < 2; ++z)
    for (int y = 0; y < 2; ++y)
      for (int x = 0; x < 3; ++x) {
        labels.append(1 + x + 3 * y + 6 * z);
        const float xyz[3] = {0.5f * x, 0.25f * y + 0.1f, 1.5f * z};
        points.append(odb_SequenceFloat(xyz, 3));
      }
  part.addNodes(labels, points, "ALL-NODES");
  auto rows = [](std::initializer_list<std::initializer_list<int>> list) {
    odb_SequenceSequenceInt out;
    for (auto row : list) {
      odb_SequenceInt r;
      for (int v : row) r.append(v);
      out.append(r);
    }
    return out;
  };
  auto ints = [](std::initializer_list<int> list) {
    odb_SequenceInt out;
    for (int v : list) out.append(v);
    return out;
  };
  part.addElements(ints({1, 2}), rows({{1, 2, 5, 4, 7, 8, 11, 10}, {2, 3, 6, 5, 8, 9, 12, 11}}),
                   "C3D8", "HEXES");
  part.addElements(ints({3}), rows({{1, 2, 4, 7}}), "C3D4");
  odb_SectionCategory& shell = odb.SectionCategory("SHELL", "a shell");
  shell.SectionPoint(1, "Bottom");
  shell.SectionPoint(2, "Top");
  part.addElements(ints({4, 5}), rows({{1, 2, 8, 7}, {2, 3, 9, 8}}), "S4R", "", shell);
  odb.materials().Material("STEEL").setElastic(210000.0, 0.3);
  odb_Section& section = odb.sections().HomogeneousSolidSection("SOLID", "STEEL");
  part.assignSection(part.elementSet("HEXES"), section);
  odb_Instance& instance = odb.rootAssembly().Instance("B-1", part);
  instance.NodeSet("FIXED", ints({1, 4, 7, 10}));
  odb_SequenceElementFace faces;
  faces.append(odb_Enum::FACE4);
  faces.append(odb_Enum::FACE6);
  instance.Surface("TOP", ints({1, 2}), faces);

  odb_Step& load = odb.Step("LOAD", "Load it", odb_Enum::TIME, 1.0, "", "*STATIC", 0.0);
  odb_HistoryPoint tip(instance.getNodeFromLabel(12), instance);
  odb_HistoryOutput& u3 = load.HistoryRegion("", "", tip).HistoryOutput("U3", "Tip deflection");
  for (int f = 1; f <= 3; ++f) {
    odb_Frame frame = load.Frame(f, 0.3f * f, "Increment " + odb_String(f));
    odb_SequenceSequenceFloat u;
    for (int n = 0; n < labels.size(); ++n) {
      const float v[3] = {0.01f * n * f, -0.002f * f, 1e-4f * n};
      u.append(odb_SequenceFloat(v, 3));
    }
    frame.VectorOutput("U", "Displacement", 3).addData(odb_Enum::NODAL, instance, labels, u);
    std::vector<int> hexes = {1, 2};
    std::vector<float> s;
    for (int i = 0; i < 2 * 8 * 6; ++i) s.push_back(1.5f * i - 7.25f * f);
    frame.FieldOutput("S", "Stress", odb_Enum::TENSOR_3D_FULL)
        .addData(odb_Enum::INTEGRATION_POINT, instance, 2, hexes, 16, 6, s);
    u3.addData(0.3 * f, -0.002f * f);
  }
  odb.Step("HOLD", "Hold it", odb_Enum::TIME, 2.0, "LOAD", "*STATIC", 1.0).Frame(1, 2.0, "End");
  saveOdb(odb);
  closeOdb(odb);
}
