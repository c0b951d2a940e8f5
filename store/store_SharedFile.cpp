#include "store_SharedFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <map>
#include <mutex>
#include <vector>

namespace {

using FileKey = std::pair<dev_t, ino_t>;

struct Entry {
  int fd = -1;
  int holders = 0;
  std::vector<int> late;  // descriptors opened in a race with a replaced file: closed with fd
};

struct Registry {
  std::mutex mutex;
  std::map<FileKey, Entry> files;
};

// Never destroyed: databases held by static objects may close after other statics are gone.
Registry& TheRegistry() {
  static Registry* registry = new Registry;
  return *registry;
}

}  // namespace

store_SharedFile::store_SharedFile(const std::string& path) {
  Registry& registry = TheRegistry();
  std::lock_guard<std::mutex> lock(registry.mutex);
  struct stat st;
  if (::stat(path.c_str(), &st) == 0) {
    auto it = registry.files.find(FileKey(st.st_dev, st.st_ino));
    if (it != registry.files.end()) {
      ++it->second.holders;
      m_key = it->first;
      m_fd = it->second.fd;
      return;
    }
  }
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0 || ::fstat(fd, &st) != 0) {
    m_error = errno;
    if (fd >= 0) ::close(fd);
    return;
  }
  m_key = FileKey(st.st_dev, st.st_ino);
  Entry& entry = registry.files[m_key];
  // The path may have been given another file between the two looks: a descriptor of a file
  // that is already held must not be closed while its holders live.
  if (entry.holders > 0)
    entry.late.push_back(fd);
  else
    entry.fd = fd;
  ++entry.holders;
  m_fd = entry.fd;
}

store_SharedFile::~store_SharedFile() {
  if (m_fd < 0) return;
  Registry& registry = TheRegistry();
  std::lock_guard<std::mutex> lock(registry.mutex);
  auto it = registry.files.find(m_key);
  if (it == registry.files.end() || --it->second.holders > 0) return;
  ::close(it->second.fd);
  for (int fd : it->second.late) ::close(fd);
  registry.files.erase(it);
}

bool store_SharedFile::IsAt(const std::string& path) const {
  struct stat st;
  return m_fd >= 0 && ::stat(path.c_str(), &st) == 0 && FileKey(st.st_dev, st.st_ino) == m_key;
}
