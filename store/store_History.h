// store_History: the history regions of a step, their outputs, and each output's (time, value)
// pairs.
//
// Regions and outputs are rows, written at once inside the database's open transaction. The
// pairs of an output are written in blocks: the pairs appended between two saves are held in
// memory by the output's store_HistorySeries and written at the next save as one block, two
// arrays (times as float64, values as float32) of a few chunks each. Appending is amortised
// constant time and a save never rewrites an earlier block, so appending after a reopen adds
// blocks. Reading an output reads its blocks' arrays whole: a million pairs are a few blob reads.
// One thread at a time.
#ifndef STORE_HISTORY_H
#define STORE_HISTORY_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "store_Database.h"
#include "store_LargeAllocator.h"

// The most pairs a series holds before it writes them as a block (12 MiB of pairs).
constexpr std::size_t store_kHistoryBlockPairs = 1u << 20;

// What a region describes; `position` is the point's kind (odb_Enum::odb_ResultPositionEnum).
struct store_HistoryPointRecord {
  int position = 0;
  std::string instance;
  int node = -1;
  int element = -1;
  int integrationPoint = 0;
  int face = 0;
  int sectionPoint = -1;  // -1: none
  std::string sectionPointDescription;
  std::string set;
  int setKind = 0;  // store_SetKind
  std::string name;
};

struct store_HistoryRegionRecord {
  std::int64_t id = 0;  // assigned by the store
  std::string name;
  std::string description;
  std::string loadCase;
  store_HistoryPointRecord point;
};

struct store_HistoryOutputRecord {
  std::int64_t id = 0;  // assigned by the store
  std::string name;
  std::string description;
  int type = 0;  // odb_Enum::odb_DataTypeEnum
};

// The regions of a step and the outputs of a region, in creation order.
std::vector<store_HistoryRegionRecord> store_HistoryRegions(store_Database& db,
                                                            std::int64_t stepId);
std::int64_t store_AddHistoryRegion(store_Database& db, std::int64_t stepId,
                                    store_HistoryRegionRecord& region);
std::vector<store_HistoryOutputRecord> store_HistoryOutputs(store_Database& db,
                                                            std::int64_t regionId);
std::int64_t store_AddHistoryOutput(store_Database& db, std::int64_t regionId,
                                    store_HistoryOutputRecord& output);

// Gives an instance the internal one-member set `name` (kind store_kNodeSet or
// store_kElementSet) unless it has a set of that kind and name already.
void store_AddResultsSet(store_Database& db, const std::string& instance, int kind,
                         const std::string& name, int label);

// The pairs of one stored output. Shared (std::shared_ptr) by the output's handles; while it
// holds unsaved pairs the database holds it too, until the next save writes them.
class store_HistorySeries : public store_Deferred,
                            public std::enable_shared_from_this<store_HistorySeries> {
 public:
  store_HistorySeries(std::weak_ptr<store_Database> db, std::int64_t outputId)
      : m_db(std::move(db)), m_outputId(outputId) {}

  void Append(double time, float value) {
    if (m_times.size() == store_kHistoryBlockPairs) WriteFullBlock();
    if (!m_queued) Enqueue();
    m_times.push_back(time);
    m_values.push_back(value);
  }
  void Append(const double* times, const float* values, std::size_t n);

  // Every pair: the written blocks in order, then the pairs held in memory.
  void Read(store_LargeVector<double>& times, store_LargeVector<float>& values);
  // The pairs held in memory, not yet written.
  std::size_t Held() const { return m_times.size(); }

  void Flush(store_Database& db) override;
  void Discard() override;

 private:
  // Asks the database to flush this series at the next save.
  void Enqueue();
  // Writes the held pairs as a block while the database is open, keeping the buffers.
  void WriteFullBlock();
  void WriteBlock(store_Database& db);

  std::weak_ptr<store_Database> m_db;
  std::int64_t m_outputId;
  bool m_queued = false;
  store_LargeVector<double> m_times;
  store_LargeVector<float> m_values;
};

#endif
