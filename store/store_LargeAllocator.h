// store_LargeAllocator: an allocator for large arrays (history pairs, field data read from the
// file), which asks the system to back them with huge pages and keeps freed ones for reuse.
//
// Filling fresh memory costs one page fault per 4 KiB page, and on virtual machines a fault
// costs microseconds: 120 MiB of pairs then takes longer to fault in than to copy. Blocks of
// 2 MiB and more are therefore aligned to 2 MiB and advised as huge pages (Linux
// MADV_HUGEPAGE), one fault per 2 MiB; smaller blocks, and systems without the advice, get plain
// memory. Even with huge pages the system clears every fresh page, which costs as much as
// copying into it: freed blocks of 256 KiB and more are therefore kept and handed out again for
// requests of their size (up to a quarter smaller), up to 1 GiB or an eighth of the machine's
// memory in all, the oldest freed going first. They stay resident until reused or until
// odb_finalizeAPI hands them back (store_ReleaseKeptLarge). Marking them free to the system
// instead (MADV_FREE) made reusing them slower than fresh memory. Under the address sanitizer,
// kept blocks are poisoned until reused, so that a use after free still reports. Any thread
// (one lock).
#ifndef STORE_LARGEALLOCATOR_H
#define STORE_LARGEALLOCATOR_H

#include <cstddef>
#include <vector>

// `bytes` of memory, advised as huge pages from 2 MiB on; throws std::bad_alloc.
void* store_AllocateLarge(std::size_t bytes);
void store_FreeLarge(void* memory);
// Returns the kept blocks to the system.
void store_ReleaseKeptLarge();

template <class T>
struct store_LargeAllocator {
  using value_type = T;
  store_LargeAllocator() = default;
  template <class U>
  store_LargeAllocator(const store_LargeAllocator<U>&) {}
  T* allocate(std::size_t n) { return static_cast<T*>(store_AllocateLarge(n * sizeof(T))); }
  void deallocate(T* p, std::size_t) { store_FreeLarge(p); }
};

template <class T, class U>
bool operator==(const store_LargeAllocator<T>&, const store_LargeAllocator<U>&) {
  return true;
}
template <class T, class U>
bool operator!=(const store_LargeAllocator<T>&, const store_LargeAllocator<U>&) {
  return false;
}

template <class T>
using store_LargeVector = std::vector<T, store_LargeAllocator<T>>;

#endif
