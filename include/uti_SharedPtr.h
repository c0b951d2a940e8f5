// uti_SharedPtr: std::shared_ptr and std::unique_ptr for the public headers, from the smallest
// standard header that declares them.
//
// Every handle of the public interface holds its data through std::shared_ptr. <memory> itself
// also brings the uninitialized-storage algorithms, raw storage iterators, the deprecated
// auto_ptr and the parallel-algorithm policies: some 6,000 preprocessed lines that every program
// including odb_API.h would compile for nothing. With GNU's standard library the smart pointers
// come from its own header of them (which <memory> includes too); any other standard library gets
// <memory>. Either way the program sees the standard types, unchanged.
#ifndef UTI_SHAREDPTR_H
#define UTI_SHAREDPTR_H

#if defined(__has_include)
#if __has_include(<bits/shared_ptr.h>) && __has_include(<bits/c++config.h>)
#include <bits/shared_ptr.h>
#define UTI_SHAREDPTR_FROM_MEMORY 0
#endif
#endif

#ifndef UTI_SHAREDPTR_FROM_MEMORY
#include <memory>
#define UTI_SHAREDPTR_FROM_MEMORY 1
#endif

#endif
