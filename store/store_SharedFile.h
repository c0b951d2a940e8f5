// store_SharedFile: one read-only descriptor of a database file, shared by every connection of
// the process to that file, for reading pages without SQLite (store_PageReader).
//
// Closing any descriptor of a file drops every POSIX lock the process holds on it, SQLite's
// among them. Each store_Database therefore holds the file from after its connection opens
// until after it closes, the file header check reads through it too, and the descriptor is
// closed with the last holder: by then no connection of the library to the file is left to lose
// a lock. (A connection that a program
// opens to the same file on its own, outside this library, is not protected.) Files are told
// apart by device and inode. Any thread (one lock).
#ifndef STORE_SHAREDFILE_H
#define STORE_SHAREDFILE_H

#include <sys/types.h>

#include <string>
#include <utility>

class store_SharedFile {
 public:
  // Holds the file at `path`, opening its descriptor if no one holds it yet.
  explicit store_SharedFile(const std::string& path);
  ~store_SharedFile();
  store_SharedFile(const store_SharedFile&) = delete;
  store_SharedFile& operator=(const store_SharedFile&) = delete;

  // -1 when the file could not be opened for reading; Error() then gives the system's errno.
  int Descriptor() const { return m_fd; }
  int Error() const { return m_error; }
  // True when `path` names this file now (same device and inode).
  bool IsAt(const std::string& path) const;

 private:
  std::pair<dev_t, ino_t> m_key;
  int m_fd = -1;
  int m_error = 0;
};

#endif
