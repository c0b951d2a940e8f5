// This library through its public API: the mesh as a part placed by one instance, each frame's U
// at the nodes and S at the integration points written with the bulk form, saved after every
// frame or once, then closed.
#include <cstring>

#include "bench_Systems.h"
#include "bench_Timing.h"
#include "odb_API.h"

namespace {

bench_WriteTimes Write(const bench_Model& m, const std::string& path, bool savePerFrame) {
  bench_WriteTimes t;
  odb_Odb* odb = nullptr;
  odb_Instance* instance = nullptr;
  t.mesh = Seconds([&] {
    odb = &Odb("", "", "", path.c_str());
    odb_DiscretePart& part =
        odb->DiscretePart("BLOCK", odb_Enum::THREE_D, odb_Enum::DEFORMABLE_BODY);
    odb_SequenceSequenceFloat points;
    for (int i = 0; i < m.Nodes(); ++i) points.append(odb_SequenceFloat(&m.coordinates[3 * i], 3));
    part.addNodes(odb_SequenceInt(m.nodeLabels.data(), m.Nodes()), points);
    odb_SequenceSequenceInt rows;
    for (int e = 0; e < m.Elements(); ++e) rows.append(odb_SequenceInt(&m.connectivity[8 * e], 8));
    part.addElements(odb_SequenceInt(m.elementLabels.data(), m.Elements()), rows, "C3D8");
    instance = &odb->rootAssembly().Instance("BLOCK-1", part);
  });
  t.frames = Seconds([&] {
    odb_Step& step = odb->Step("LOAD", "", odb_Enum::TIME, 1.0, "", "*STATIC", 0.0);
    for (int f = 0; f < m.frames; ++f) {
      odb_Frame frame = step.Frame(f + 1, 0.1 * (f + 1), "");
      frame.FieldOutput("U", "displacement", odb_Enum::VECTOR)
          .addData(odb_Enum::NODAL, *instance, m.Nodes(), m.nodeLabels, m.Nodes(), 3, m.u);
      frame.FieldOutput("S", "stress", odb_Enum::TENSOR_3D_FULL)
          .addData(odb_Enum::INTEGRATION_POINT, *instance, m.Elements(), m.elementLabels,
                   m.Elements() * 8, 6, m.s);
      if (savePerFrame) saveOdb(*odb);
    }
  });
  t.close = Seconds([&] {
    saveOdb(*odb);
    closeOdb(*odb);
  });
  return t;
}

// Copies a block's values into the caller's array, as a program that owns its arrays must.
template <class T>
void CopyInto(std::vector<T>& into, const T* from, std::size_t n) {
  into.resize(n);
  std::memcpy(into.data(), from, n * sizeof(T));
}

bench_ReadTimes Read(const bench_Shape& m, const std::string& path, bench_ReadBuffers& b) {
  bench_ReadTimes t;
  odb_Odb* odb = nullptr;
  t.open = Seconds([&] { odb = &openOdb(path.c_str(), true); });
  odb_Instance* instance = nullptr;
  t.mesh = Seconds([&] {
    instance = &odb->rootAssembly().instance("BLOCK-1");
    const odb_SequenceNode& nodes = instance->nodes();
    b.nodeLabels.resize(nodes.size());
    b.coordinates.resize(3 * std::size_t(nodes.size()));
    for (int i = 0; i < nodes.size(); ++i) {
      b.nodeLabels[i] = nodes[i].label();
      std::memcpy(&b.coordinates[3 * std::size_t(i)], nodes[i].coordinates(), 3 * sizeof(float));
    }
    const odb_SequenceElement& elements = instance->elements();
    b.elementLabels.resize(elements.size());
    b.connectivity.resize(8 * std::size_t(elements.size()));
    for (int i = 0; i < elements.size(); ++i) {
      b.elementLabels[i] = elements[i].label();
      std::memcpy(&b.connectivity[8 * std::size_t(i)], elements[i].nodeLabels(), 8 * sizeof(int));
    }
  });
  t.results = Seconds([&] {
    odb_SequenceFrame& frames = odb->steps()["LOAD"].frames();
    for (int f = 0; f < frames.size(); ++f) {
      const odb_FieldBulkData& u = frames[f].fieldOutputs()["U"].bulkDataBlocks()[0];
      CopyInto(b.uLabels, u.nodeLabels(), std::size_t(u.length()));
      CopyInto(b.u, u.data(), std::size_t(u.length()) * 3);
      const odb_FieldBulkData& s = frames[f].fieldOutputs()["S"].bulkDataBlocks()[0];
      // One label per element, as the other systems store them: every 8th location's.
      b.sLabels.resize(std::size_t(m.elements));
      for (int e = 0; e < m.elements; ++e) b.sLabels[e] = s.elementLabels()[8 * e];
      CopyInto(b.s, s.data(), std::size_t(s.length()) * 6);
      b.Add(b.u.data(), b.u.size());
      b.Add(b.s.data(), b.s.size());
    }
  });
  t.close = Seconds([&] { closeOdb(*odb); });
  return t;
}

double Open(const std::string& path) {
  return Best(20, [&] { closeOdb(openOdb(path.c_str(), true)); });
}

}  // namespace

const bench_System bench_Odb = {"QTVodb", Write, Read, Open};
