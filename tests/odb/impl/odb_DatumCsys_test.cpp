#include "odb_DatumCsys.h"

#include <gtest/gtest.h>

#include <cmath>

#include "MeshFile.h"

namespace {

class DatumCsysFile : public MeshFile {
 protected:
  void SetUp() override {
    MeshFile::SetUp();
    m_assembly = &m_odb->rootAssembly();
    // The plate shifted by (10, 0, 0): its nodes 1, 3, 5 sit at (10, 0), (12, 0), (11, 1).
    m_assembly->Instance("P-1", TwoQuads(), Points({{10, 0, 0}}));
  }

  static odb_SequenceFloat Xyz(float x, float y, float z) { return Points({{x, y, z}})[0]; }

  static void ExpectRow(const odb_SequenceFloat& row, double x, double y, double z) {
    ASSERT_EQ(row.size(), 3);
    EXPECT_NEAR(row[0], x, 1e-6);
    EXPECT_NEAR(row[1], y, 1e-6);
    EXPECT_NEAR(row[2], z, 1e-6);
  }

  odb_Assembly* m_assembly = nullptr;
};

const double kHalf = std::sqrt(0.5);

}  // namespace

TEST_F(DatumCsysFile, CreatorsPlaceOriginAndRightHandedUnitAxes) {
  // Directions need be neither unit nor orthogonal: the 2-axis is what of y is normal to x.
  const odb_DatumCsys& axes = m_assembly->DatumCsys("AXES", odb_Enum::CYLINDRICAL, Xyz(1, 2, 3),
                                                    Xyz(2, 2, 0), Xyz(0, 5, 0));
  ExpectRow(axes.origin(), 1, 2, 3);
  ExpectRow(axes.xAxis(), kHalf, kHalf, 0);
  ExpectRow(axes.yAxis(), -kHalf, kHalf, 0);
  ExpectRow(axes.zAxis(), 0, 0, 1);
  EXPECT_EQ(axes.type(), odb_Enum::CYLINDRICAL);
  EXPECT_FALSE(axes.isDynamic());
  EXPECT_EQ(axes.nodeLabels().size(), 0);

  const odb_DatumCsys& points = m_assembly->DatumCsysByThreePoints(
      "POINTS", odb_Enum::RECTANGULAR, Xyz(1, 2, 3), Xyz(1, 2, 7), Xyz(1, 9, 3));
  ExpectRow(points.xAxis(), 0, 0, 1);
  ExpectRow(points.yAxis(), 0, 1, 0);
  ExpectRow(points.zAxis(), -1, 0, 0);

  // Nodes are taken where the instance places them.
  const odb_DatumCsys& nodes =
      m_assembly->DatumCsysByThreeNodes("NODES", odb_Enum::SPHERICAL, "P-1", 2, 3, 5);
  ExpectRow(nodes.origin(), 11, 0, 0);
  ExpectRow(nodes.yAxis(), 0, 1, 0);
  EXPECT_EQ(nodes.definition(), odb_DatumCsys::THREE_NODES);
  EXPECT_TRUE(nodes.isDynamic());
  EXPECT_EQ(nodes.instanceName(), "P-1");
  EXPECT_EQ(nodes.nodeLabels()[2], 5);

  // (10, 0), (12, 0) and (11, 1) lie on the unit circle about (11, 0); the 1-axis points to the
  // first node and the 3-axis follows the nodes' order.
  const odb_DatumCsys& circle =
      m_assembly->DatumCsysByThreeCircNodes("CIRCLE", odb_Enum::CYLINDRICAL, "P-1", 1, 3, 5);
  ExpectRow(circle.origin(), 11, 0, 0);
  ExpectRow(circle.xAxis(), -1, 0, 0);
  ExpectRow(circle.yAxis(), 0, -1, 0);
  ExpectRow(circle.zAxis(), 0, 0, 1);

  const odb_DatumCsys& node = m_assembly->DatumCsysBy("NODE", odb_Enum::RECTANGULAR, "P-1", 6);
  ExpectRow(node.origin(), 12, 1, 0);
  ExpectRow(node.xAxis(), 1, 0, 0);
  EXPECT_EQ(node.definition(), odb_DatumCsys::SIX_DOF_NODE);
  EXPECT_EQ(node.nodeLabels().size(), 1);
  const odb_DatumCsys& turned = m_assembly->DatumCsysBy("TURNED", odb_Enum::RECTANGULAR, "P-1", 6,
                                                        Xyz(0, 1, 0), Xyz(0, 0, 1));
  ExpectRow(turned.zAxis(), 1, 0, 0);
  EXPECT_EQ(m_assembly->datumCsyses().size(), 6);
}

TEST_F(DatumCsysFile, CreatorsRefuseBadInputAndLeaveTheRepositoryAsItWas) {
  m_assembly->DatumCsys("D", odb_Enum::RECTANGULAR, Xyz(0, 0, 0), Xyz(1, 0, 0), Xyz(0, 1, 0));
  const odb_SequenceFloat o = Xyz(0, 0, 0), x = Xyz(1, 0, 0), y = Xyz(0, 1, 0);
  EXPECT_EQ(MessageOf([&] { odb_Assembly().DatumCsys("D", odb_Enum::RECTANGULAR, o, x, y); }),
            "The assembly belongs to no database.");
  EXPECT_EQ(MessageOf([&] { m_assembly->DatumCsys("", odb_Enum::RECTANGULAR, o, x, y); }),
            "Invalid datum coordinate system name.");
  EXPECT_EQ(MessageOf([&] { m_assembly->DatumCsys("D", odb_Enum::RECTANGULAR, o, x, y); }),
            "A datum coordinate system named \"D\" already exists.");
  EXPECT_EQ(MessageOf([&] {
              m_assembly->DatumCsys("T", static_cast<odb_Enum::odb_DatumCsysTypeEnum>(7), o, x, y);
            }),
            "Invalid type 7 for datum coordinate system \"T\": it must be RECTANGULAR, "
            "CYLINDRICAL or SPHERICAL.");
  EXPECT_EQ(MessageOf([&] {
              m_assembly->DatumCsys("L", odb_Enum::RECTANGULAR, o, Points({{1, 0}})[0], y);
            }),
            "Each point and direction of datum coordinate system \"L\" must have 3 components.");
  EXPECT_EQ(MessageOf([&] {
              m_assembly->DatumCsysBy("L", odb_Enum::RECTANGULAR, "P-1", 1, x, odb_SequenceFloat());
            }),
            "Each point and direction of datum coordinate system \"L\" must have 3 components.");
  EXPECT_EQ(
      MessageOf([&] { m_assembly->DatumCsys("P", odb_Enum::RECTANGULAR, o, x, Xyz(-3, 0, 0)); }),
      "The directions of datum coordinate system \"P\" are zero or parallel.");
  EXPECT_EQ(MessageOf([&] { m_assembly->DatumCsys("P", odb_Enum::RECTANGULAR, o, o, y); }),
            "The directions of datum coordinate system \"P\" are zero or parallel.");
  EXPECT_EQ(MessageOf([&] {
              m_assembly->DatumCsysByThreePoints("C", odb_Enum::RECTANGULAR, o, x, Xyz(5, 0, 0));
            }),
            "The points of datum coordinate system \"C\" are coincident or colinear.");
  EXPECT_EQ(MessageOf([&] {
              m_assembly->DatumCsysByThreeNodes("N", odb_Enum::RECTANGULAR, "Q-1", 1, 2, 4);
            }),
            "No instance named \"Q-1\" for datum coordinate system \"N\".");
  EXPECT_EQ(MessageOf([&] {
              m_assembly->DatumCsysByThreeNodes("N", odb_Enum::RECTANGULAR, "P-1", 1, 2, 99);
            }),
            "Instance \"P-1\" has no node 99 for datum coordinate system \"N\".");
  // Nodes 1, 2 and 3 lie on one line: no plane, and no circle.
  EXPECT_EQ(MessageOf([&] {
              m_assembly->DatumCsysByThreeNodes("N", odb_Enum::RECTANGULAR, "P-1", 1, 2, 3);
            }),
            "The points of datum coordinate system \"N\" are coincident or colinear.");
  EXPECT_EQ(MessageOf([&] {
              m_assembly->DatumCsysByThreeCircNodes("N", odb_Enum::RECTANGULAR, "P-1", 1, 2, 3);
            }),
            "The points of datum coordinate system \"N\" are coincident or colinear.");
  EXPECT_EQ(MessageOf([&] { m_assembly->DeleteDatumCsys("N"); }),
            "No datum coordinate system named \"N\" in the assembly.");
  EXPECT_EQ(m_assembly->datumCsyses().size(), 1);
}

TEST_F(DatumCsysFile, SystemsSurviveSaveAndReopenAndDeletionIsStored) {
  {
    // A file that never held a system has no table for them and reads as holding none.
    odb_Odb& empty = Reopen();
    EXPECT_EQ(empty.rootAssembly().datumCsyses().size(), 0);
    closeOdb(empty);
    m_odb = &openOdb(m_path.c_str());
    m_assembly = &m_odb->rootAssembly();
  }
  m_assembly->DatumCsysByThreeCircNodes("CIRCLE", odb_Enum::SPHERICAL, "P-1", 1, 3, 5);
  m_assembly->DatumCsysBy("NODE", odb_Enum::CYLINDRICAL, "P-1", 6, Xyz(0, 1, 0), Xyz(0, 0, 1));
  m_assembly->DatumCsys("GONE", odb_Enum::RECTANGULAR, Xyz(0, 0, 0), Xyz(1, 0, 0), Xyz(0, 1, 0));
  m_assembly->DeleteDatumCsys("GONE");
  const odb_DatumCsys written = m_assembly->datumCsys("NODE");

  odb_Assembly& read = Reopen().rootAssembly();
  ASSERT_EQ(read.datumCsyses().size(), 2);
  EXPECT_FALSE(read.datumCsyses().isMember("GONE"));
  const odb_DatumCsys& circle = read.datumCsys("CIRCLE");
  EXPECT_EQ(circle.type(), odb_Enum::SPHERICAL);
  EXPECT_EQ(circle.definition(), odb_DatumCsys::THREE_CIRC_NODES);
  EXPECT_EQ(circle.instanceName(), "P-1");
  EXPECT_EQ(circle.nodeLabels()[1], 3);
  ExpectRow(circle.origin(), 11, 0, 0);
  const odb_DatumCsys& node = read.datumCsys("NODE");
  EXPECT_EQ(node.type(), odb_Enum::CYLINDRICAL);
  EXPECT_EQ(node.origin(), written.origin());
  EXPECT_EQ(node.zAxis(), written.zAxis());

  const std::string readOnly = "The database is read-only: cannot write.";
  EXPECT_EQ(MessageOf([&] { read.DeleteDatumCsys("NODE"); }), readOnly);
  EXPECT_EQ(MessageOf([&] {
              read.DatumCsys("NEW", odb_Enum::RECTANGULAR, Xyz(0, 0, 0), Xyz(1, 0, 0),
                             Xyz(0, 1, 0));
            }),
            readOnly);
  EXPECT_EQ(read.datumCsyses().size(), 2);
}
