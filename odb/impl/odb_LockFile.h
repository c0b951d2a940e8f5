// odb_LockFile: what a writer's lock file says about the writer; internal.
//
// A writable database has a lock file, its path with ".lck" appended. The lock is the file's
// existence; its text names the writer ("host NAME" and "pid N" lines), so that an open that
// finds a lock left by a process that was killed can say so and tell the user how to recover.
#ifndef ODB_LOCKFILE_H
#define ODB_LOCKFILE_H

#include <string>

// Creates the lock file `lockPath` naming this process; false when it cannot be created.
bool odb_WriteLockFile(const std::string& lockPath);

// When the lock file names a process of this host that no longer runs, or whose process id
// was given since to a process started after the lock, the text "process N on host NAME";
// otherwise (the writer runs, is on another host, or is not named) the empty text.
std::string odb_GoneLockWriter(const std::string& lockPath);

#endif
