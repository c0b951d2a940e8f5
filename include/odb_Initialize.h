// Bringing the library up and down.
//
// odb_initialize and odb_finalize are nesting-counted: only the first odb_initialize starts the
// library's modules (the store, the warning reporter, the schema conversion), in that order, and
// only the matching last odb_finalize closes every open database and stops the modules in the
// reverse order. Each also raises or lowers the caller's own counter once. Arrays of 256 KiB and
// more that closed databases freed are kept for reuse while the library is up (up to 1 GiB, or
// an eighth of the machine's memory): reading the next frame or file then fills memory already
// in place instead of fresh pages. The last odb_finalize returns them to the system.
//
// odb_initializeAPI and odb_finalizeAPI do the same for callers that keep no counter, and in
// addition install a warning reporter on standard error for the calling thread and make sure a
// library left up is finalised when the process exits. The counters are plain ints: call these
// from one thread at a time.
#ifndef ODB_INITIALIZE_H
#define ODB_INITIALIZE_H

#include "odb_Export.h"

QTVODB_EXPORT void odb_initialize(int& count);
QTVODB_EXPORT void odb_finalize(int& count);

extern "C" {
QTVODB_EXPORT void odb_initializeAPI();
QTVODB_EXPORT void odb_finalizeAPI();
}

// True between the first odb_initialize and the matching last odb_finalize.
QTVODB_EXPORT bool odb_isInitialized();

#endif
