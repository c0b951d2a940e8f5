// Small helpers shared by the database classes.
#ifndef ODB_UTIL_H
#define ODB_UTIL_H

#include <string>

#include "odb_String.h"

// `path` made portable and absolute: forward slashes, relative to the working folder, with "."
// and ".." resolved by their text (links are not followed).
odb_String odb_PortablePath(const odb_String& path);

// Texts between the public interface and the store, byte for byte (NULs included).
std::string odb_ToText(const odb_String& s);
odb_String odb_FromText(const std::string& s);

#endif
