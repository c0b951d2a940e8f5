// store_Verify: a full check of a database file, every page and every table, for when a reader
// wants to know that a file is sound before it relies on it (the odb tool's verify).
//
// Reading checks only what it reads; this reads everything once: the checksum of every page
// (files that carry them), SQLite's own integrity check (b-trees, indexes, free pages), the
// references between tables, the chunks of every bulk array against its length, the counts of
// the rows that own arrays against the arrays' lengths, the numbering of frames, fields and
// blocks, and every stored code against the values writers write. It costs one read of the file
// and one pass over each table. It never writes.
#ifndef STORE_VERIFY_H
#define STORE_VERIFY_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// Called now and then with the bytes checked so far and the file's size.
using store_VerifyProgress = std::function<void(std::uint64_t done, std::uint64_t total)>;

// The problems found in the file at `path`, one sentence each; empty when the file is sound.
// Problems that stop the check (a file that does not open) are the last in the list.
std::vector<std::string> store_Verify(const std::string& path,
                                      const store_VerifyProgress& progress = nullptr);

#endif
