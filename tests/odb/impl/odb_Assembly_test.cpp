#include <gtest/gtest.h>
#include <sqlite3.h>

#include "MeshFile.h"
#include "odb_ElementAccess.h"

using Assembly = MeshFile;

TEST_F(Assembly, PlacesInstancesByTranslationThenRotation) {
  odb_DiscretePart& part = TwoQuads();
  odb_Assembly& assembly = m_odb->rootAssembly();
  odb_Instance& still = assembly.Instance("STILL", part);
  // Shifted by (10, 0, 0), then turned 90 degrees about the z axis through the origin.
  odb_Instance& moved =
      assembly.Instance("MOVED", part, Points({{10, 0, 0}, {0, 0, 0, 0, 0, 1, 90}}));
  EXPECT_EQ(still.getNodeFromLabel(2).coordinates()[0], 1.0f);
  odb_Node node = moved.getNodeFromLabel(2);
  EXPECT_NEAR(node.coordinates()[0], 0.0, 1e-5);
  EXPECT_NEAR(node.coordinates()[1], 11.0, 1e-5);
  EXPECT_EQ(moved.partName(), "PLATE");
  EXPECT_EQ(moved.elements().size(), 2);
  // The instance views the part's stored mesh; it holds no copy.
  EXPECT_EQ(odb_ElementAccess::NodeList(moved.getElementFromLabel(10)),
            odb_ElementAccess::NodeList(part.getElementFromLabel(10)));
  EXPECT_EQ(assembly.meshes().instanceNames().size(), 2);
}

TEST_F(Assembly, RefusesDuplicateAndMalformedInstances) {
  odb_DiscretePart& part = TwoQuads();
  odb_Assembly& assembly = m_odb->rootAssembly();
  assembly.Instance("I-1", part);
  EXPECT_EQ(MessageOf([&] { assembly.Instance("I-1", part); }),
            "A part instance named \"I-1\" already exists.");
  EXPECT_EQ(MessageOf([&] {
              assembly.Instance("I-2", part, Points({{1, 2}}));
            }),
            "The local coordinate system of instance \"I-2\" must be a row of 3 values, "
            "optionally followed by a row of 7.");
  EXPECT_EQ(MessageOf([&] { assembly.Instance("I-3", odb_DiscretePart()); }),
            "Assembly Instance not supported.");
  EXPECT_FALSE(assembly.instances().isMember("I-2"));
}

TEST_F(Assembly, MakesSetsAcrossInstancesWithTheirChecks) {
  odb_DiscretePart& part = TwoQuads();
  odb_Assembly& assembly = m_odb->rootAssembly();
  assembly.Instance("A", part);
  assembly.Instance("B", part, Points({{0, 5, 0}}));
  odb_SequenceString names;
  names.append("A");
  names.append("B");
  odb_Set& set = assembly.NodeSet("ENDS", names, Rows({{1, 4}, {3}}));
  EXPECT_EQ(set.nodes("B").size(), 1);
  EXPECT_EQ(set.nodes("B")[0].coordinates()[1], 5.0f);
  EXPECT_EQ(MessageOf([&] {
              assembly.NodeSet("ENDS", names, Rows({{1}, {1}}));
            }),
            "Duplicate set or surface name");
  odb_SequenceString missing;
  missing.append("NOPE");
  EXPECT_EQ(MessageOf([&] { assembly.NodeSet("X", missing, Rows({{1}})); }),
            "The nodes associated with entity named 'NOPE' cannot be used to construct a set.");
  EXPECT_EQ(MessageOf([&] { assembly.ElementSet("X", missing, Rows({{10}})); }),
            "The elements associated with entity named 'NOPE' cannot be used to construct a set.");
  EXPECT_EQ(MessageOf([&] { assembly.ElementSet("X", names, Rows({{10}})); }),
            "The number of instance names and label rows must agree.");
  EXPECT_EQ(MessageOf([&] {
              assembly.ElementSet("X", names, Rows({{10}, {11}}));
            }),
            "Element 11 not found in \"B\".");
  odb_SequenceSequenceElementFace faces;
  odb_SequenceElementFace row;
  row.append(odb_Enum::SIDE1);
  faces.append(row);
  faces.append(row);
  odb_Set& top = assembly.Surface("TOP", names, Rows({{10}, {20}}), faces);
  EXPECT_EQ(top.faces("B")[0], odb_Enum::SIDE1);
  EXPECT_EQ(assembly.elementSets().size(), 0);
}
