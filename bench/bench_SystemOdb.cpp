// This library through its public API: the mesh as a part placed by one instance, each frame's U
// at the nodes and S at the integration points written with the bulk form, saved after every
// frame or once, then closed.
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
    part.addNodes(m.nodeLabels, m.coordinates);
    part.addElements(m.elementLabels, m.connectivity, "C3D8");
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

bench_ReadTimes Read(const bench_Shape& m, const std::string& path, bench_ReadBuffers& b) {
  bench_ReadTimes t;
  odb_Odb* odb = nullptr;
  t.open = Seconds([&] { odb = &openOdb(path.c_str(), true); });
  t.mesh = Seconds([&] {
    const odb_Instance& instance = odb->rootAssembly().instance("BLOCK-1");
    b.nodeLabels.resize(std::size_t(m.nodes));
    b.coordinates.resize(3 * std::size_t(m.nodes));
    instance.readNodes(b.nodeLabels, b.coordinates);
    b.elementLabels.resize(std::size_t(m.elements));
    b.connectivity.resize(instance.connectivityLength());
    instance.readElements(b.elementLabels, b.connectivity);
  });
  t.results = Seconds([&] {
    b.uLabels.resize(std::size_t(m.nodes));
    b.u.resize(3 * std::size_t(m.nodes));
    b.sLabels.resize(std::size_t(m.elements));
    b.s.resize(48 * std::size_t(m.elements));
    odb_SequenceFrame& frames = odb->steps()["LOAD"].frames();
    for (int f = 0; f < frames.size(); ++f) {
      const odb_FieldBulkData& u = frames[f].fieldOutputs()["U"].bulkDataBlocks()[0];
      u.readLabels(b.uLabels);
      u.readData(b.u);
      const odb_FieldBulkData& s = frames[f].fieldOutputs()["S"].bulkDataBlocks()[0];
      s.readLabels(b.sLabels);
      s.readData(b.s);
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
