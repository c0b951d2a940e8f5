#include "store_Startup.h"

#include <sqlite3.h>

void store_Startup() {
  sqlite3_initialize();
}

void store_Shutdown() {
  sqlite3_shutdown();
}
