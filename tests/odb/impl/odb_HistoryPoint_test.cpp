#include <gtest/gtest.h>

#include <string>

#include "HistoryFile.h"
#include "odb_OdbData.h"
#include "store_Statement.h"

class HistoryPoint : public HistoryFile {};

TEST_F(HistoryPoint, NameAndDescribeEveryKindOfPoint) {
  odb_Instance& i = *m_instance;
  const odb_Node node = i.getNodeFromLabel(5);
  const odb_Element element = i.getElementFromLabel(20);
  const odb_SectionPoint top(3, "Top");
  struct Case {
    odb_HistoryPoint point;
    odb_Enum::odb_ResultPositionEnum position;
    const char* name;
    const char* description;
  } cases[] = {
      {odb_HistoryPoint(node, i), odb_Enum::NODAL, "Node I.5",
       "Output at Assembly Assembly Instance I node 5"},
      {odb_HistoryPoint(element, node, i), odb_Enum::ELEMENT_NODAL, "Element I.20 Node I.5",
       "Output at Assembly Assembly Instance I element 20"},
      {odb_HistoryPoint(element, 2, i), odb_Enum::INTEGRATION_POINT, "Element I.20 Int Point 2",
       "Output at Assembly Assembly Instance I element 20 integration point 2"},
      {odb_HistoryPoint(element, 2, top, i), odb_Enum::INTEGRATION_POINT,
       "Element I.20 Int Point 2 Section Point 3",
       "Output at Assembly Assembly Instance I element 20 integration point 2 section point 3"},
      {odb_HistoryPoint(element, odb_Enum::SIDE2, i), odb_Enum::ELEMENT_FACE, "Element I.20 Face 8",
       "Output at Assembly Assembly Instance I element 20"},
      {odb_HistoryPoint(element, 0, i), odb_Enum::WHOLE_ELEMENT, "Element I.20",
       "Output at Assembly Assembly Instance I element 20"},
      {odb_HistoryPoint(i.NodeSet("TIP", Ints({3, 6}))), odb_Enum::WHOLE_REGION, "NodeSet TIP",
       "Output at Assembly Assembly region TIP"},
      {odb_HistoryPoint(i.ElementSet("ALL", Ints({10, 20}))), odb_Enum::WHOLE_REGION,
       "ElementSet ALL", "Output at Assembly Assembly region ALL"},
      {odb_HistoryPoint(i), odb_Enum::WHOLE_PART_INSTANCE, "Instance I",
       "Output at Assembly Assembly Instance I"},
      {odb_HistoryPoint(m_odb->rootAssembly()), odb_Enum::WHOLE_MODEL, "Assembly Assembly",
       "Output at Assembly Assembly"},
      {odb_HistoryPoint(odb_String("Whole Model")), odb_Enum::WHOLE_MODEL, "Assembly Assembly",
       "Output at Assembly Assembly"},
      {odb_HistoryPoint(odb_String("Elsewhere")), odb_Enum::UNDEFINED_POSITION, "Unknown region",
       "Output at unknown location."},
      {odb_HistoryPoint(), odb_Enum::UNDEFINED_POSITION, "Unknown region",
       "Output at unknown location."},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(c.point.position(), c.position);
    EXPECT_EQ(std::string(c.point.name().CStr()), c.name);
    EXPECT_EQ(std::string(c.point.description().CStr()), c.description);
  }
  odb_SequenceElementFace faces;
  faces.append(odb_Enum::SIDE1);
  EXPECT_EQ(odb_HistoryPoint(i.Surface("SKIN", Ints({10}), faces)).name(), "Surface SKIN");
  EXPECT_EQ(odb_HistoryPoint().positionDescription(), "Undefinable position for historyPoint.");
  EXPECT_EQ(odb_HistoryPoint(node, i).positionDescription(), "node");
}

TEST_F(HistoryPoint, RegionsTakeThePointsTextsUnlessGivenTheirOwn) {
  const odb_Node node = m_instance->getNodeFromLabel(6);
  // The node record does not name its instance: the step finds "I", the one placing the plate.
  odb_HistoryRegion& tip = m_step->HistoryRegion("", "", odb_HistoryPoint(node));
  EXPECT_EQ(tip.name(), "Node I.6");
  EXPECT_EQ(tip.description(), "Output at Assembly Assembly Instance I node 6");
  EXPECT_EQ(tip.historyPoint().instanceName(), "I");
  odb_HistoryRegion& named = m_step->HistoryRegion("TIP", "the tip", odb_HistoryPoint(node));
  EXPECT_EQ(named.description(), "the tip");
  EXPECT_EQ(m_step->HistoryRegion("", "", odb_HistoryPoint(node)).name(), "Node I.6 (2)");
  EXPECT_EQ(m_step->historyRegions().size(), 3);
}

TEST_F(HistoryPoint, LeaveTheInstanceOutWhenSeveralPlaceThePart) {
  m_odb->rootAssembly().Instance("J", *m_part);
  const odb_Node node = m_instance->getNodeFromLabel(6);
  odb_HistoryRegion& region = m_step->HistoryRegion("", "", odb_HistoryPoint(node));
  EXPECT_EQ(region.name(), "Node .6");
  EXPECT_EQ(region.description(), "Output at Assembly Assembly node 6");
}

TEST_F(HistoryPoint, ComeBackFromTheFileWithTheirLabelsAndNames) {
  odb_Instance& i = *m_instance;
  m_step->HistoryRegion(
      "", "", odb_HistoryPoint(i.getElementFromLabel(10), 4, odb_SectionPoint(1, "Bottom"), i));
  m_step->HistoryRegion("", "", odb_HistoryPoint(i.ElementSet("ALL", Ints({10, 20}))));
  m_step->HistoryRegion("", "", odb_HistoryPoint(odb_String("Elsewhere")));
  odb_Odb& odb = Reopen();
  odb_Step::HistoryRegionRepository& regions = odb.steps()["S"].historyRegions();
  ASSERT_EQ(regions.size(), 3);
  const odb_HistoryPoint& ip = regions["Element I.10 Int Point 4 Section Point 1"].historyPoint();
  EXPECT_EQ(ip.position(), odb_Enum::INTEGRATION_POINT);
  EXPECT_EQ(ip.element().label(), 10);
  EXPECT_EQ(ip.sectionPoint().description(), "Bottom");
  EXPECT_EQ(ip.name(), "Element I.10 Int Point 4 Section Point 1");
  const odb_HistoryPoint& set = regions["ElementSet ALL"].historyPoint();
  EXPECT_EQ(set.region().type(), odb_Set::ELEMENT_SET);
  EXPECT_EQ(set.description(), "Output at Assembly Assembly region ALL");
  EXPECT_EQ(regions["Unknown region"].historyPoint().regionName(), "Elsewhere");
}

TEST_F(HistoryPoint, RefuseAStoredKindThisReleaseDoesNotKnow) {
  m_step->HistoryRegion("R", "", odb_HistoryPoint(*m_instance));
  odb_OdbAccess::Store(*m_odb)->Sql("UPDATE history_region SET position = 42").Run();
  saveOdb(*m_odb);
  closeOdb(*m_odb);
  odb_Odb& odb = openOdb(m_path.c_str(), true);
  EXPECT_EQ(MessageOf([&] { odb.steps()["S"].historyRegions(); }),
            "Unknown History Output position.");
}
