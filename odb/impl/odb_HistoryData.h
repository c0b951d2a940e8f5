// odb_HistoryData: what the handles of history outputs and regions share, and the step's side of
// history regions; internal.
//
// An attached output keeps its pairs in the store's series (saved blocks plus unsaved pairs); a
// detached one keeps them here, in memory, shared read-only with the data() views handed out.
#ifndef ODB_HISTORYDATA_H
#define ODB_HISTORYDATA_H

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "odb_HistoryOutput.h"
#include "odb_HistoryPoint.h"
#include "odb_HistoryRegion.h"
#include "store_Database.h"
#include "store_History.h"

struct odb_StepData;

// (time, value) pairs held in memory.
struct odb_HistoryPairs {
  store_LargeVector<double> times;
  store_LargeVector<float> values;
};

struct odb_HistoryOutputData {
  odb_String name;
  odb_String description;
  odb_Enum::odb_DataTypeEnum type = odb_Enum::SCALAR;
  // The name of the load case of the output's region; empty when it has none.
  odb_String loadCase;
  // Attached outputs: the database and the series; detached ones have neither.
  std::shared_ptr<store_Database> store;
  // "history output 'U1' of region 'R' in step 'S'", for damage found in its pairs.
  std::string subject;
  std::shared_ptr<store_HistorySeries> series;
  // Detached outputs: their pairs and conjugate pairs.
  std::shared_ptr<const odb_HistoryPairs> pairs = std::make_shared<odb_HistoryPairs>();
  std::shared_ptr<const odb_HistoryPairs> conjugate = std::make_shared<odb_HistoryPairs>();
};

struct odb_HistoryRegionData {
  odb_String name;
  odb_String description;
  odb_HistoryPoint point;
  odb_LoadCase loadCase;
  // Attached regions: the database and the region's row; orphans have no store.
  std::shared_ptr<store_Database> store;
  std::int64_t id = 0;
  // "region 'R' in step 'S'", for damage found in its outputs.
  std::string subject;
  bool outputsRead = false;
  odb_HistoryOutputRepository outputs;

  // Reads the stored outputs once (attached regions only).
  void ReadOutputs();
};

// Builds points from their stored form and back.
struct odb_HistoryPointAccess {
  // Throws "Unknown History Output position." for a kind this release does not write.
  static odb_HistoryPoint FromRecord(const store_HistoryPointRecord& record);
  static store_HistoryPointRecord ToRecord(const odb_HistoryPoint& point);
  // The point with `instance` as its instance.
  static void SetInstance(odb_HistoryPoint& point, const odb_Instance& instance);
  // Whether the point's texts need an instance it does not have (a node or element point).
  static bool LacksInstance(const odb_HistoryPoint& point);
  // An instance handle that knows its name only, for points read back or resolved by name.
  static odb_Instance NamedInstance(const odb_String& name);
};

// Makes history handles from the implementation.
struct odb_HistoryOutputAccess {
  static odb_HistoryOutput Make(std::shared_ptr<odb_HistoryOutputData> data) {
    return odb_HistoryOutput(std::move(data));
  }
  static const std::shared_ptr<odb_HistoryOutputData>& Data(const odb_HistoryOutput& h) {
    return h.m_data;
  }
};
struct odb_HistoryRegionAccess {
  static odb_HistoryRegion Make(std::shared_ptr<odb_HistoryRegionData> data) {
    return odb_HistoryRegion(std::move(data));
  }
};

#endif
