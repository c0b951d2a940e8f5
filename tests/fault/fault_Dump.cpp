#include "fault_Dump.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iterator>

namespace {

std::string Hex(const void* data, int bytes) {
  static const char kDigits[] = "0123456789abcdef";
  std::string out;
  const unsigned char* p = static_cast<const unsigned char*>(data);
  for (int i = 0; i < bytes; ++i) {
    out += kDigits[p[i] >> 4];
    out += kDigits[p[i] & 15];
  }
  return out;
}

std::string Column(sqlite3_stmt* q, int c) {
  char text[64];
  switch (sqlite3_column_type(q, c)) {
    case SQLITE_NULL:
      return "NULL";
    case SQLITE_INTEGER:
      std::snprintf(text, sizeof text, "%lld", sqlite3_column_int64(q, c));
      return text;
    case SQLITE_FLOAT:
      std::snprintf(text, sizeof text, "%a", sqlite3_column_double(q, c));
      return text;
    case SQLITE_TEXT:
      return "'" + std::string(reinterpret_cast<const char*>(sqlite3_column_text(q, c))) + "'";
    default:
      return "x" + Hex(sqlite3_column_blob(q, c), sqlite3_column_bytes(q, c));
  }
}

// Every row of `sql` as "prefix|col|col...".
bool Rows(sqlite3* db, const std::string& sql, const std::string& prefix,
          std::vector<std::string>& out) {
  sqlite3_stmt* q = nullptr;
  if (sqlite3_prepare_v2(db, sql.c_str(), -1, &q, nullptr) != SQLITE_OK) return false;
  int rc;
  while ((rc = sqlite3_step(q)) == SQLITE_ROW) {
    std::string line = prefix;
    for (int c = 0; c < sqlite3_column_count(q); ++c) line += "|" + Column(q, c);
    out.push_back(line);
  }
  sqlite3_finalize(q);
  return rc == SQLITE_DONE;
}

void CopyIfThere(const std::string& from, const std::string& to) {
  std::error_code ignored;
  std::filesystem::remove(to, ignored);
  if (std::filesystem::exists(from))
    std::filesystem::copy_file(from, to, std::filesystem::copy_options::overwrite_existing);
}

}  // namespace

fault_Dump fault_Dump::Of(const std::string& path) {
  const std::string copy = path + ".dump";
  CopyIfThere(path, copy);
  CopyIfThere(path + "-journal", copy + "-journal");
  fault_Dump dump;
  sqlite3* db = nullptr;
  if (sqlite3_open_v2(copy.c_str(), &db, SQLITE_OPEN_READWRITE, "unix") != SQLITE_OK) {
    dump.lines.push_back(std::string("cannot open: ") + (db ? sqlite3_errmsg(db) : "?"));
  } else {
    std::vector<std::string> tables;
    bool read = Rows(db, "PRAGMA integrity_check", "integrity", dump.lines) &&
                Rows(db, "PRAGMA user_version", "user_version", dump.lines) &&
                Rows(db, "SELECT name FROM sqlite_schema WHERE type = 'table'", "", tables);
    for (std::size_t i = 0; read && i < tables.size(); ++i) {
      const std::string name = tables[i].substr(2, tables[i].size() - 3);  // "|'name'"
      read = Rows(db, "SELECT * FROM \"" + name + "\"", name, dump.lines);
    }
    if (!read) dump.lines.push_back(std::string("cannot read: ") + sqlite3_errmsg(db));
  }
  sqlite3_close_v2(db);
  std::error_code ignored;
  std::filesystem::remove(copy, ignored);
  std::filesystem::remove(copy + "-journal", ignored);
  std::sort(dump.lines.begin(), dump.lines.end());
  return dump;
}

fault_Dump fault_Dump::WithoutStamp() const {
  fault_Dump out;
  for (const std::string& line : lines)
    if (line.rfind("header|'creation_stamp'", 0) != 0) out.lines.push_back(line);
  return out;
}

std::vector<std::string> fault_Dump::Missing(const fault_Dump& before) const {
  std::vector<std::string> out;
  std::set_difference(before.lines.begin(), before.lines.end(), lines.begin(), lines.end(),
                      std::back_inserter(out));
  return out;
}

std::vector<std::string> fault_Dump::Extra(const fault_Dump& before) const {
  return before.Missing(*this);
}

std::string fault_Lines(const std::vector<std::string>& lines) {
  std::string out;
  for (std::size_t i = 0; i < lines.size() && i < 4; ++i)
    out += "\n  " + (lines[i].size() > 160 ? lines[i].substr(0, 160) + "..." : lines[i]);
  if (lines.size() > 4) out += "\n  ... " + std::to_string(lines.size() - 4) + " more";
  return out;
}
