#include <gtest/gtest.h>

#include "HistoryFile.h"

class HistoryRegion : public HistoryFile {};

TEST_F(HistoryRegion, RefuseATakenNameAndAnUnknownLoadCase) {
  odb_HistoryPoint whole(m_odb->rootAssembly());
  odb_HistoryRegion& region = m_step->HistoryRegion("", "", whole);
  EXPECT_EQ(region.name(), "Assembly Assembly");
  EXPECT_EQ(region.description(), "Output at Assembly Assembly");
  EXPECT_EQ(MessageOf([&] { m_step->HistoryRegion("Assembly Assembly", "", whole); }),
            "A historyRegion named 'Assembly Assembly' already exists in step 'S'.");
  EXPECT_EQ(MessageOf([&] { m_step->HistoryRegion("R", "", whole, odb_LoadCase("LC1")); }),
            "Key \"LC1\" not found in repository");
  m_step->LoadCase("LC1");
  EXPECT_EQ(m_step->HistoryRegion("R", "", whole, odb_LoadCase("LC1")).loadCase().name(), "LC1");
  EXPECT_EQ(m_step->historyRegions().size(), 2);
}

TEST_F(HistoryRegion, RefuseOutputsTheStoreCannotHold) {
  odb_Instance& i = *m_instance;
  odb_HistoryRegion& nodal =
      m_step->HistoryRegion("", "", odb_HistoryPoint(i.getNodeFromLabel(1), i));
  EXPECT_EQ(MessageOf([&] { nodal.HistoryOutput("U", "", odb_Enum::VECTOR); }),
            "Only SCALAR data allowed for a historyVariable object.");
  odb_HistoryRegion& elementNodal = m_step->HistoryRegion(
      "", "", odb_HistoryPoint(i.getElementFromLabel(10), i.getNodeFromLabel(1), i));
  EXPECT_EQ(elementNodal.position(), odb_Enum::ELEMENT_NODAL);
  EXPECT_EQ(MessageOf([&] { elementNodal.HistoryOutput("S11", ""); }),
            "odb_Enum::ELEMENT_NODAL history not allowed.");
  odb_HistoryRegion& nowhere = m_step->HistoryRegion("", "", odb_HistoryPoint());
  EXPECT_EQ(nowhere.name(), "Unknown region");
  EXPECT_EQ(MessageOf([&] { nowhere.HistoryOutput("X", ""); }),
            "HistoryOutput cannot be created for this output location");
  EXPECT_EQ(nodal.historyOutputs().size(), 0);
  // The same name gives the same output back.
  nodal.HistoryOutput("U1", "").addData(1.0, 2.0);
  EXPECT_EQ(nodal.HistoryOutput("U1", "").data().size(), 1);

  odb_Odb& reader = Reopen();
  odb_HistoryRegion& stored = reader.steps()["S"].historyRegions()["Node I.1"];
  EXPECT_EQ(MessageOf([&] { stored.HistoryOutput("U2", ""); }), "HistoryOutput request failed.");
}

TEST_F(HistoryRegion, GiveNodeAndElementPointsAnInternalResultsSet) {
  odb_Instance& i = *m_instance;
  m_step->HistoryRegion("", "", odb_HistoryPoint(i.getNodeFromLabel(3), i)).HistoryOutput("U1", "");
  m_step->HistoryRegion("", "", odb_HistoryPoint(i.getElementFromLabel(20), 1, i))
      .HistoryOutput("S11", "");
  // The same node recorded in a second step reuses the set.
  NewStep("S2")
      .HistoryRegion("", "", odb_HistoryPoint(i.getNodeFromLabel(3), i))
      .HistoryOutput("U1", "");
  odb_Set& nodes = i.nodeSets()["Node I.3 results_nset"];
  EXPECT_TRUE(nodes.isInternal());
  ASSERT_EQ(nodes.nodes().size(), 1);
  EXPECT_EQ(nodes.nodes()[0].label(), 3);
  EXPECT_EQ(i.elementSets()["Element I.20 Int Point 1 results_elset"].elements()[0].label(), 20);
  odb_Odb& reader = Reopen();
  odb_Instance& stored = reader.rootAssembly().instance("I");
  EXPECT_TRUE(stored.nodeSets().isMember("Node I.3 results_nset"));
  EXPECT_EQ(stored.nodeSets().size(), 1);
}

TEST_F(HistoryRegion, SubsetsAreOrphansWithTheirOutputsCut) {
  odb_HistoryRegion& region =
      m_step->HistoryRegion("TIP", "the tip", odb_HistoryPoint(*m_instance));
  region.HistoryOutput("A", "").addData(Points({{0, 1}, {1, 2}, {2, 3}}));
  region.HistoryOutput("B", "").addData(Points({{1, 5}}));
  odb_HistoryRegion later = region.getSubset(1.0);
  EXPECT_TRUE(later.isOrphan());
  EXPECT_FALSE(region.isOrphan());
  EXPECT_EQ(later.name(), "TIP");
  EXPECT_EQ(later.description(), "the tip");
  EXPECT_EQ(later.historyPoint().position(), odb_Enum::WHOLE_PART_INSTANCE);
  EXPECT_EQ(Pairs(later.historyOutputs()["A"].data()),
            (std::vector<std::pair<double, float>>{{2, 3}}));
  EXPECT_EQ(later.historyOutputs()["B"].data().size(), 0);
  EXPECT_EQ(region.getSubset(0.0, 2.0).historyOutputs()["A"].data().size(), 1);
  odb_HistoryRegion justA = region.getSubset("A");
  EXPECT_EQ(justA.historyOutputs().size(), 1);
  EXPECT_EQ(justA.historyOutputs()["A"].data().size(), 3);
  EXPECT_EQ(MessageOf([&] { region.getSubset("C"); }), "Key \"C\" not found in repository");
  EXPECT_EQ(MessageOf([&] { later.HistoryOutput("D", ""); }),
            "Adding a history output object to an orphan History object is not allowed.");
  EXPECT_EQ(MessageOf([&] { justA.historyOutputs()["A"].addData(5, 5); }).substr(0, 44),
            "Cannot add data to an orphan history object.");
}

TEST_F(HistoryRegion, AreReadBackWithTheirOutputsInEveryStep) {
  m_step->HistoryRegion("", "", odb_HistoryPoint(*m_instance)).HistoryOutput("ALLIE", "energy");
  NewStep("S2").HistoryRegion("", "", odb_HistoryPoint(odb_String("Whole Model")));
  odb_Odb& reader = Reopen();
  odb_HistoryRegion& instance = reader.steps()["S"].historyRegions()["Instance I"];
  EXPECT_EQ(instance.historyPoint().instanceName(), "I");
  EXPECT_EQ(instance.historyOutputs()["ALLIE"].description(), "energy");
  EXPECT_EQ(instance.historyOutputs()["ALLIE"].type(), odb_Enum::SCALAR);
  EXPECT_EQ(reader.steps()["S2"].historyRegions()["Assembly Assembly"].position(),
            odb_Enum::WHOLE_MODEL);
}
