// The library's modules, in start-up order, and a hook that lets a test watch them start and stop.
#ifndef ODB_STARTUP_H
#define ODB_STARTUP_H

using odb_ModuleObserver = void (*)(const char* module, bool up);

// Installs an observer of module start-up and shut-down (null removes it); returns the previous.
odb_ModuleObserver odb_SetModuleObserver(odb_ModuleObserver observer);

#endif
