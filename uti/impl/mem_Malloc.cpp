#include "mem_Malloc.h"

#include <cstdlib>
#include <new>

void* mem_Malloc(std::size_t bytes) {
  void* memory = std::malloc(bytes == 0 ? 1 : bytes);
  if (!memory) throw std::bad_alloc();
  return memory;
}

void* mem_Realloc(void* memory, std::size_t bytes) {
  if (bytes == 0) {
    std::free(memory);
    return nullptr;
  }
  void* grown = std::realloc(memory, bytes);
  if (!grown) throw std::bad_alloc();
  return grown;
}

void mem_Free(void* memory) {
  std::free(memory);
}
