#include <gtest/gtest.h>
#include <sqlite3.h>

#include "MeshFile.h"
#include "odb_ElementAccess.h"
#include "store_PageChecksum.h"

using Mesh = MeshFile;

TEST_F(Mesh, IndexAndLabelMessages) {
  odb_DiscretePart& part = TwoQuads();
  odb_Mesh mesh = part.meshes().mesh(0);
  EXPECT_EQ(MessageOf([&] { mesh.node(6); }), "Node index out of range.");
  EXPECT_EQ(MessageOf([&] { mesh.element(-1); }), "Invalid Element index");
  EXPECT_EQ(MessageOf([&] { mesh.element(2); }), "Element index out of range.");
  EXPECT_EQ(MessageOf([&] { part.getElementFromLabel(11); }), "Invalid Element label");
  EXPECT_EQ(MessageOf([&] { odb_Mesh().nodePosition(1); }), "Invalid Node label");
  EXPECT_EQ(MessageOf([&] { part.meshes().mesh(1); }), "Invalid part index.");
  EXPECT_EQ(MessageOf([&] { part.meshes().mesh("I"); }), "Invalid mesh name.");
  EXPECT_EQ(MessageOf([&] { part.meshes().meshFromMeshIndex(-5); }), "Invalid part index.");
  EXPECT_EQ(MessageOf([&] { odb_MeshList().meshFromMeshIndex(0); }), "Invalid part index.");
  EXPECT_EQ(MessageOf([&] { odb_SequenceElement().anyElement(); }), "Element not found.");
}

TEST_F(Mesh, MeshListFindsTheLastMeshOfAPartAndConnectivityPositions) {
  odb_DiscretePart& part = TwoQuads();
  odb_Assembly& assembly = m_odb->rootAssembly();
  assembly.Instance("A", part);
  assembly.Instance("B", part);
  int index = part.meshes().mesh(0).meshIndex();
  EXPECT_EQ(assembly.meshes().meshFromMeshIndex(index).instanceName(), "B");
  odb_Element element = part.getElementFromLabel(20);
  EXPECT_EQ(assembly.meshes().ConnIndicesForEl(element), Ints({1, 2, 5, 4}));
  EXPECT_EQ(MessageOf([&] { odb_MeshList().ConnIndicesForEl(element); }), "Element not found.");
  odb_Element stranger = odb_ElementAccess::FromLabels(
      99, 0, nullptr, 0, "S4R", odb_SectionCategory(), odb_Enum::GEOMETRY_SHELL, index, 1, nullptr);
  EXPECT_EQ(MessageOf([&] { part.meshes().ConnIndicesForEl(stranger); }),
            "Element index not found.");
}

TEST_F(Mesh, SequencesSliceAppendAndCompareWithinOneMesh) {
  odb_DiscretePart& part = TwoQuads();
  odb_DiscretePart& other = TwoQuads("OTHER");
  odb_SequenceNode nodes = part.nodes().slice(4, 10);
  EXPECT_EQ(nodes.size(), 2);
  nodes.append(part.nodes().slice(0, 1));
  EXPECT_EQ(nodes[2].label(), 1);
  EXPECT_TRUE(nodes.isMember(part.getNodeFromLabel(6)));
  EXPECT_FALSE(nodes.isMember(part.getNodeFromLabel(2)));
  EXPECT_FALSE(nodes.isMember(other.getNodeFromLabel(6)));
  EXPECT_EQ(MessageOf([&] { nodes.append(other.nodes()); }),
            "Cannot Append. Sequence belongs to different part.");
  EXPECT_EQ(MessageOf([&] { nodes.append(other.getNodeFromLabel(1)); }),
            "Cannot Append. Sequence belongs to different part.");
  EXPECT_EQ(MessageOf([&] { part.elements().slice(0, 1).append(other.elements()); }),
            "Cannot Append. Sequence belongs to different part.");
  odb_SequenceElement elements;
  elements.append(part.elements());
  EXPECT_TRUE(elements.isEqual(part.elements()));
  EXPECT_FALSE(elements.isEqual(part.elements().slice(1, 2)));
  EXPECT_EQ(part.elements().slice(1, 2).anyElement().label(), 20);
  EXPECT_EQ(MessageOf([&] { elements.element(2); }), "Element index out of range.");
}

using MeshModel = MeshFile;

TEST_F(MeshModel, EverythingReadsBackEqualAfterReopening) {
  odb_SectionCategory& category = m_odb->SectionCategory("shell < STEEL >", "S4R shells");
  category.SectionPoint(1, "bottom");
  odb_DiscretePart& part = TwoQuads();
  part.addElements(Ints({30}), Rows({{1, 5, 4}}), "S3", "TRIS", category);
  part.NodeSet("CORNER", Ints({1}));
  odb_Material& steel = m_odb->materials().Material("STEEL");
  steel.setElastic(210e3, 0.3);
  odb_Section& shell = m_odb->sections().HomogeneousShellSection("SHELL", "STEEL", 0.5, 5);
  part.assignSection(part.elementSet("TRIS"), shell);
  odb_Instance& instance =
      m_odb->rootAssembly().Instance("I", part, Points({{1, 2, 3}, {0, 0, 0, 1, 0, 0, 30}}));
  odb_SequenceElementFace side;
  side.append(odb_Enum::SIDE1);
  instance.Surface("EDGE", Ints({20}), side);
  odb_SequenceString names;
  names.append("I");
  m_odb->rootAssembly().ElementSet("ALL", names, Rows({{10, 20, 30}}));
  std::vector<odb_Node> nodesBefore;
  for (int i = 0; i < instance.nodes().size(); ++i) nodesBefore.push_back(instance.nodes()[i]);

  odb_Odb& odb = Reopen();
  odb_DiscretePart& again = odb.parts().get("PLATE");
  EXPECT_EQ(again.embeddedSpace(), odb_Enum::THREE_D);
  ASSERT_EQ(again.elements().size(), 3);
  EXPECT_EQ(again.elements(2).connectivity(), Ints({1, 5, 4}));
  EXPECT_EQ(again.elements(2).sectionCategory().sectionPoints().size(), 1);
  EXPECT_EQ(again.nodeSet("CORNER").nodes()[0].label(), 1);
  EXPECT_EQ(again.sectionAssignments()[0].region, "TRIS");
  EXPECT_EQ(odb.materials().get("STEEL").youngsModulus(), 210e3);
  EXPECT_EQ(odb.sections().get("SHELL").integrationPoints(), 5);
  odb_Instance& placed = odb.rootAssembly().instance("I");
  EXPECT_NEAR(placed.rotationAngle(), 30 * 3.141592653589793 / 180, 1e-12);
  for (int i = 0; i < placed.nodes().size(); ++i) EXPECT_EQ(placed.nodes()[i], nodesBefore[i]);
  EXPECT_EQ(placed.surface("EDGE").faces()[0], odb_Enum::SIDE1);
  EXPECT_EQ(odb.rootAssembly().elementSet("ALL").elements("I").size(), 3);
}

TEST_F(MeshModel, StoredSetsOfAnUnknownKindAreRefused) {
  odb_DiscretePart& part = TwoQuads();
  m_odb->rootAssembly().Instance("I", part).NodeSet("N", Ints({1}));
  m_odb->rootAssembly().NodeSet("A", odb_SequenceString(), odb_SequenceSequenceInt());
  saveOdb(*m_odb);
  closeOdb(*m_odb);
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open_v2(m_path.c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE,
                            store_ChecksumVfs()),
            SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(db, "UPDATE mesh_set SET kind = 9", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(db);
  odb_Odb& odb = openOdb(m_path.c_str(), true);
  EXPECT_EQ(MessageOf([&] { odb.rootAssembly().instance("I").nodeSets(); }), "Unknown set type.");
  EXPECT_EQ(MessageOf([&] { odb.rootAssembly().nodeSets(); }), "Unknown Set type.");
}
