#include <gtest/gtest.h>
#include <sqlite3.h>

#include <string>
#include <vector>

#include "MeshFile.h"
#include "odb_ElementAccess.h"

namespace {

// An integer the saved file gives for `sql`, read through a connection of its own.
long long FileCount(const std::string& path, const char* sql) {
  sqlite3* db = nullptr;
  long long value = -1;
  if (sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
    sqlite3_stmt* q = nullptr;
    if (sqlite3_prepare_v2(db, sql, -1, &q, nullptr) == SQLITE_OK && sqlite3_step(q) == SQLITE_ROW)
      value = sqlite3_column_int64(q, 0);
    sqlite3_finalize(q);
  }
  sqlite3_close(db);
  return value;
}

}  // namespace

using DiscretePartNodes = MeshFile;

TEST_F(DiscretePartNodes, RefusesBadArraysInTheStatedOrderAndStoresNothing) {
  odb_DiscretePart& part = m_odb->DiscretePart("P", odb_Enum::THREE_D, odb_Enum::DEFORMABLE_BODY);
  EXPECT_EQ(MessageOf([&] {
              part.addNodes(Ints({}), Points({{1, 2}}));
            }),
            "No node labels provided.");
  EXPECT_EQ(MessageOf([&] {
              part.addNodes(Ints({1, 2}), Points({{0, 0, 0}}));
            }),
            "Number of node labels and coordinates does not match.");
  EXPECT_EQ(MessageOf([&] {
              part.addNodes(Ints({1, 2}), Points({{0, 0, 0}, {0, 0}}));
            }),
            "Node location specification does not correspond to part dimension. 3 floats "
            "expected; 2 floats received.");
  part.addNodes(Ints({1, 2}), Points({{0, 0, 0}, {1, 0, 0}}));
  EXPECT_EQ(MessageOf([&] {
              part.addNodes(Ints({3, 2}), Points({{0, 0, 0}, {1, 0, 0}}));
            }),
            "Duplicate node label 2 in part \"P\".");
  EXPECT_EQ(MessageOf([&] {
              part.addNodes(Ints({7, 7}), Points({{0, 0, 0}, {1, 0, 0}}));
            }),
            "Duplicate node label 7 in part \"P\".");
  EXPECT_EQ(part.nodes().size(), 2);
  EXPECT_EQ(MessageOf([&] { part.getNodeFromLabel(3); }), "Invalid Node label");
}

TEST_F(DiscretePartNodes, ABadRowOutranksADuplicateLabelBeforeIt) {
  odb_DiscretePart& part = m_odb->DiscretePart("P", odb_Enum::THREE_D, odb_Enum::DEFORMABLE_BODY);
  part.addNodes(Ints({1, 2}), Points({{0, 0, 0}, {1, 0, 0}}));
  EXPECT_EQ(MessageOf([&] {
              part.addNodes(Ints({3, 1, 4}), Points({{0, 0, 0}, {0, 0, 0}, {0, 0}}));
            }),
            "Node location specification does not correspond to part dimension. 3 floats "
            "expected; 2 floats received.");
  EXPECT_EQ(part.nodes().size(), 2);
}

TEST_F(DiscretePartNodes, ALargeAdditionReportsItsFirstBadRowAndStoresItsCoordinates) {
  odb_DiscretePart& part = m_odb->DiscretePart("P", odb_Enum::THREE_D, odb_Enum::DEFORMABLE_BODY);
  const int n = 100000;  // converted on two threads
  odb_SequenceInt labels;
  odb_SequenceSequenceFloat points;
  for (int i = 0; i < n; ++i) {
    labels.append(i + 1);
    points.append(Points({{float(i), 0.5f, -float(i)}})[0]);
  }
  odb_SequenceSequenceFloat bad = points;
  bad.get(n - 3) = Points({{1, 2, 3, 4}})[0];
  bad.get(n - 2) = Points({{1}})[0];
  EXPECT_EQ(MessageOf([&] { part.addNodes(labels, bad); }),
            "Node location specification does not correspond to part dimension. 3 floats "
            "expected; 4 floats received.");
  EXPECT_EQ(part.nodes().size(), 0);
  part.addNodes(labels, points);
  odb_Node last = Reopen().parts().get("P").getNodeFromLabel(n);
  EXPECT_EQ(last.coordinates()[0], float(n - 1));
  EXPECT_EQ(last.coordinates()[2], -float(n - 1));
}

TEST_F(DiscretePartNodes, CoordinatesAreStoredAsThreeFloat32PerNode) {
  odb_DiscretePart& part =
      m_odb->DiscretePart("P", odb_Enum::TWO_D_PLANAR, odb_Enum::DEFORMABLE_BODY);
  part.addNodes(Ints({1, 2, 3}), Points({{0.1f, 1e-30f}, {3.4e38f, -2.5f}, {7, 8}}));
  saveOdb(*m_odb);
  EXPECT_EQ(FileCount(m_path, "SELECT bytes FROM array WHERE kind = 'node coordinates'"), 3 * 12);
  odb_Odb& odb = Reopen();
  odb_Node node = odb.parts().get("P").getNodeFromLabel(2);
  EXPECT_EQ(node.coordinates()[0], 3.4e38f);
  EXPECT_EQ(node.coordinates()[1], -2.5f);
  EXPECT_EQ(odb.parts().get("P").getNodeFromLabel(1).coordinates()[1], 1e-30f);
}

TEST_F(DiscretePartNodes, PlanarPartsTakeTwoCoordinatesAndReportAThirdOfZero) {
  odb_DiscretePart& part =
      m_odb->DiscretePart("P", odb_Enum::TWO_D_PLANAR, odb_Enum::DEFORMABLE_BODY);
  EXPECT_EQ(MessageOf([&] {
              part.addNodes(Ints({1}), Points({{1, 2, 3}}));
            }),
            "Node location specification does not correspond to part dimension. 2 floats "
            "expected; 3 floats received.");
  part.addNodes(Ints({5}), Points({{0.1f, 2.5f}}), "ALL");
  odb_Node node = part.getNodeFromLabel(5);
  EXPECT_EQ(node.coordinates()[0], 0.1f);
  EXPECT_EQ(node.coordinates()[1], 2.5f);
  EXPECT_EQ(node.coordinates()[2], 0.0f);
  EXPECT_EQ(part.nodeSet("ALL").nodes().size(), 1);
}

using DiscretePartElements = MeshFile;

TEST_F(DiscretePartElements, RefusesBadArraysInTheStatedOrderAndStoresNothing) {
  odb_DiscretePart& part = TwoQuads();
  EXPECT_EQ(MessageOf([&] { part.addElements(Ints({}), Rows({{1}}), "S4R"); }),
            "No element labels provided.");
  EXPECT_EQ(MessageOf([&] {
              part.addElements(Ints({1, 2}), Rows({{1, 2, 5, 4}}), "S4R");
            }),
            "Connectivity array must be provided for all elements.");
  // Rows of a user element only have to agree with each other.
  EXPECT_EQ(MessageOf([&] {
              part.addElements(Ints({1, 2}), Rows({{1, 2, 5, 4}, {1, 2, 3, 4, 5, 6, 1, 2}}), "U4");
            }),
            "Element connectivity arrays should be of same length.");
  odb_SequenceSequenceInt wide;
  odb_SequenceInt row;
  for (int k = 0; k < 31; ++k) row.append(1);
  wide.append(row);
  EXPECT_EQ(MessageOf([&] { part.addElements(Ints({1}), wide, "U31"); }),
            "Elements of 31 nodes are not supported; an element has at most 30 nodes.");
  EXPECT_EQ(MessageOf([&] {
              part.addElements(Ints({30}), Rows({{1, 2, 99, 4}}), "S4R");
            }),
            "Element 30 of part \"PLATE\" refers to node 99, which the part does not have.");
  EXPECT_EQ(MessageOf([&] {
              part.addElements(Ints({30, 10}), Rows({{1, 2, 5, 4}, {1, 2, 5, 4}}), "S4R");
            }),
            "Duplicate element label 10 in part \"PLATE\".");
  EXPECT_EQ(part.elements().size(), 2);
}

TEST_F(DiscretePartElements, RefusalsFoundTogetherAreReportedInTheStatedOrder) {
  odb_DiscretePart& part = TwoQuads();
  EXPECT_EQ(MessageOf([&] {
              part.addElements(Ints({10, 31}), Rows({{1, 2, 5, 4}, {1, 2, 99, 4}}), "S4R");
            }),
            "Element 31 of part \"PLATE\" refers to node 99, which the part does not have.");
  EXPECT_EQ(MessageOf([&] {
              part.addElements(Ints({10, 31}), Rows({{1, 2, 5, 4}, {1, 2, 5}}), "S4R");
            }),
            "Element 31 of type S4R has 3 nodes; the type has 4.");
  EXPECT_EQ(MessageOf([&] {
              part.addElements(Ints({31, 32}), Rows({{1, 2, 99, 4}, {1, 2, 5}}), "S4R");
            }),
            "Element 32 of type S4R has 3 nodes; the type has 4.");
  odb_SequenceSequenceInt wide;
  odb_SequenceInt row;
  for (int k = 0; k < 31; ++k) row.append(1);
  wide.append(row);
  wide.append(Ints({1}));
  EXPECT_EQ(MessageOf([&] {
              part.addElements(Ints({1, 2}), wide, "U31");
            }),
            "Element connectivity arrays should be of same length.");
  EXPECT_EQ(part.elements().size(), 2);
}

TEST_F(DiscretePartElements, AnUnknownNodeFarIntoALargeAdditionLeavesTheFileAsItWas) {
  odb_DiscretePart& part = TwoQuads();
  saveOdb(*m_odb);
  const char* arrays = "SELECT count(*) FROM array";
  const char* chunkBytes = "SELECT coalesce(sum(length(data)), 0) FROM array_chunk";
  long long arraysBefore = FileCount(m_path, arrays);
  long long bytesBefore = FileCount(m_path, chunkBytes);
  const int n = 50000;  // several pieces of the conversion
  odb_SequenceInt labels;
  odb_SequenceSequenceInt rows;
  for (int i = 0; i < n; ++i) {
    labels.append(100 + i);
    rows.append(i == n - 10 ? Ints({1, 2, 77, 4}) : Ints({1, 2, 5, 4}));
  }
  EXPECT_EQ(MessageOf([&] { part.addElements(labels, rows, "S4R"); }),
            "Element " + std::to_string(100 + n - 10) +
                " of part \"PLATE\" refers to node 77, which the part does not have.");
  saveOdb(*m_odb);
  EXPECT_EQ(FileCount(m_path, arrays), arraysBefore);
  EXPECT_EQ(FileCount(m_path, chunkBytes), bytesBefore);
  EXPECT_EQ(part.elements().size(), 2);

  rows = odb_SequenceSequenceInt();
  for (int i = 0; i < n; ++i) rows.append(Ints({6, 5, 2, 3}));
  odb_SequenceInt many = labels;
  odb_SequenceSequenceInt longRows = rows;
  for (int i = 0; i < 30000; ++i) {  // past the size that is converted on two threads
    many.append(100 + n + i);
    longRows.append(Ints({6, 5, 2, 3}));
  }
  longRows.get(n + 20000) = Ints({6, 5, 2});
  EXPECT_EQ(
      MessageOf([&] { part.addElements(many, longRows, "S4R"); }),
      "Element " + std::to_string(100 + n + 20000) + " of type S4R has 3 nodes; the type has 4.");
  part.addElements(labels, rows, "S4R", "MANY");
  odb_DiscretePart& back = Reopen().parts().get("PLATE");
  EXPECT_EQ(back.elements().size(), n + 2);
  EXPECT_EQ(back.getElementFromLabel(100 + n - 1).connectivity(), Ints({6, 5, 2, 3}));
  EXPECT_EQ(back.elementSet("MANY").elements().size(), n);
}

TEST_F(DiscretePartElements, ReadBackInNodeLabelsWithTheirTypeClassAndCategory) {
  odb_DiscretePart& part = TwoQuads();
  odb_SectionCategory& category = m_odb->SectionCategory("shell < STEEL >", "");
  part.addElements(Ints({7}), Rows({{6, 5, 2}}), "S3", "TRI", category);
  part.addElements(Ints({8}), Rows({{1, 2, 3, 4, 5}}), "MYELEM5");

  odb_Element quad = part.getElementFromLabel(20);
  EXPECT_EQ(quad.index(), 1);
  EXPECT_EQ(quad.connectivity(), Ints({2, 3, 6, 5}));
  EXPECT_EQ(quad.connectivityIndices(), Ints({1, 2, 5, 4}));
  EXPECT_EQ(quad.geometryClass(), odb_Enum::GEOMETRY_SHELL);
  odb_Element tri = part.elements(2);
  EXPECT_EQ(tri.label(), 7);
  EXPECT_EQ(tri.type(), "S3");
  EXPECT_EQ(tri.sectionCategory().name(), "shell < STEEL >");
  EXPECT_EQ(part.elementSet("TRI").elements().size(), 1);
  odb_Element user = part.getElementFromLabel(8);
  EXPECT_EQ(user.geometryClass(), odb_Enum::GEOMETRY_USER);
  EXPECT_EQ(user.numberOfNodes(), 5);
  EXPECT_EQ(user.integrationPoints(), 1);

  int positions[] = {5, 4, 1};
  odb_Element fromPositions =
      odb_ElementAccess::FromPositions(7, 2, positions, 3, "S3", category, odb_Enum::GEOMETRY_SHELL,
                                       quad.meshIndex(), 1, odb_ElementAccess::NodeList(quad));
  EXPECT_EQ(fromPositions.connectivity(), Ints({6, 5, 2}));
}

TEST_F(DiscretePartElements, KnownTypesRefuseAnotherNodeCountAndStoreNothing) {
  odb_DiscretePart& part = TwoQuads();
  EXPECT_EQ(MessageOf([&] {
              part.addElements(Ints({17}), Rows({{1, 2, 5, 4, 2, 3, 6, 5}}), "C3D20");
            }),
            "Element 17 of type C3D20 has 8 nodes; the type has 20.");
  // A later row names its own element: one converted into the store, and one checked ahead of
  // a duplicate label that the store refuses before reading any row.
  EXPECT_EQ(MessageOf([&] {
              part.addElements(Ints({30, 31}), Rows({{1, 2, 5, 4}, {2, 3, 6, 5, 1}}), "M3D4");
            }),
            "Element 31 of type M3D4 has 5 nodes; the type has 4.");
  EXPECT_EQ(MessageOf([&] {
              part.addElements(Ints({10, 32}), Rows({{1, 2, 5, 4}, {2, 3, 6}}), "S4R");
            }),
            "Element 32 of type S4R has 3 nodes; the type has 4.");
  // The type's count is named before the limit on nodes per element.
  odb_SequenceInt wide;
  for (int k = 0; k < 31; ++k) wide.append(1);
  odb_SequenceSequenceInt wideRows;
  wideRows.append(wide);
  EXPECT_EQ(MessageOf([&] { part.addElements(Ints({40}), wideRows, "C3D20R"); }),
            "Element 40 of type C3D20R has 31 nodes; the type has 20.");

  odb_DiscretePart& back = Reopen().parts().get("PLATE");
  EXPECT_EQ(back.elements().size(), 2);
  for (int label : {17, 31, 32, 40})
    EXPECT_EQ(MessageOf([&] { back.getElementFromLabel(label); }), "Invalid Element label");
}

TEST_F(DiscretePartElements, UnknownTypesWarnOncePerDatabaseAndRoundTripAsUserElements) {
  odb_DiscretePart& part = TwoQuads();
  TakeWarnings();
  part.addElements(Ints({30}), Rows({{1, 2, 4, 5}}), "c3d4");
  EXPECT_EQ(TakeWarnings(),
            "Warning: Element type \"c3d4\" is not known to the library (type names are matched "
            "exactly, and \"C3D4\" is known); its elements are stored as user elements.\n");
  part.addElements(Ints({31}), Rows({{2, 3, 5, 6}}), "c3d4");
  m_odb->DiscretePart("OTHER", odb_Enum::THREE_D, odb_Enum::DEFORMABLE_BODY);
  EXPECT_EQ(TakeWarnings(), "");
  // A refused call stores nothing, so it has nothing to warn about.
  EXPECT_EQ(MessageOf([&] {
              part.addElements(Ints({32}), Rows({{1, 99}}), "SPRINGA");
            }),
            "Element 32 of part \"PLATE\" refers to node 99, which the part does not have.");
  EXPECT_EQ(TakeWarnings(), "");
  part.addElements(Ints({32, 33}), Rows({{1, 6}, {3, 4}}), "SPRINGA");
  part.addElements(Ints({34}), Rows({{1, 2, 3, 4, 5, 6}}), "STRI65");
  EXPECT_EQ(TakeWarnings(),
            "Warning: Element type \"SPRINGA\" is not known to the library; its elements are "
            "stored as user elements.\n"
            "Warning: Element type \"STRI65\" is not known to the library; its elements are "
            "stored as user elements.\n");

  odb_DiscretePart& back = Reopen().parts().get("PLATE");
  EXPECT_EQ(back.elements().size(), 7);
  const odb_Element lower = back.getElementFromLabel(31);
  EXPECT_EQ(lower.type(), "c3d4");
  EXPECT_EQ(lower.geometryClass(), odb_Enum::GEOMETRY_USER);
  EXPECT_EQ(lower.connectivity(), Ints({2, 3, 5, 6}));
  EXPECT_EQ(back.getElementFromLabel(33).connectivity(), Ints({3, 4}));
  EXPECT_EQ(back.getElementFromLabel(34).numberOfNodes(), 6);

  // Another session of the same file warns again, once.
  closeOdb(*m_odb);
  m_odb = &openOdb(m_path.c_str());
  odb_DiscretePart& again = m_odb->parts().get("PLATE");
  again.addElements(Ints({35}), Rows({{1, 2}}), "SPRINGA");
  again.addElements(Ints({36}), Rows({{2, 3}}), "SPRINGA");
  EXPECT_EQ(TakeWarnings(),
            "Warning: Element type \"SPRINGA\" is not known to the library; its elements are "
            "stored as user elements.\n");
}

// The flat forms: contiguous arrays whose sizes are checked, then the nested forms' checks.
using DiscretePartFlatMesh = MeshFile;

TEST_F(DiscretePartFlatMesh, AdditionsFromContiguousArraysReadBackIntoTheCallersArrays) {
  odb_DiscretePart& part = m_odb->DiscretePart("P", odb_Enum::THREE_D, odb_Enum::DEFORMABLE_BODY);
  const std::vector<int> nodes = {7, 3, 9, 4, 11, 12};
  const std::vector<float> xyz = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0, 0, 1, 1, 0, 1};
  part.addNodes(nodes, xyz, "ALL");
  part.addElements(std::vector<int>{30, 20}, std::vector<int>{7, 3, 9, 4, 7, 3, 9, 11}, "S4R");
  part.addElements(std::vector<int>{40}, std::vector<int>{7, 3, 9, 4, 11, 12}, "MY6", "", {});
  TakeWarnings();
  m_odb->rootAssembly().Instance("P-1", part, Points({{10, 0, 0}}));
  Reopen();
  const odb_Instance& back = m_odb->rootAssembly().instance("P-1");
  std::vector<int> labels(6), elements(3), connectivity(back.connectivityLength());
  std::vector<float> placed(18);
  back.readNodes(labels, placed);
  EXPECT_EQ(labels, nodes);
  for (std::size_t i = 0; i < xyz.size(); ++i)
    EXPECT_FLOAT_EQ(placed[i], xyz[i] + (i % 3 == 0 ? 10.0f : 0.0f)) << "instance placement";
  back.readElements(elements, connectivity);
  EXPECT_EQ(elements, (std::vector<int>{30, 20, 40}));
  EXPECT_EQ(connectivity, (std::vector<int>{7, 3, 9, 4, 7, 3, 9, 11, 7, 3, 9, 4, 11, 12}));
  EXPECT_EQ(back.nodes()[4].label(), 11) << "the records see what the flat form wrote";
  EXPECT_EQ(m_odb->parts()["P"].nodeSet("ALL").nodes().size(), 6);
  std::vector<float> unplaced(18);
  m_odb->parts()["P"].readNodes({}, unplaced);
  EXPECT_EQ(unplaced, xyz);
  std::vector<float> seventeen(17);
  EXPECT_EQ(MessageOf([&] { back.readNodes(labels, seventeen); }),
            "readNodes(): the coordinate array holds 17 values; the mesh gives 18.");
  std::vector<int> short_(2);
  EXPECT_EQ(MessageOf([&] { back.readElements(short_, {}); }),
            "readElements(): the label array holds 2 values; the mesh gives 3.");
}

TEST_F(DiscretePartFlatMesh, SizesAreCheckedBeforeAnythingIsReadOrWritten) {
  odb_DiscretePart& part = m_odb->DiscretePart("P", odb_Enum::THREE_D, odb_Enum::DEFORMABLE_BODY);
  odb_DiscretePart& flat =
      m_odb->DiscretePart("F", odb_Enum::TWO_D_PLANAR, odb_Enum::DEFORMABLE_BODY);
  EXPECT_EQ(MessageOf([&] { part.addNodes(std::vector<int>{}, std::vector<float>{}); }),
            "No node labels provided.");
  EXPECT_EQ(MessageOf([&] {
              part.addNodes(std::vector<int>{1, 2}, std::vector<float>{0, 0, 0, 1, 0});
            }),
            "addNodes() was given 2 node labels and 5 coordinates; a part of this dimension "
            "takes 3 coordinates per node (6).");
  flat.addNodes(std::vector<int>{1, 2, 3, 4}, std::vector<float>{0, 0, 1, 0, 1, 1, 0, 1});
  part.addNodes(std::vector<int>{1, 2, 3, 4}, std::vector<float>(12));
  EXPECT_EQ(
      MessageOf([&] {
        part.addElements(std::vector<int>{1, 2}, std::vector<int>{1, 2, 3, 4, 1, 2, 3}, "S4R");
      }),
      "addElements() was given 2 element labels and 7 connectivity entries; elements of "
      "type S4R take 4 nodes each (8).");
  EXPECT_EQ(MessageOf([&] {
              part.addElements(std::vector<int>{1, 2}, std::vector<int>{1, 2, 3}, "USER3");
            }),
            "addElements() was given 2 element labels and 3 connectivity entries, which is not "
            "a whole number of nodes per element.");
  EXPECT_EQ(MessageOf([&] {
              part.addElements(std::vector<int>{1}, std::vector<int>{1, 2, 3, 99}, "S4R");
            }),
            "Element 1 of part \"P\" refers to node 99, which the part does not have.");
  EXPECT_EQ(MessageOf([&] {
              part.addNodes(std::vector<int>{4}, std::vector<float>{0, 0, 0});
            }),
            "Duplicate node label 4 in part \"P\".");
  Reopen();
  EXPECT_EQ(m_odb->parts()["P"].elements().size(), 0);
  EXPECT_EQ(m_odb->parts()["P"].nodes().size(), 4);
  std::vector<float> planar(12);
  m_odb->parts()["F"].readNodes({}, planar);
  EXPECT_EQ(planar, (std::vector<float>{0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0})) << "z = 0";
}
