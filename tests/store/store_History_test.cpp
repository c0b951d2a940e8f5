#include "store_History.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "TempDir.h"
#include "store_Statement.h"

class StoreHistory : public ::testing::Test {
 protected:
  void SetUp() override {
    m_db = store_Database::Create(m_path);
    store_StepRecord step;
    step.name = "S";
    m_db->AddStep(step);
    store_HistoryRegionRecord region;
    region.name = "Assembly Assembly";
    region.point.position = 9;
    store_AddHistoryRegion(*m_db, step.id, region);
    store_HistoryOutputRecord output;
    output.name = "ALLIE";
    output.type = 2;
    store_AddHistoryOutput(*m_db, region.id, output);
    m_series = std::make_shared<store_HistorySeries>(m_db, output.id);
  }

  int Blocks() {
    store_Statement q = m_db->Sql("SELECT count(*) FROM history_block");
    return q.Step() ? q.Int(0) : -1;
  }

  // Reads every pair and checks that pair i is (i, i / 2).
  void ExpectPairs(std::size_t n) {
    store_LargeVector<double> times;
    store_LargeVector<float> values;
    m_series->Read(times, values);
    ASSERT_EQ(times.size(), n);
    ASSERT_EQ(values.size(), n);
    for (std::size_t i = 0; i < n; ++i) {
      if (times[i] != static_cast<double>(i) || values[i] != static_cast<float>(i) / 2)
        FAIL() << "pair " << i << " is (" << times[i] << ", " << values[i] << ")";
    }
  }

  TempDir m_dir;
  std::string m_path = m_dir.file("history.odb");
  std::shared_ptr<store_Database> m_db;
  std::shared_ptr<store_HistorySeries> m_series;
};

TEST_F(StoreHistory, WriteAFullBufferAsABlockAndTheRestAtTheSave) {
  const std::size_t n = store_kHistoryBlockPairs + 3;
  for (std::size_t i = 0; i < n; ++i)
    m_series->Append(static_cast<double>(i), static_cast<float>(i) / 2);
  EXPECT_EQ(Blocks(), 1);
  EXPECT_EQ(m_series->Held(), 3u);
  ExpectPairs(n);
  m_db->Commit();
  EXPECT_EQ(Blocks(), 2);
  EXPECT_EQ(m_series->Held(), 0u);
  ExpectPairs(n);
}

TEST_F(StoreHistory, SplitAnArrayAtTheBlockSize) {
  std::vector<double> times(store_kHistoryBlockPairs * 2 + 1);
  std::vector<float> values(times.size());
  for (std::size_t i = 0; i < times.size(); ++i) {
    times[i] = static_cast<double>(i);
    values[i] = static_cast<float>(i) / 2;
  }
  m_series->Append(times.data(), values.data(), times.size());
  EXPECT_EQ(Blocks(), 2);
  EXPECT_EQ(m_series->Held(), 1u);
  m_db->Commit();
  store_Statement q = m_db->Sql("SELECT count FROM history_block ORDER BY block");
  std::vector<int> counts;
  while (q.Step()) counts.push_back(q.Int(0));
  EXPECT_EQ(counts,
            (std::vector<int>{int(store_kHistoryBlockPairs), int(store_kHistoryBlockPairs), 1}));
  ExpectPairs(times.size());
}

TEST_F(StoreHistory, RollbackDropsWrittenAndHeldPairsAlike) {
  m_series->Append(0.0, 0.0f);
  m_db->Commit();
  for (std::size_t i = 1; i <= store_kHistoryBlockPairs + 1; ++i)
    m_series->Append(static_cast<double>(i), static_cast<float>(i) / 2);
  m_db->Rollback();
  EXPECT_EQ(Blocks(), 1);
  ExpectPairs(1);
  // The series is asked to flush again after a rollback.
  m_series->Append(1.0, 0.5f);
  m_db->Commit();
  EXPECT_EQ(Blocks(), 2);
  ExpectPairs(2);
}

TEST_F(StoreHistory, RefuseDamagedBlocks) {
  m_series->Append(0.0, 0.0f);
  m_db->Commit();
  m_db->Sql("UPDATE history_block SET count = 2").Run();
  store_LargeVector<double> times;
  store_LargeVector<float> values;
  EXPECT_THROW(m_series->Read(times, values), store_Error);
}
