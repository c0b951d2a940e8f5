// odb_Version: the library's release and the schema version of the files it writes.
//
// The build reads the release from the three numbers below (CMakeLists.txt), so this header is
// the one place to change it.
#ifndef ODB_VERSION_H
#define ODB_VERSION_H

#define QTVODB_VERSION_MAJOR 0
#define QTVODB_VERSION_MINOR 1
#define QTVODB_VERSION_PATCH 0
#define QTVODB_VERSION_STRING "0.1.0"

// The schema version of the database files this release writes and reads.
#define QTVODB_SCHEMA_VERSION 333

#endif
