// The conversions between schema versions of database files.
//
// A conversion takes a file of one version to the next; upgrading applies them in a chain to a
// copy of the file. Every file written so far has the current version, so the table is empty:
// any older file is detected and refused with the reason.
#ifndef DBCS_SCHEMACONVERSION_H
#define DBCS_SCHEMACONVERSION_H

#include <vector>

class store_Conversion;

struct dbcS_Conversion {
  int fromVersion;  // the version it converts; the result has fromVersion + 1
  const char* what;
  // Rewrites the file being converted; a failure of the file throws store_Error.
  void (*apply)(store_Conversion& file);
};

// The registered conversions.
const std::vector<dbcS_Conversion>& dbcS_Conversions();
// Registers a conversion; one from a version already registered replaces it.
void dbcS_Register(const dbcS_Conversion& conversion);

void dbcS_initialize();
void dbcS_finalize();

#endif
