#include "store_LargeAllocator.h"

#include <cstdlib>
#include <new>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace {
const std::size_t kHugePage = 2u << 20;
}

void* store_AllocateLarge(std::size_t bytes) {
  void* memory = nullptr;
  if (bytes >= kHugePage) {
    const std::size_t rounded = (bytes + kHugePage - 1) / kHugePage * kHugePage;
    memory = std::aligned_alloc(kHugePage, rounded);
#ifdef __linux__
    // Advice only: where huge pages are off the memory works the same, faulted page by page.
    if (memory) madvise(memory, rounded, MADV_HUGEPAGE);
#endif
  } else {
    memory = std::malloc(bytes > 0 ? bytes : 1);
  }
  if (!memory) throw std::bad_alloc();
  return memory;
}

void store_FreeLarge(void* memory) {
  std::free(memory);
}
