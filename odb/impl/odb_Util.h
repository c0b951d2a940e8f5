// Small helpers shared by the database classes.
#ifndef ODB_UTIL_H
#define ODB_UTIL_H

#include "odb_String.h"

// `path` made portable and absolute: forward slashes, relative to the working folder, with "."
// and ".." resolved by their text (links are not followed).
odb_String odb_PortablePath(const odb_String& path);

#endif
