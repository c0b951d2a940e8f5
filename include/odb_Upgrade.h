// Checking and converting database files written with an older schema version.
#ifndef ODB_UPGRADE_H
#define ODB_UPGRADE_H

#include "odb_Export.h"
#include "odb_String.h"

// True when the file at `path` has an older schema version than this library writes. A file
// that cannot be read throws odb_Exception code 3 ("isUpgradeRequiredForOdb failed, REASON").
QTVODB_EXPORT bool isUpgradeRequiredForOdb(const odb_String& path);

// Writes a copy of the file at `oldPath`, converted to the current schema version, to `newPath`.
// A file that cannot be converted (unreadable, already current, or with no known conversion)
// throws odb_Exception code 2 ("cannot convert database PATH, REASON") and leaves `oldPath` as
// it was.
QTVODB_EXPORT void upgradeOdb(const odb_String& oldPath, const odb_String& newPath);

#endif
