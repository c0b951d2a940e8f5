// odb_Export: QTVODB_EXPORT, the mark of what the shared library exports.
//
// The library is built with every symbol hidden (-fvisibility=hidden); a class, class template or
// free function declared in a public header carries QTVODB_EXPORT and is the only kind of symbol
// a program can link against. Everything else (the store, the data behind the handles, the
// implementation's helpers) stays inside the library, so that it can change without breaking
// programs built against an earlier release. Class templates are marked too: their instances
// made in the library and in a program are then one and the same, which the singletons
// (thr_GlobalSingleton, thr_ThreadSingleton) need. Plain definition; no cost at run time.
#ifndef ODB_EXPORT_H
#define ODB_EXPORT_H

#if defined(__GNUC__) || defined(__clang__)
#define QTVODB_EXPORT __attribute__((visibility("default")))
#else
#define QTVODB_EXPORT
#endif

#endif
