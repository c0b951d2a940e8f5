// store_PageChecksum: a checksum at the end of every page of the file, written with the page and
// checked each time the page is read.
//
// SQLite itself checks no data: a flipped byte in a float, a zeroed block or a page written where
// another belongs reads back as other numbers, or as rows that are silently missing. Files this
// release creates reserve the last 8 bytes of each page (SQLite's "reserved bytes", byte 20 of
// the file header): they hold the XXH3 64-bit hash of the page's other bytes, seeded with the
// page's number (1 for the first page), little-endian. The number in the seed makes a page that
// sits in another page's place fail its check too. docs/file-format.md shows how to check a page
// by hand.
//
// The checks sit under SQLite, in a VFS that wraps the system's: every page SQLite writes to a
// database file that reserves the 8 bytes is given its checksum, and every page it reads is
// checked before SQLite sees it (SQLITE_IOERR_DATA otherwise). Files without the reserved bytes,
// written by earlier releases, pass through unchecked. store_PageReader, which reads bulk data
// past SQLite, checks the pages it reads itself with store_PageSound. Thread-safe.
#ifndef STORE_PAGECHECKSUM_H
#define STORE_PAGECHECKSUM_H

#include <cstddef>
#include <cstdint>

// The bytes reserved at the end of each page for its checksum.
constexpr int store_kChecksumBytes = 8;

// The checksum of page number `number` (from 1), whose `pageSize` bytes start at `page`: the hash
// of all but its last store_kChecksumBytes bytes.
std::uint64_t store_PageChecksum(const void* page, std::size_t pageSize, std::uint32_t number);
// True when the last store_kChecksumBytes of the page hold its checksum.
bool store_PageSound(const void* page, std::size_t pageSize, std::uint32_t number);

// The checksum of a page read in pieces: Start, then Add each piece of the page but its stored
// checksum, in order, then Matches with those last bytes. One per thread.
class store_PageHash {
 public:
  store_PageHash();
  ~store_PageHash();
  store_PageHash(const store_PageHash&) = delete;
  store_PageHash& operator=(const store_PageHash&) = delete;

  void Start(std::uint32_t number);
  void Add(const void* bytes, std::size_t n);
  bool Matches(const unsigned char* stored);

 private:
  void* m_state;
};

// A file control of the checking VFS (sqlite3_file_control on "main", an int argument): 1 before
// the file is rewritten in another page size (PRAGMA page_size, VACUUM), 0 after. While on,
// pages are neither checked nor stamped as they are read and written, in pieces of either size;
// each sync of the file first gives every page the checksum of what it holds, in the page size
// its header gives, so that the rewrite is whole and checked once it is synced. Turning it on
// first checks every page of the file: a damaged file sets the argument to 0 and must not be
// rewritten (its damage would get fresh checksums).
constexpr int store_kRepageControl = 0x51540001;

// The name of the VFS that writes and checks the checksums; registered on first call.
const char* store_ChecksumVfs();

// The number of the last page that failed its check on this thread (0 for none), for the
// message of the error that follows.
std::uint32_t store_LastDamagedPage();
void store_NoteDamagedPage(std::uint32_t number);

// Turns the checks of pages read on or off for the whole process (on by default); writes are
// always given their checksums. Only for measuring what the checks cost.
void store_SetPageChecks(bool on);
bool store_PageChecks();

#endif
