#include "store_LargeAllocator.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <list>
#include <map>
#include <mutex>
#include <new>
#include <unordered_map>

#ifdef __linux__
#include <sys/mman.h>
#endif
#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/asan_interface.h>
#endif

namespace {

const std::size_t kHugePage = 2u << 20;
// Blocks from this size on are kept for reuse, their sizes rounded to 64 KiB below a huge page.
const std::size_t kKeptFrom = 256u << 10, kKeptGrain = 64u << 10;

// Under the address sanitizer, kept blocks are poisoned, so that a use after free still reports.
#if defined(__SANITIZE_ADDRESS__)
void Poison(void* memory, std::size_t bytes) {
  ASAN_POISON_MEMORY_REGION(memory, bytes);
}
void Unpoison(void* memory, std::size_t bytes) {
  ASAN_UNPOISON_MEMORY_REGION(memory, bytes);
}
#else
void Poison(void*, std::size_t) {}
void Unpoison(void*, std::size_t) {}
#endif

// At most 1 GiB, and an eighth of the machine's memory.
std::size_t KeptLimit() {
  static const std::size_t limit = [] {
    const long pages = sysconf(_SC_PHYS_PAGES), pageSize = sysconf(_SC_PAGESIZE);
    const std::size_t gib = std::size_t(1) << 30;
    if (pages <= 0 || pageSize <= 0) return gib;
    return std::min(gib, static_cast<std::size_t>(pages) * static_cast<std::size_t>(pageSize) / 8);
  }();
  return limit;
}

struct Kept {
  void* memory;
  std::size_t size;
};

struct Pool {
  std::mutex mutex;
  std::unordered_map<void*, std::size_t> live;  // large blocks handed out, by rounded size
  std::list<Kept> kept;                         // freed large blocks, oldest first
  std::multimap<std::size_t, std::list<Kept>::iterator> bySize;
  std::size_t keptBytes = 0;
};

// Never destroyed: arrays held by static objects may be freed after every other static is gone.
Pool& ThePool() {
  static Pool* pool = new Pool;
  return *pool;
}

void Forget(Pool& pool, std::multimap<std::size_t, std::list<Kept>::iterator>::iterator entry) {
  pool.keptBytes -= entry->first;
  pool.kept.erase(entry->second);
  pool.bySize.erase(entry);
}

void* TakeKept(Pool& pool, std::size_t rounded) {
  // A kept block up to a quarter larger serves; a larger one would waste more than it saves.
  auto it = pool.bySize.lower_bound(rounded);
  if (it == pool.bySize.end() || it->first > rounded + rounded / 4) return nullptr;
  void* memory = it->second->memory;
  Unpoison(memory, it->first);
  pool.live.emplace(memory, it->first);
  Forget(pool, it);
  return memory;
}

// Frees the oldest kept blocks until `bytes` more fit under the limit.
void MakeRoom(Pool& pool, std::size_t bytes) {
  while (!pool.kept.empty() && pool.keptBytes + bytes > KeptLimit()) {
    const Kept oldest = pool.kept.front();
    auto range = pool.bySize.equal_range(oldest.size);
    for (auto it = range.first; it != range.second; ++it)
      if (it->second == pool.kept.begin()) {
        Forget(pool, it);
        break;
      }
    Unpoison(oldest.memory, oldest.size);
    std::free(oldest.memory);
  }
}

}  // namespace

void* store_AllocateLarge(std::size_t bytes) {
  if (bytes < kKeptFrom) {
    void* memory = std::malloc(bytes > 0 ? bytes : 1);
    if (!memory) throw std::bad_alloc();
    return memory;
  }
  const bool huge = bytes >= kHugePage;
  const std::size_t grain = huge ? kHugePage : kKeptGrain;
  const std::size_t rounded = (bytes + grain - 1) / grain * grain;
  Pool& pool = ThePool();
  std::lock_guard<std::mutex> lock(pool.mutex);
  if (void* memory = TakeKept(pool, rounded)) return memory;
  void* memory = huge ? std::aligned_alloc(kHugePage, rounded) : std::malloc(rounded);
  if (!memory) throw std::bad_alloc();
#ifdef __linux__
  // Advice only: where huge pages are off the memory works the same, faulted page by page.
  if (huge) madvise(memory, rounded, MADV_HUGEPAGE);
#endif
  pool.live.emplace(memory, rounded);
  return memory;
}

void store_FreeLarge(void* memory) {
  if (!memory) return;
  Pool& pool = ThePool();
  std::lock_guard<std::mutex> lock(pool.mutex);
  auto it = pool.live.find(memory);
  if (it == pool.live.end()) {
    std::free(memory);
    return;
  }
  const std::size_t size = it->second;
  pool.live.erase(it);
  if (size > KeptLimit()) {
    std::free(memory);
    return;
  }
  MakeRoom(pool, size);
  Poison(memory, size);
  pool.kept.push_back({memory, size});
  pool.bySize.emplace(size, std::prev(pool.kept.end()));
  pool.keptBytes += size;
}

void store_ReleaseKeptLarge() {
  Pool& pool = ThePool();
  std::lock_guard<std::mutex> lock(pool.mutex);
  for (const Kept& block : pool.kept) {
    Unpoison(block.memory, block.size);
    std::free(block.memory);
  }
  pool.kept.clear();
  pool.bySize.clear();
  pool.keptBytes = 0;
}
