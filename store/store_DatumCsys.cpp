#include "store_DatumCsys.h"

#include <cstring>

#include "store_Database.h"
#include "store_Schema.h"
#include "store_Statement.h"

namespace {

// Doubles in the `geometry` blob: origin (3), axes (9), points (9).
constexpr int kGeometryValues = 21;

bool TableExists(store_Database& db) {
  store_Statement q =
      db.Sql("SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = 'datum_csys'");
  return q.Step();
}

}  // namespace

std::vector<store_DatumCsysRecord> store_DatumCsyses(store_Database& db) {
  std::vector<store_DatumCsysRecord> records;
  if (!TableExists(db)) return records;
  store_Statement q = db.Sql(
      "SELECT name, type, definition, instance, node_1, node_2, node_3, geometry "
      "FROM datum_csys ORDER BY id");
  while (q.Step()) {
    q.RequireNotNull("datum_csys", {"name", "type", "definition", "instance", "node_1", "node_2",
                                    "node_3", "geometry"});
    store_DatumCsysRecord record;
    record.name = q.Text(0);
    record.type = q.Int(1);
    record.definition = q.Int(2);
    record.instance = q.Text(3);
    for (int k = 0; k < 3; ++k) record.nodes[k] = q.Int(4 + k);
    if (q.Bytes(7) != static_cast<int>(kGeometryValues * sizeof(double)))
      throw store_Error("The geometry of datum coordinate system " + record.name + " is damaged.");
    double values[kGeometryValues];
    std::memcpy(values, q.Blob(7), sizeof values);
    std::memcpy(record.origin, values, sizeof record.origin);
    std::memcpy(record.axes, values + 3, sizeof record.axes);
    std::memcpy(record.points, values + 12, sizeof record.points);
    records.push_back(record);
  }
  return records;
}

void store_AddDatumCsys(store_Database& db, const store_DatumCsysRecord& record) {
  db.Sql(store_kCreateDatumCsysTable).Run();
  double values[kGeometryValues];
  std::memcpy(values, record.origin, sizeof record.origin);
  std::memcpy(values + 3, record.axes, sizeof record.axes);
  std::memcpy(values + 12, record.points, sizeof record.points);
  db.Sql(
        "INSERT INTO datum_csys(name, type, definition, instance, node_1, node_2, node_3, "
        "geometry) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8)")
      .Bind(1, record.name)
      .Bind(2, record.type)
      .Bind(3, record.definition)
      .Bind(4, record.instance)
      .Bind(5, record.nodes[0])
      .Bind(6, record.nodes[1])
      .Bind(7, record.nodes[2])
      .BindBlob(8, values, sizeof values)
      .Run();
}

void store_DeleteDatumCsys(store_Database& db, const std::string& name) {
  if (!TableExists(db)) return;
  db.Sql("DELETE FROM datum_csys WHERE name = ?1").Bind(1, name).Run();
}
