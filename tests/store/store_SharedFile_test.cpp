#include "store_SharedFile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "TempDir.h"
#include "store_Database.h"

namespace {

// Whether another process sees a lock of this process on any byte of the file.
bool OthersSeeALock(const std::string& path) {
  pid_t child = fork();
  if (child == 0) {
    const int fd = ::open(path.c_str(), O_RDWR);
    struct flock probe = {};
    probe.l_type = F_WRLCK;
    probe.l_whence = SEEK_SET;
    probe.l_start = 0;
    probe.l_len = 0;  // the whole file, SQLite's lock bytes included
    const bool locked = fd >= 0 && ::fcntl(fd, F_GETLK, &probe) == 0 && probe.l_type != F_UNLCK;
    _exit(locked ? 1 : 0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 1;
}

TEST(StoreSharedFile, ReadingTheHeaderKeepsTheLocksOfOpenDatabases) {
  TempDir dir;
  const std::string path = dir.file("a.odb");
  auto writer = store_Database::Create(path);
  writer->Commit();
  ASSERT_TRUE(OthersSeeALock(path)) << "a writer holds a lock on its file";
  // Checking the header, as every open does, must not drop the writer's lock, nor must a reader
  // of the same file that opens and closes.
  EXPECT_EQ(store_Database::SchemaVersion(path), store_kSchemaVersion);
  EXPECT_TRUE(OthersSeeALock(path));
  store_Database::Open(path, true).reset();
  EXPECT_TRUE(OthersSeeALock(path));
  writer.reset();
  EXPECT_FALSE(OthersSeeALock(path));
}

TEST(StoreSharedFile, OneDescriptorServesEveryHolderOfAFile) {
  TempDir dir;
  const std::string path = dir.file("a.odb");
  store_Database::Create(path).reset();
  store_SharedFile first(path), second(path);
  EXPECT_GE(first.Descriptor(), 0);
  EXPECT_EQ(first.Descriptor(), second.Descriptor());
  store_SharedFile missing(dir.file("none.odb"));
  EXPECT_EQ(missing.Descriptor(), -1);
  EXPECT_EQ(missing.Error(), ENOENT);
}

}  // namespace
