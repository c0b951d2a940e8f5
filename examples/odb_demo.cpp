// The example program: creates a database, writes the mesh of a cantilever beam (hexahedra, a
// fixed-end node set, a loaded-end surface, a material and a section) and two steps of frames,
// saves, reopens it read-only and prints what it finds.
//
//   odb_demo [path]      (default: demo.odb in the working folder)
#include <cstdio>

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

void Write(const odb_String& path) {
  odb_Odb& odb = Odb("demo", "Cantilever beam", "A loaded cantilever, written by odb_demo", path);
  WriteMesh(odb);
  odb_Step& load = odb.Step("Load", "Apply the tip load", odb_Enum::TIME, 1.0, "", "*STATIC", 0.0);
  for (int i = 1; i <= 4; ++i) load.Frame(i, 0.25 * i, "Increment " + odb_String(i));
  odb_Step& hold = odb.Step("Hold", "Hold the load", odb_Enum::TIME, 2.0, "Load", "*STATIC", 1.0);
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
    std::printf(
        "The database is kept at %s: open it again, or read it with sqlite3 "
        "(docs/file-format.md).\n",
        openOdb(path, true).path().CStr());
  } catch (const odb_Exception& e) {
    std::fprintf(stderr, "odb_demo: %s\n", e.JournalMessage().CStr());
    status = 1;
  }
  odb_finalizeAPI();
  return status;
}
