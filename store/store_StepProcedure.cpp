#include "store_StepProcedure.h"

#include "store_Database.h"
#include "store_Schema.h"
#include "store_Statement.h"

namespace {

bool TablesExist(store_Database& db) {
  store_Statement q =
      db.Sql("SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = 'step_procedure'");
  return q.Step();
}

}  // namespace

std::map<std::int64_t, store_StepProcedureRecord> store_StepProcedures(store_Database& db) {
  std::map<std::int64_t, store_StepProcedureRecord> records;
  if (!TablesExist(db)) return records;
  store_Statement q = db.Sql("SELECT step_id, kind, solver_input FROM step_procedure");
  while (q.Step()) {
    q.RequireNotNull("step_procedure", {"step_id", "kind", "solver_input"});
    store_StepProcedureRecord& record = records[q.Int64(0)];
    record.kind = q.Int(1);
    record.solverInput = q.Text(2);
  }
  store_Statement s =
      db.Sql("SELECT step_id, name, number, text FROM step_setting ORDER BY step_id, name");
  while (s.Step()) {
    s.RequireNotNull("step_setting", {"step_id", "name"});
    auto found = records.find(s.Int64(0));
    if (found == records.end())
      throw store_Error("A step setting names step " + std::to_string(s.Int64(0)) +
                        ", which has no procedure.");
    store_StepSetting setting;
    setting.name = s.Text(1);
    setting.isText = s.IsNull(2);
    if (setting.isText) {
      if (s.IsNull(3)) throw store_Error("Step setting " + setting.name + " has no value.");
      setting.text = s.Text(3);
    } else {
      setting.number = s.Double(2);
    }
    found->second.settings.push_back(setting);
  }
  return records;
}

void store_SetStepProcedure(store_Database& db, std::int64_t stepId,
                            const store_StepProcedureRecord& record) {
  db.Sql(store_kCreateStepProcedureTable).Run();
  db.Sql(store_kCreateStepSettingTable).Run();
  db.Sql("DELETE FROM step_setting WHERE step_id = ?1").Bind(1, stepId).Run();
  db.Sql("INSERT OR REPLACE INTO step_procedure(step_id, kind, solver_input) VALUES (?1, ?2, ?3)")
      .Bind(1, stepId)
      .Bind(2, record.kind)
      .Bind(3, record.solverInput)
      .Run();
  for (const store_StepSetting& setting : record.settings) {
    store_Statement insert =
        db.Sql("INSERT INTO step_setting(step_id, name, number, text) VALUES (?1, ?2, ?3, ?4)");
    insert.Bind(1, stepId).Bind(2, setting.name);
    if (setting.isText)
      insert.Bind(4, setting.text);
    else
      insert.Bind(3, setting.number);
    insert.Run();
  }
}
