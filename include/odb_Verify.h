// odb_verifyOdb: a full check of a database file, for a program that must know a file is sound
// before it relies on it (the odb command-line tool's verify).
//
// Reading a file checks what it reads: a page that does not match its checksum, or a value that
// no writer writes, is refused with "The file PATH is damaged: ...". This function checks all of
// the file at once: the checksum of every page (files written by this release; earlier files
// carry none), SQLite's integrity check of every table and index, the references between
// tables, every bulk array's chunks against its length and the counts of the rows that own
// arrays, the numbering of frames, fields and blocks, and every stored code. It reads the whole
// file once (about a second per GB from the page cache) and never writes. For files of 256 MiB
// and more it reports its progress as landmarks of the thread's wip_WIP reporter. Any thread;
// the file may be open elsewhere, for reading or writing (it then checks the last save).
#ifndef ODB_VERIFY_H
#define ODB_VERIFY_H

#include "odb_Export.h"
#include "odb_Sequence.h"
#include "odb_String.h"

// The problems found in the file at `path`, one sentence each; empty when the file is sound. A
// file that cannot be opened at all gives one problem saying why. Throws nothing for damage.
QTVODB_EXPORT odb_SequenceString odb_verifyOdb(const odb_String& path);

#endif
