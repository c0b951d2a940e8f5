#include "store_History.h"

#include <algorithm>

#include "store_Model.h"
#include "store_Statement.h"

std::vector<store_HistoryRegionRecord> store_HistoryRegions(store_Database& db,
                                                            std::int64_t stepId) {
  std::vector<store_HistoryRegionRecord> regions;
  store_Statement q = db.Sql(
      "SELECT id, name, description, load_case, position, instance, node, element, "
      "integration_point, face, section_point, section_point_description, set_name, set_kind, "
      "point_name FROM history_region WHERE step_id = ?1 ORDER BY id");
  q.Bind(1, stepId);
  while (q.Step()) {
    q.RequireNotNull("history_region",
                     {"id", "name", "description", "load_case", "position", "instance", "node",
                      "element", "integration_point", "face", "section_point",
                      "section_point_description", "set_name", "set_kind", "point_name"});
    store_HistoryRegionRecord r;
    r.id = q.Int64(0);
    r.name = q.Text(1);
    r.description = q.Text(2);
    r.loadCase = q.Text(3);
    store_HistoryPointRecord& p = r.point;
    p.position = q.Int(4);
    p.instance = q.Text(5);
    p.node = q.Int(6);
    p.element = q.Int(7);
    p.integrationPoint = q.Int(8);
    p.face = q.Int(9);
    p.sectionPoint = q.Int(10);
    p.sectionPointDescription = q.Text(11);
    p.set = q.Text(12);
    p.setKind = q.Int(13);
    p.name = q.Text(14);
    regions.push_back(std::move(r));
  }
  return regions;
}

std::int64_t store_AddHistoryRegion(store_Database& db, std::int64_t stepId,
                                    store_HistoryRegionRecord& region) {
  const store_HistoryPointRecord& p = region.point;
  db.Sql(
        "INSERT INTO history_region(step_id, name, description, load_case, position, instance, "
        "node, element, integration_point, face, section_point, section_point_description, "
        "set_name, set_kind, point_name) "
        "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14, ?15)")
      .Bind(1, stepId)
      .Bind(2, region.name)
      .Bind(3, region.description)
      .Bind(4, region.loadCase)
      .Bind(5, p.position)
      .Bind(6, p.instance)
      .Bind(7, p.node)
      .Bind(8, p.element)
      .Bind(9, p.integrationPoint)
      .Bind(10, p.face)
      .Bind(11, p.sectionPoint)
      .Bind(12, p.sectionPointDescription)
      .Bind(13, p.set)
      .Bind(14, p.setKind)
      .Bind(15, p.name)
      .Run();
  region.id = sqlite3_last_insert_rowid(db.Connection());
  return region.id;
}

std::vector<store_HistoryOutputRecord> store_HistoryOutputs(store_Database& db,
                                                            std::int64_t regionId) {
  std::vector<store_HistoryOutputRecord> outputs;
  store_Statement q = db.Sql(
      "SELECT id, name, description, type FROM history_output WHERE region_id = ?1 ORDER BY id");
  q.Bind(1, regionId);
  while (q.Step()) {
    q.RequireNotNull("history_output", {"id", "name", "description", "type"});
    outputs.push_back({q.Int64(0), q.Text(1), q.Text(2), q.Int(3)});
  }
  return outputs;
}

std::int64_t store_AddHistoryOutput(store_Database& db, std::int64_t regionId,
                                    store_HistoryOutputRecord& output) {
  db.Sql("INSERT INTO history_output(region_id, name, description, type) VALUES (?1, ?2, ?3, ?4)")
      .Bind(1, regionId)
      .Bind(2, output.name)
      .Bind(3, output.description)
      .Bind(4, output.type)
      .Run();
  output.id = sqlite3_last_insert_rowid(db.Connection());
  return output.id;
}

void store_AddResultsSet(store_Database& db, const std::string& instance, int kind,
                         const std::string& name, int label) {
  {
    store_Statement q = db.Sql(
        "SELECT 1 FROM mesh_set WHERE owner_kind = ?1 AND owner = ?2 AND kind = ?3 AND name = ?4");
    q.Bind(1, static_cast<int>(store_kInstanceOwner)).Bind(2, instance).Bind(3, kind).Bind(4, name);
    if (q.Step()) return;
  }
  store_SetRecord set;
  set.name = name;
  set.kind = kind;
  set.internal = true;
  set.members.push_back({std::string(), {label}, {}});
  store_AddSet(db, store_kInstanceOwner, instance, set);
}

void store_HistorySeries::Append(const double* times, const float* values, std::size_t n) {
  for (std::size_t done = 0; done < n;) {
    if (m_times.size() >= store_kHistoryBlockPairs) WriteFullBlock();
    if (!m_queued) Enqueue();
    const std::size_t room =
        m_times.size() < store_kHistoryBlockPairs ? store_kHistoryBlockPairs - m_times.size() : 0;
    const std::size_t take = room == 0 || room > n - done ? n - done : room;
    m_times.insert(m_times.end(), times + done, times + done + take);
    m_values.insert(m_values.end(), values + done, values + done + take);
    done += take;
  }
}

void store_HistorySeries::Enqueue() {
  if (std::shared_ptr<store_Database> db = m_db.lock()) {
    db->Defer(shared_from_this());
    m_queued = true;
  }
}

void store_HistorySeries::WriteFullBlock() {
  std::shared_ptr<store_Database> db = m_db.lock();
  // A closed database keeps the pairs in memory, where reads still find them.
  if (db && db->IsOpen() && !db->ReadOnly()) WriteBlock(*db);
}

void store_HistorySeries::Read(store_LargeVector<double>& times, store_LargeVector<float>& values) {
  times.clear();
  values.clear();
  std::shared_ptr<store_Database> db = m_db.lock();
  if (db && db->IsOpen()) {
    struct Block {
      std::int64_t count, times, values;
    };
    std::vector<Block> blocks;
    std::int64_t total = 0;
    {
      store_Statement q = db->Sql(
          "SELECT count, times, data, block FROM history_block WHERE output_id = ?1 "
          "ORDER BY block");
      q.Bind(1, m_outputId);
      while (q.Step()) {
        q.RequireNotNull("history_block", {"count", "times", "data", "block"});
        // Blocks are numbered from 0 without gaps: a gap is a block lost.
        if (q.Int64(3) != static_cast<std::int64_t>(blocks.size()))
          store_ThrowBadValue(*db, "history_block", "block", std::to_string(q.Int64(3)));
        if (q.Int64(0) < 0 || q.Int64(0) > std::int64_t(1) << 40)
          store_ThrowBadValue(*db, "history_block", "count", std::to_string(q.Int64(0)));
        blocks.push_back({q.Int64(0), q.Int64(1), q.Int64(2)});
        total += q.Int64(0);
      }
    }
    times.resize(static_cast<std::size_t>(total) + m_times.size());
    values.resize(times.size());
    std::size_t at = 0;
    for (const Block& b : blocks) {
      const std::size_t n = static_cast<std::size_t>(b.count);
      if (db->ArrayBytes(b.times) != n * sizeof(double) ||
          db->ArrayBytes(b.values) != n * sizeof(float))
        store_ThrowBadValue(*db, "history_block", "count",
                            std::to_string(n) + " for arrays of another length");
      db->GetArray(b.times, times.data() + at);
      db->GetArray(b.values, values.data() + at);
      at += n;
    }
    std::copy(m_times.begin(), m_times.end(), times.begin() + static_cast<std::ptrdiff_t>(at));
    std::copy(m_values.begin(), m_values.end(), values.begin() + static_cast<std::ptrdiff_t>(at));
    return;
  }
  times = m_times;
  values = m_values;
}

void store_HistorySeries::WriteBlock(store_Database& db) {
  if (m_times.empty()) return;
  const std::size_t n = m_times.size();
  const std::int64_t times = db.PutArray("history times", m_times.data(), n * sizeof(double));
  const std::int64_t values = db.PutArray("history values", m_values.data(), n * sizeof(float));
  db.Sql(
        "INSERT INTO history_block(output_id, block, count, times, data) "
        "SELECT ?1, coalesce(max(block) + 1, 0), ?2, ?3, ?4 FROM history_block "
        "WHERE output_id = ?1")
      .Bind(1, m_outputId)
      .Bind(2, static_cast<std::int64_t>(n))
      .Bind(3, times)
      .Bind(4, values)
      .Run();
  m_times.clear();
  m_values.clear();
}

void store_HistorySeries::Flush(store_Database& db) {
  WriteBlock(db);
  m_queued = false;
  // A long series gives its buffers back once saved; a short one keeps them for the next save.
  if (m_times.capacity() > store_kHistoryBlockPairs / 16) Discard();
}

void store_HistorySeries::Discard() {
  store_LargeVector<double>().swap(m_times);
  store_LargeVector<float>().swap(m_values);
  m_queued = false;
}
