// mem_Malloc: the library's own thin allocator for tables of block pointers.
//
// mem_Realloc to zero bytes frees the memory and returns null, so a table can shrink to nothing
// through the same call that grows it. Memory from these functions is freed only by mem_Free or
// mem_Realloc, never by free or delete.
#ifndef MEM_MALLOC_H
#define MEM_MALLOC_H

#include <cstddef>

#include "odb_Export.h"

QTVODB_EXPORT void* mem_Malloc(std::size_t bytes);
QTVODB_EXPORT void* mem_Realloc(void* memory, std::size_t bytes);
QTVODB_EXPORT void mem_Free(void* memory);

#endif
