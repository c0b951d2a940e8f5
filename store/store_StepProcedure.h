// store_StepProcedure: the procedure of each step (its kind and solver input text) and the
// settings its input deck writes, one row per setting that differs from its default.
//
// Free functions over an open store_Database, inside the database's open transaction. The tables
// are made with the first procedure written, so files written before procedures were stored read
// as holding none: their steps have only the procedure text of the step table. One thread at a
// time.
#ifndef STORE_STEPPROCEDURE_H
#define STORE_STEPPROCEDURE_H

#include <cstdint>
#include <map>
#include <string>
#include <vector>

class store_Database;

// One setting by name: a number, or a text when `isText`.
struct store_StepSetting {
  std::string name;
  bool isText = false;
  double number = 0.0;
  std::string text;
};

struct store_StepProcedureRecord {
  int kind = 0;  // odb_StepProcedure::Kind
  std::string solverInput;
  std::vector<store_StepSetting> settings;  // by name
};

// The stored procedures by step id; none when the tables do not exist.
std::map<std::int64_t, store_StepProcedureRecord> store_StepProcedures(store_Database& db);
// Stores the procedure of step `stepId`, replacing one stored before.
void store_SetStepProcedure(store_Database& db, std::int64_t stepId,
                            const store_StepProcedureRecord& record);

#endif
