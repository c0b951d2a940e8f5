// The example program: creates a database, writes the mesh of a cantilever beam (hexahedra, a
// fixed-end node set, a loaded-end surface, a material and a section) and two steps of frames
// with the displacement U and the stress S of a tip load by beam theory, and the tip deflection as
// history; saves, reopens it read-only and prints what it finds, with the largest Mises stress.
//
//   odb_demo [path]      (default: demo.odb in the working folder)
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "odb_API.h"

namespace {

// Cells of the beam along x (length 10), y (depth 1) and z (width 1).
const int kNx = 10, kNy = 2, kNz = 2;

int NodeLabel(int i, int j, int k) {
  return 1 + i + (kNx + 1) * (j + (kNy + 1) * k);
}

// A beam of kNx x kNy x kNz C3D8 hexahedra, fixed at x = 0 and loaded at x = 10.
void WriteMesh(odb_Odb& odb) {
  odb_DiscretePart& beam = odb.DiscretePart("BEAM", odb_Enum::THREE_D, odb_Enum::DEFORMABLE_BODY);
  odb_SequenceInt nodeLabels, fixed, elementLabels, tipElements;
  odb_SequenceSequenceFloat coordinates;
  for (int k = 0; k <= kNz; ++k)
    for (int j = 0; j <= kNy; ++j)
      for (int i = 0; i <= kNx; ++i) {
        nodeLabels.append(NodeLabel(i, j, k));
        float xyz[3] = {10.0f * i / kNx, 1.0f * j / kNy, 1.0f * k / kNz};
        coordinates.append(odb_SequenceFloat(xyz, 3));
        if (i == 0) fixed.append(NodeLabel(i, j, k));
      }
  odb_SequenceSequenceInt connectivity;
  odb_SequenceElementFace tipFaces;
  for (int k = 0; k < kNz; ++k)
    for (int j = 0; j < kNy; ++j)
      for (int i = 0; i < kNx; ++i) {
        int label = elementLabels.size() + 1;
        int nodes[8] = {NodeLabel(i, j, k),
                        NodeLabel(i + 1, j, k),
                        NodeLabel(i + 1, j + 1, k),
                        NodeLabel(i, j + 1, k),
                        NodeLabel(i, j, k + 1),
                        NodeLabel(i + 1, j, k + 1),
                        NodeLabel(i + 1, j + 1, k + 1),
                        NodeLabel(i, j + 1, k + 1)};
        elementLabels.append(label);
        connectivity.append(odb_SequenceInt(nodes, 8));
        if (i == kNx - 1) {
          tipElements.append(label);
          tipFaces.append(odb_Enum::FACE4);  // the face through nodes 2, 6, 7, 3: x = 10
        }
      }
  odb_SectionCategory& solid = odb.SectionCategory("solid < STEEL >", "continuum");
  beam.addNodes(nodeLabels, coordinates, "ALL-NODES");
  beam.addElements(elementLabels, connectivity, "C3D8", "ALL-ELEMENTS", solid);
  odb.materials().Material("STEEL").setElastic(210000.0, 0.3);
  odb_Section& section = odb.sections().HomogeneousSolidSection("BEAM-SECTION", "STEEL");
  beam.assignSection(beam.elementSet("ALL-ELEMENTS"), section);

  odb_Instance& instance = odb.rootAssembly().Instance("BEAM-1", beam);
  instance.NodeSet("FIXED", fixed);
  instance.Surface("TIP", tipElements, tipFaces);
}

// Beam theory for a tip load P on the cantilever: length 10, square section of side 1, E = 210000.
const double kLength = 10.0, kE = 210000.0, kI = 1.0 / 12.0;

double Deflection(double x, double load) {
  return -load * x * x * (3 * kLength - x) / (6 * kE * kI);
}

// The bending stress at (x, y); the neutral axis is at y = 0.5.
double BendingStress(double x, double y, double load) {
  return load * (kLength - x) * (y - 0.5) / kI;
}

// U at every node (sequence form) and S at the 8 integration points of every element (the flat
// bulk form a solver would use, checked against the vectors' sizes) for one frame.
void WriteResults(odb_Frame frame, odb_Instance& instance, double load) {
  odb_SequenceInt nodes;
  odb_SequenceSequenceFloat u;
  for (int k = 0; k <= kNz; ++k)
    for (int j = 0; j <= kNy; ++j)
      for (int i = 0; i <= kNx; ++i) {
        nodes.append(NodeLabel(i, j, k));
        float v[3] = {0.0f, float(Deflection(kLength * i / kNx, load)), 0.0f};
        u.append(odb_SequenceFloat(v, 3));
      }
  frame.VectorOutput("U", "Spatial displacement", 3).addData(odb_Enum::NODAL, instance, nodes, u);

  const double g = 1.0 / std::sqrt(3.0);  // Gauss points at -g and +g, first coordinate fastest
  std::vector<int> elements;
  std::vector<float> s;
  for (int k = 0; k < kNz; ++k)
    for (int j = 0; j < kNy; ++j)
      for (int i = 0; i < kNx; ++i) {
        elements.push_back(static_cast<int>(elements.size()) + 1);
        for (int p = 0; p < 8; ++p) {
          const double x = kLength / kNx * (i + (1 + (p % 2 ? g : -g)) / 2);
          const double y = 1.0 / kNy * (j + (1 + (p / 2 % 2 ? g : -g)) / 2);
          const float row[6] = {float(BendingStress(x, y, load)), 0, 0, 0, 0, 0};
          s.insert(s.end(), row, row + 6);
        }
      }
  frame.FieldOutput("S", "Stress components", odb_Enum::TENSOR_3D_FULL)
      .addData(odb_Enum::INTEGRATION_POINT, instance, static_cast<int>(elements.size()),
               elements, static_cast<int>(s.size() / 6), 6, s);
}

void Write(const odb_String& path) {
  odb_Odb& odb = Odb("demo", "Cantilever beam", "A loaded cantilever, written by odb_demo", path);
  WriteMesh(odb);
  // A static step of time period 1 with default incrementation.
  odb_Step& load = odb.steps().StaticStep("Load", "Apply the tip load", "");
  odb_Instance& beam = odb.rootAssembly().instance("BEAM-1");
  odb_HistoryPoint tip(beam.getNodeFromLabel(NodeLabel(kNx, 0, kNz)), beam);
  odb_HistoryOutput& u2 = load.HistoryRegion("", "", tip).HistoryOutput("U2", "Tip deflection");
  for (int i = 1; i <= 4; ++i) {
    const double load = 100.0 * 0.25 * i;
    WriteResults(odb.steps()["Load"].Frame(i, 0.25 * i, "Increment " + odb_String(i)), beam, load);
    u2.addData(0.25 * i, Deflection(kLength, load));
  }
  // Any procedure with its settings: a static step of period 2 in increments of at most 0.5.
  odb_StepProcedure holding;
  holding.kind = odb_StepProcedure::STATIC;
  holding.timePeriod = 2.0;
  holding.initialIncrement = 0.5;
  holding.maxIncrement = 0.5;
  odb_Step& hold = odb.steps().Step("Hold", "Hold the load", "Load", holding);
  for (int i = 1; i <= 3; ++i) hold.Frame(i, 2.0 * i / 3.0, "Increment " + odb_String(i));
  saveOdb(odb);
  closeOdb(odb);
}

void PrintMesh(odb_Odb& odb) {
  odb_DiscretePartRepositoryIT parts(odb.parts());
  for (parts.first(); !parts.isDone(); parts.next()) {
    const odb_DiscretePart& part = parts.currentValue();
    odb_Element first = part.elements()[0];
    std::printf("  part %s: %d nodes, %d elements of type %s (%s)\n", part.name().CStr(),
                part.nodes().size(), part.elements().size(), first.type().CStr(),
                first.sectionCategory().name().CStr());
    for (const odb_SectionAssignment& a : part.sectionAssignments()) {
      const odb_Section& section = odb.sections().get(a.section);
      const odb_Material& material = odb.materials().get(section.material());
      std::printf("    section %s on %s: material %s, E = %g, nu = %g\n", a.section.CStr(),
                  a.region.CStr(), material.name().CStr(), material.youngsModulus(),
                  material.poissonsRatio());
    }
  }
  odb_InstanceRepositoryIT instances(odb.rootAssembly().instances());
  for (instances.first(); !instances.isDone(); instances.next()) {
    odb_Instance instance = instances.currentValue();
    odb_Set& fixed = instance.nodeSet("FIXED");
    odb_Set& tip = instance.surface("TIP");
    odb_Node corner = instance.getNodeFromLabel(NodeLabel(kNx, kNy, kNz));
    std::printf(
        "  instance %s of %s: node set FIXED has %d nodes, surface TIP %d element "
        "faces; node %d is at (%g, %g, %g)\n",
        instance.name().CStr(), instance.partName().CStr(), fixed.nodes().size(),
        tip.elements().size(), corner.label(), corner.coordinates()[0], corner.coordinates()[1],
        corner.coordinates()[2]);
  }
}

// The largest Mises stress over the frames of "Load", found from bulk data and again from its
// envelope, and the history of the tip deflection.
void PrintResults(odb_Odb& odb) {
  odb_Step& step = odb.steps()["Load"];
  float best = -1;
  int element = 0, point = 0, frameIndex = 0;
  for (int f = 0; f < step.frames().size(); ++f) {
    const odb_SequenceFieldBulkData& blocks = step.frames(f).fieldOutputs()["S"].bulkDataBlocks();
    for (int b = 0; b < blocks.size(); ++b) {
      const float* mises = blocks[b].mises();
      for (int i = 0; i < blocks[b].length(); ++i)
        if (mises[i] > best) {
          best = mises[i];
          element = blocks[b].elementLabels()[i];
          point = blocks[b].integrationPoints()[i];
          frameIndex = f;
        }
    }
  }
  std::printf("  largest Mises stress %.5g in element %d at integration point %d, frame %d (%s)\n",
              best, element, point, frameIndex, step.frames(frameIndex).description().CStr());
  // The same through the calculator: the envelope of Mises over every frame of the step and, per
  // location, the frame where it peaked.
  odb_SequenceFieldOutput stresses;
  for (int f = 0; f < step.frames().size(); ++f) stresses.append(step.frames(f).fieldOutputs()["S"]);
  const odb_SequenceFieldOutput envelope = maxEnvelope(stresses, odb_Enum::MISES);
  const odb_SequenceFieldValue& peaks = envelope[0].values();
  int top = 0;
  for (int i = 1; i < peaks.size(); ++i)
    if (peaks[i].data()[0] > peaks[top].data()[0]) top = i;
  const odb_FieldValue peak = peaks[top];
  std::printf("  Mises envelope over %d frames: element %d peaks at %.5g in frame %d\n",
              stresses.size(), peak.elementLabel(), peak.data()[0],
              static_cast<int>(envelope[1].values()[top].data()[0]));
  for (odb_HistoryRegionRepositoryIT r(step.historyRegions()); !r.isDone(); r.next()) {
    const odb_HistoryData u2 = r.currentValue().historyOutputs()["U2"].data();
    std::printf("  %s (%s), U2 at t =", r.currentKey().CStr(), r.currentValue().description().CStr());
    for (int i = 0; i < u2.size(); ++i) std::printf(" %.4g: %.4g", u2.time(i), u2.value(i));
    std::printf("\n");
  }
}

void Read(const odb_String& path) {
  odb_Odb& odb = openOdb(path, true);
  std::printf("Database %s\n  title: %s\n  description: %s\n", odb.path().CStr(),
              odb.analysisTitle().CStr(), odb.description().CStr());
  PrintMesh(odb);
  odb_StepRepositoryIT it(odb.steps());
  for (it.first(); !it.isDone(); it.next()) {
    const odb_Step& step = it.currentValue();
    std::printf("  step %-5s starts at %.2f, %d frames:", step.name().CStr(), step.totalTime(),
                step.frames().size());
    for (int i = 0; i < step.frames().size(); ++i)
      std::printf(" %.4g", step.frames(i).frameValue());
    std::printf("\n");
  }
  PrintResults(odb);
  odb_Frame frame = odb.getFrame(1.6, odb_Enum::CLOSEST);
  std::printf("  nearest frame to analysis time 1.6: \"%s\", frame value %.4g\n",
              frame.description().CStr(), frame.frameValue());
  closeOdb(odb);
}

}  // namespace

int main(int argc, char** argv) {
  std::printf("QTVodb %s (database schema version %d)\n", QTVODB_VERSION_STRING,
              QTVODB_SCHEMA_VERSION);
  odb_initializeAPI();
  int status = 0;
  try {
    odb_String path = argc > 1 ? argv[1] : "demo.odb";
    Write(path);
    Read(path);
    odb_Odb& odb = openOdb(path, true);
    std::printf(
        "The database is kept at %s: open it again, or read it with sqlite3 "
        "(docs/file-format.md).\n",
        odb.path().CStr());
    // The model that the database holds, as a keyword input deck beside it.
    std::string deck = odb.path().CStr();
    if (deck.size() > 4 && deck.compare(deck.size() - 4, 4, ".odb") == 0) deck.resize(deck.size() - 4);
    deck += ".inp";
    odb.writeInput(deck.c_str());
    std::printf("The input deck of its model is written to %s.\n", deck.c_str());
  } catch (const odb_Exception& e) {
    std::fprintf(stderr, "odb_demo: %s\n", e.JournalMessage().CStr());
    status = 1;
  }
  odb_finalizeAPI();
  return status;
}
