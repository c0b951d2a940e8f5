#include "odb_LockFile.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

std::string HostName() {
  char name[HOST_NAME_MAX + 1] = {};
  return ::gethostname(name, sizeof name - 1) == 0 ? name : "";
}

// True when process `pid` runs and was started before `since` (the lock's time): a process
// started later only reuses the number of the writer that left the lock.
bool RunsSince(long pid, const struct timespec& since) {
  if (::kill(static_cast<pid_t>(pid), 0) != 0 && errno == ESRCH) return false;
  struct stat st;
  const std::string proc = "/proc/" + std::to_string(pid);
  if (::stat(proc.c_str(), &st) != 0) return true;  // no process table to ask: assume it runs
  return st.st_mtim.tv_sec < since.tv_sec ||
         (st.st_mtim.tv_sec == since.tv_sec && st.st_mtim.tv_nsec <= since.tv_nsec);
}

}  // namespace

bool odb_WriteLockFile(const std::string& lockPath) {
  int fd = ::open(lockPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  if (fd < 0) return false;
  const std::string text =
      "host " + HostName() + "\npid " + std::to_string(static_cast<long>(::getpid())) + "\n";
  // The lock holds without its text: a write that fails only leaves the writer unnamed.
  const ssize_t written = ::write(fd, text.data(), text.size());
  (void)written;
  ::close(fd);
  return true;
}

std::string odb_GoneLockWriter(const std::string& lockPath) {
  FILE* file = std::fopen(lockPath.c_str(), "re");
  if (!file) return std::string();
  char host[256] = {};
  long pid = 0;
  const bool named = std::fscanf(file, "host %255s pid %ld", host, &pid) == 2;
  struct stat st;
  const bool dated = ::fstat(fileno(file), &st) == 0;
  std::fclose(file);
  if (!named || !dated || pid <= 0 || HostName() != host || RunsSince(pid, st.st_mtim))
    return std::string();
  return "process " + std::to_string(pid) + " on host " + host;
}
