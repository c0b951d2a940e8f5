#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "HistoryFile.h"
#include "odb_OdbData.h"
#include "store_Statement.h"

using PairList = std::vector<std::pair<double, float>>;

class HistoryOutput : public HistoryFile {
 protected:
  void SetUp() override {
    HistoryFile::SetUp();
    m_region = &m_step->HistoryRegion("", "", odb_HistoryPoint(m_instance->getNodeFromLabel(3)));
    m_u = &m_region->HistoryOutput("U2", "tip deflection");
  }
  odb_HistoryRegion* m_region = nullptr;
  odb_HistoryOutput* m_u = nullptr;
};

TEST_F(HistoryOutput, AppendInCallOrderThroughAllThreeForms) {
  m_u->addData(0.5, 1.25);
  m_u->addData(Floats({0.25f, 1.0f}), Floats({2.0f, 3.0f}));
  m_u->addData(Points({{2.0f, 4.0f}, {1.5f, 5.0f}}));
  // Times are kept as given, unsorted; values are narrowed to float.
  EXPECT_EQ(Pairs(m_u->data()),
            (PairList{{0.5, 1.25f}, {0.25, 2.0f}, {1.0, 3.0f}, {2.0, 4.0f}, {1.5, 5.0f}}));
  m_u->addData(0.1, 0.1);
  EXPECT_EQ(m_u->data().time(5), 0.1);
  EXPECT_EQ(m_u->data().value(5), 0.1f);
  const odb_SequenceSequenceFloat nested = m_u->data();
  ASSERT_EQ(nested.size(), 6);
  EXPECT_EQ(nested[3][0], 2.0f);
  EXPECT_EQ(nested[3][1], 4.0f);
}

TEST_F(HistoryOutput, RefuseMalformedDataAndAppendNone) {
  m_u->addData(0.0, 1.0);
  EXPECT_EQ(MessageOf([&] {
              m_u->addData(Floats({1, 2}), Floats({1}));
            }),
            "History time and data array of unequal length.");
  EXPECT_EQ(MessageOf([&] {
              m_u->addData(Points({{1, 2}, {3, 4, 5}}));
            }),
            "Data added to a history variable should be of width 2");
  EXPECT_EQ(m_u->data().size(), 1);
  EXPECT_EQ(
      MessageOf([] {
        odb_HistoryOutput("X", "", odb_Enum::SCALAR, Points({{1, 2}}), Points({{1, 2}, {3, 4}}));
      }),
      "Data sequences added to a history variable should be of equal length.");
  EXPECT_EQ(MessageOf([] { odb_HistoryOutput("X", "", odb_Enum::SCALAR, Points({{1}})); }),
            "Data added to a history variable should be of width 2");
}

TEST_F(HistoryOutput, SubsetsDropPairsExactlyAtTheirBounds) {
  m_u->addData(Points({{0.0f, 10}, {0.5f, 11}, {1.0f, 12}, {1.5f, 13}}));
  const odb_HistoryOutput after = m_u->getSubset(0.0);
  EXPECT_EQ(Pairs(after.data()), (PairList{{0.5, 11}, {1.0, 12}, {1.5, 13}}));
  EXPECT_EQ(after.name(), "U2");
  EXPECT_EQ(after.description(), "tip deflection");
  EXPECT_FALSE(after.isAttached());
  EXPECT_EQ(Pairs(m_u->getSubset(0.0, 1.5).data()), (PairList{{0.5, 11}, {1.0, 12}}));
  EXPECT_EQ(Pairs(m_u->getSubset(0.4, 1.6).data()), (PairList{{0.5, 11}, {1.0, 12}, {1.5, 13}}));
  EXPECT_EQ(m_u->getSubset(1.5).data().size(), 0);
  // A detached output is filtered the same way, in memory.
  EXPECT_EQ(Pairs(after.getSubset(0.5, 1.5).data()), (PairList{{1.0, 12}}));
}

TEST_F(HistoryOutput, OrphansRefuseDataAndKeepWhatTheyHold) {
  m_u->addData(1.0, 2.0);
  odb_HistoryOutput subset = m_u->getSubset(0.0);
  odb_HistoryOutput built("X", "made here", odb_Enum::SCALAR, Points({{1, 2}}), Points({{1, 7}}));
  const char* orphan =
      "Cannot add data to an orphan history object. The object was likely created using the "
      "getSubset method, or by a program that did not keep the reference to the history objects.";
  EXPECT_EQ(MessageOf([&] { subset.addData(2.0, 3.0); }), orphan);
  EXPECT_EQ(MessageOf([&] { built.addData(Points({{2, 3}})); }), orphan);
  EXPECT_EQ(MessageOf([&] { built.addData(Floats({2}), Floats({3, 4})); }), orphan);
  EXPECT_EQ(Pairs(subset.data()), (PairList{{1.0, 2.0f}}));
  EXPECT_EQ(Pairs(built.conjugateData()), (PairList{{1.0, 7.0f}}));
  EXPECT_EQ(built.getSubset(0.0).conjugateData().size(), 1);
  EXPECT_EQ(m_u->conjugateData().size(), 0);
}

TEST_F(HistoryOutput, SurviveSaveCloseAndReopenAndGrowByNewBlocks) {
  m_u->addData(0.1, 1.0);
  m_u->addData(0.2, 2.0);
  saveOdb(*m_odb);
  m_u->addData(0.3, 3.0);
  // Saved and unsaved pairs read back together, in order.
  EXPECT_EQ(m_u->data().size(), 3);
  closeOdb(*m_odb);  // the unsaved pair is lost with the close

  odb_Odb& writer = openOdb(m_path.c_str(), false);
  odb_HistoryRegion& region = writer.steps()["S"].historyRegions()["Node I.3"];
  odb_HistoryOutput& u = region.historyOutputs()["U2"];
  EXPECT_TRUE(u.isAttached());
  EXPECT_EQ(u.description(), "tip deflection");
  EXPECT_EQ(Pairs(u.data()), (PairList{{0.1, 1.0f}, {0.2, 2.0f}}));
  u.addData(0.4, 4.0);
  saveOdb(writer);
  closeOdb(writer);

  odb_Odb& reader = openOdb(m_path.c_str(), true);
  EXPECT_EQ(Pairs(reader.steps()["S"].historyRegions()["Node I.3"].historyOutputs()["U2"].data()),
            (PairList{{0.1, 1.0f}, {0.2, 2.0f}, {0.4, 4.0f}}));
  // Two saves with pairs, two blocks: the first was not rewritten by the second.
  store_Statement blocks =
      odb_OdbAccess::Store(reader)->Sql("SELECT count(*), sum(count) FROM history_block");
  ASSERT_TRUE(blocks.Step());
  EXPECT_EQ(blocks.Int(0), 2);
  EXPECT_EQ(blocks.Int(1), 3);
  EXPECT_EQ(MessageOf([&] {
              reader.steps()["S"].historyRegions()["Node I.3"].historyOutputs()["U2"].addData(1, 1);
            }),
            "The database is read-only: cannot write.");
}
