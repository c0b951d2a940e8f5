// store_PageReader: reads the blob of one row of a table straight from the database file's
// pages into the caller's memory, one system read per run of pages and no copy in between.
//
// Through SQLite, a large blob is read page by page into SQLite's page cache and copied from
// there (or copied out of a memory map, paying a page fault per few pages), which made reading
// field data several times slower than reading a plain file. This reader finds the row by
// walking the table's b-tree itself, following the documented file format, and reads the blob's
// chain of overflow pages through the file's shared descriptor (store_SharedFile): each system
// read takes a run of consecutive pages, their contents straight into the destination and
// their links aside. It is used only where that is safe: the connection holds a read
// transaction (so no writer can write into the file while it lasts) and has written nothing,
// and, for a file of an earlier release still in write-ahead-log mode, the log is empty, so
// every page of its snapshot is in the database file. Pages that end with a checksum
// (store_PageChecksum.h) are checked as they are read, by the thread that copies them. Anything
// it does not expect (a page of an unknown kind, a pointer out of range, a length that does not
// match, a page that fails its checksum) makes Start or CopyRest return false, and the caller
// reads the blob through SQLite instead, which reports damage as it finds it.
//
// One object per read transaction: the pages it caches belong to that snapshot.
#ifndef STORE_PAGEREADER_H
#define STORE_PAGEREADER_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

class store_PageReader {
 public:
  // A reader, through descriptor `fd`, of the table whose b-tree starts at `rootPage`.
  store_PageReader(int fd, std::int64_t rootPage);

  // Whether the connection's snapshot can be read from the file: `databasePath` has no
  // write-ahead log, or one that holds no frames. Call it while a statement of the transaction
  // is active.
  static bool FileHoldsSnapshot(const std::string& databasePath);

  // What is left of a blob to copy from its chain of overflow pages: bytes `done` to `bytes` of
  // the blob that starts at `blob`, the chain starting at `page`.
  struct Rest {
    std::uint32_t page = 0;
    unsigned char* blob = nullptr;
    std::size_t done = 0, bytes = 0;
  };

  // Copies the part of the blob in column `column` of row `rowid` that its leaf page holds into
  // `out` (which holds `bytes`), and says in `rest` what CopyRest must still copy; false when
  // the row or its layout is not as expected.
  bool Start(std::int64_t rowid, int column, void* out, std::size_t bytes, Rest& rest);
  // Copies `rest` from the overflow pages; false when the chain is not as expected (then the
  // blob may be copied in part). Safe on several threads at once, for different blobs, while
  // the read transaction lasts.
  bool CopyRest(const Rest& rest) const;

 private:
  const std::vector<unsigned char>* Page(std::uint32_t number);
  bool ReadRaw(void* out, std::size_t bytes, std::int64_t offset);
  bool FindCell(std::int64_t rowid, const std::vector<unsigned char>*& page, std::size_t& at);

  int m_fd = -1;
  std::uint32_t m_root = 0, m_pageSize = 0, m_usable = 0, m_pageCount = 0;
  bool m_checked = false;  // pages end with checksums, and reads check them
  std::map<std::uint32_t, std::vector<unsigned char>> m_pages;  // b-tree pages read so far
};

#endif
