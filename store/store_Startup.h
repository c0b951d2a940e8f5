// store_Startup: the storage engine's own start-up and shut-down, which the library runs once
// around all use of database files.
#ifndef STORE_STARTUP_H
#define STORE_STARTUP_H

// Prepares the engine for use; before the first file is opened.
void store_Startup();
// Releases what the engine holds; after the last file is closed.
void store_Shutdown();

#endif
