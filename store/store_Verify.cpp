#include "store_Verify.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <memory>

#include "store_Database.h"
#include "store_PageChecksum.h"
#include "store_SharedFile.h"
#include "store_Statement.h"

namespace {

// Damaged pages listed one by one at most; the rest are counted.
const std::size_t kListedPages = 20;
const std::uint64_t kProgressBytes = 256u << 20;

// Every page against its checksum, read straight from the file.
void CheckPages(const std::string& path, const store_VerifyProgress& progress,
                std::vector<std::string>& problems) {
  store_SharedFile file(path);
  const int fd = file.Descriptor();
  struct stat st;
  unsigned char header[100];
  if (fd < 0 || ::fstat(fd, &st) != 0 || ::pread(fd, header, sizeof header, 0) != 100) return;
  const std::uint32_t pageSize =
      header[16] == 0 && header[17] == 1 ? 65536 : header[16] << 8 | header[17];
  if (pageSize < 512 || (pageSize & (pageSize - 1))) return;  // SQLite's open says why
  const std::uint64_t size = static_cast<std::uint64_t>(st.st_size);
  if (size % pageSize)
    problems.push_back("The file's length, " + std::to_string(size) +
                       " bytes, is not a whole number of pages of " + std::to_string(pageSize) +
                       " bytes.");
  std::vector<unsigned char> run(std::max<std::size_t>(pageSize, 4u << 20) / pageSize * pageSize);
  std::vector<std::uint32_t> bad;
  std::uint64_t nextReport = kProgressBytes;
  for (std::uint64_t at = 0; at + pageSize <= size;) {
    const std::size_t want = static_cast<std::size_t>(
        std::min<std::uint64_t>(run.size(), size - at) / pageSize * pageSize);
    if (::pread(fd, run.data(), want, static_cast<off_t>(at)) != static_cast<ssize_t>(want)) {
      problems.push_back("The file cannot be read at byte " + std::to_string(at) + ".");
      return;
    }
    for (std::size_t p = 0; p < want; p += pageSize) {
      const std::uint32_t number = static_cast<std::uint32_t>((at + p) / pageSize) + 1;
      if (!store_PageSound(run.data() + p, pageSize, number)) bad.push_back(number);
    }
    at += want;
    if (progress && at >= nextReport) {
      progress(at, size);
      nextReport += kProgressBytes;
    }
  }
  for (std::size_t i = 0; i < bad.size() && i < kListedPages; ++i)
    problems.push_back("Page " + std::to_string(bad[i]) + " does not match its checksum.");
  if (bad.size() > kListedPages)
    problems.push_back(std::to_string(bad.size() - kListedPages) +
                       " more pages do not match their checksums.");
}

// Each row of `sql` is a problem, said by its first column.
void Rows(store_Database& db, const char* sql, std::vector<std::string>& problems) {
  store_Statement q = db.Sql(sql);
  while (q.Step()) problems.push_back(q.Text(0));
}

// Statements whose rows are problems: each returns one sentence per row found wrong.
const char* const kChecks[] = {
    // Bulk arrays: chunks numbered from 0, adding up to the array's length.
    "SELECT 'Array ' || a.id || ' holds ' || coalesce(sum(length(c.data)), 0) || ' bytes in ' || "
    "count(c.chunk) || ' chunks where ' || a.bytes || ' belong.' FROM array a LEFT JOIN "
    "array_chunk c ON c.array_id = a.id GROUP BY a.id HAVING coalesce(sum(length(c.data)), 0) "
    "!= a.bytes OR count(c.chunk) != coalesce(max(c.chunk) + 1, 0)",
    "SELECT 'A chunk of array ' || array_id || ' belongs to no array.' FROM array_chunk "
    "WHERE array_id NOT IN (SELECT id FROM array)",
    // Rows that own arrays, against the arrays' lengths.
    "SELECT 'Node block ' || b.block || ' of part ' || b.part_id || ' has arrays of another "
    "length than its count.' FROM node_block b LEFT JOIN array l ON l.id = b.labels LEFT JOIN "
    "array x ON x.id = b.coordinates WHERE l.bytes IS NOT 4 * b.count OR x.bytes IS NOT "
    "12 * b.count",
    "SELECT 'Element block ' || b.block || ' of part ' || b.part_id || ' has arrays of another "
    "length than its count.' FROM element_block b LEFT JOIN array l ON l.id = b.labels LEFT JOIN "
    "array c ON c.id = b.connectivity WHERE l.bytes IS NOT 4 * b.count OR c.bytes IS NOT "
    "4 * b.count * b.nodes_per_element OR b.nodes_per_element NOT BETWEEN 1 AND 30",
    "SELECT 'Block ' || b.block || ' of field ' || b.field_id || ' has arrays of another length "
    "than its count.' FROM field_block b LEFT JOIN array l ON l.id = b.labels LEFT JOIN array d "
    "ON d.id = b.data WHERE l.bytes IS NOT 4 * b.count OR (d.bytes IS NOT 4 * b.count * "
    "b.per_label * b.width AND d.bytes IS NOT 8 * b.count * b.per_label * b.width)",
    "SELECT 'Block ' || b.block || ' of history output ' || b.output_id || ' has arrays of "
    "another length than its count.' FROM history_block b LEFT JOIN array t ON t.id = b.times "
    "LEFT JOIN array v ON v.id = b.data WHERE t.bytes IS NOT 8 * b.count OR v.bytes IS NOT "
    "4 * b.count",
    // Numbering from 0 without gaps: a gap is a row lost.
    "SELECT 'Step ' || step_id || ' has ' || count(*) || ' frames numbered up to ' || "
    "max(frame_index) || '.' FROM frame GROUP BY step_id HAVING count(*) != max(frame_index) + 1 "
    "OR min(frame_index) != 0",
    "SELECT 'Frame ' || frame_index || ' of step ' || step_id || ' has ' || count(*) || "
    "' fields numbered up to ' || max(field_index) || '.' FROM field_output GROUP BY step_id, "
    "frame_index HAVING count(*) != max(field_index) + 1 OR min(field_index) != 0",
    "SELECT 'Field ' || field_id || ' has ' || count(*) || ' blocks numbered up to ' || "
    "max(block) || '.' FROM field_block GROUP BY field_id HAVING count(*) != max(block) + 1",
    "SELECT 'Field ' || f.id || ' belongs to a frame the file does not hold.' FROM field_output "
    "f LEFT JOIN frame r ON r.step_id = f.step_id AND r.frame_index = f.frame_index WHERE "
    "r.step_id IS NULL",
    // Codes against the values writers write.
    "SELECT 'Step ' || id || ' has the unknown domain ' || quote(domain) || '.' FROM step "
    "WHERE domain NOT BETWEEN 0 AND 3",
    "SELECT 'Part ' || id || ' has the unknown dimension or type ' || quote(dimension) || ', ' "
    "|| quote(type) || '.' FROM part WHERE dimension NOT BETWEEN 0 AND 3 OR type NOT BETWEEN 0 "
    "AND 3",
    "SELECT 'Field ' || id || ' has the unknown data type ' || quote(type) || '.' FROM "
    "field_output WHERE type NOT BETWEEN 0 AND 11",
    "SELECT 'Block ' || block || ' of field ' || field_id || ' has the unknown position ' || "
    "quote(position) || '.' FROM field_block WHERE position NOT BETWEEN 1 AND 6",
    "SELECT 'History output ' || id || ' has the unknown data type ' || quote(type) || '.' FROM "
    "history_output WHERE type NOT BETWEEN 0 AND 11",
    "SELECT 'History region ' || id || ' has an unknown position, face or set kind.' FROM "
    "history_region WHERE position NOT BETWEEN 0 AND 10 OR face NOT BETWEEN 0 AND 11 OR "
    "set_kind NOT BETWEEN 0 AND 2",
    "SELECT 'Set ' || id || ' has an unknown owner or kind.' FROM mesh_set WHERE owner_kind "
    "NOT BETWEEN 0 AND 2 OR kind NOT BETWEEN 0 AND 2",
    "SELECT 'Section ' || id || ' has the unknown kind ' || quote(kind) || '.' FROM section "
    "WHERE kind NOT BETWEEN 0 AND 2",
    "SELECT 'Instance ' || id || ' places a part the file does not hold.' FROM instance WHERE "
    "part_id NOT IN (SELECT id FROM part)",
};

void CheckTables(store_Database& db, std::vector<std::string>& problems) {
  {
    store_Statement q = db.Sql("PRAGMA integrity_check");
    while (q.Step())
      if (q.Text(0) != "ok") problems.push_back("SQLite's integrity check: " + q.Text(0) + ".");
  }
  {
    store_Statement q = db.Sql("PRAGMA foreign_key_check");
    while (q.Step())
      problems.push_back("Row " + q.Text(1) + " of table " + q.Text(0) + " refers to a row of " +
                         q.Text(2) + " that the file does not hold.");
  }
  for (const char* sql : kChecks) Rows(db, sql, problems);
}

}  // namespace

std::vector<std::string> store_Verify(const std::string& path,
                                      const store_VerifyProgress& progress) {
  std::vector<std::string> problems;
  try {
    store_Database::SchemaVersion(path);
    if (store_Database::HasPageChecksums(path)) CheckPages(path, progress, problems);
    std::shared_ptr<store_Database> db = store_Database::Open(path, true);
    CheckTables(*db, problems);
  } catch (const store_Error& e) {
    problems.push_back(e.what());
  }
  return problems;
}
