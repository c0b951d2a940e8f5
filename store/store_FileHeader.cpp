// Checks a database file from its first 100 bytes, without opening it through SQLite, so that a
// file that is not ours is refused cheaply and without side effects (no journal or lock files).
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "store_Database.h"
#include "store_PageChecksum.h"
#include "store_SharedFile.h"

namespace {

const char kMagic[16] = {'S', 'Q', 'L', 'i', 't', 'e', ' ', 'f',
                         'o', 'r', 'm', 'a', 't', ' ', '3', '\0'};
const int kHeaderBytes = 100;

std::uint32_t BigEndian(const unsigned char* p, int n) {
  std::uint32_t v = 0;
  for (int i = 0; i < n; ++i) v = (v << 8) | p[i];
  return v;
}

bool Exists(const std::string& path) {
  struct stat st;
  return ::stat(path.c_str(), &st) == 0 && st.st_size > 0;
}

}  // namespace

int store_Database::SchemaVersion(const std::string& path) {
  // Read through the file's shared descriptor: closing a descriptor of our own would drop the
  // locks of the process's connections to the file.
  struct stat st;
  unsigned char header[kHeaderBytes];
  ssize_t got = 0;
  {
    store_SharedFile file(path);
    const int fd = file.Descriptor();
    if (fd < 0) throw store_Error(std::strerror(file.Error()) + std::string("."));
    if (::fstat(fd, &st) != 0) throw store_Error(std::strerror(errno) + std::string("."));
    if (S_ISDIR(st.st_mode)) throw store_Error("It is a folder, not a file.");
    if (st.st_size > 0) got = ::pread(fd, header, kHeaderBytes, 0);
  }
  if (st.st_size == 0) throw store_Error("The file is empty.");
  std::size_t compared = got < 16 ? static_cast<std::size_t>(got < 0 ? 0 : got) : 16;
  if (std::memcmp(header, kMagic, compared) != 0)
    throw store_Error("The file is not an output database.");
  if (got < kHeaderBytes) throw store_Error("The file is truncated.");
  if (static_cast<std::int32_t>(BigEndian(header + 68, 4)) != store_kApplicationId)
    throw store_Error("The file is a database of another application, not an output database.");

  // The page count in the header is valid when the change counter matches the version-valid-for
  // number. A file shorter than that count is truncated; while a journal or a write-ahead log is
  // left beside the file (a writer is saving, or was stopped), the file may be between two
  // states that the side file reconciles, so the count is not checked.
  std::uint32_t pageSize = BigEndian(header + 16, 2);
  if (pageSize == 1) pageSize = 65536;
  std::uint32_t pages = BigEndian(header + 28, 4);
  bool countValid = BigEndian(header + 24, 4) == BigEndian(header + 92, 4);
  if (countValid && !Exists(path + "-wal") && !Exists(path + "-journal") &&
      static_cast<std::uint64_t>(st.st_size) < static_cast<std::uint64_t>(pages) * pageSize)
    throw store_Error("The file is truncated.");
  return static_cast<int>(BigEndian(header + 60, 4));
}

bool store_Database::HasPageChecksums(const std::string& path) {
  store_SharedFile file(path);
  unsigned char reserved = 0;
  // Byte 20 of the header is the number of bytes reserved at the end of each page.
  return file.Descriptor() >= 0 && ::pread(file.Descriptor(), &reserved, 1, 20) == 1 &&
         reserved == store_kChecksumBytes;
}

bool store_Database::InLogMode(const std::string& path) {
  store_SharedFile file(path);
  unsigned char version = 0;
  // Byte 18 of the header is 2 for a file in write-ahead-log mode, 1 for a rollback journal.
  return file.Descriptor() >= 0 && ::pread(file.Descriptor(), &version, 1, 18) == 1 && version == 2;
}
