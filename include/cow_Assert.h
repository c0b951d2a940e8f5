// cow_Assert: the runtime's assertion routine for broken invariants and misuse of containers.
//
// An assertion names the failed condition as source text, the source that holds it (from the
// module folder on: "include/cow_1DArrayList", "odb/impl/odb_WipReporter") and a site number.
// The site number is the assertion's stable identity, the line that reports and support tools
// key on; it is given at the call site rather than taken from __LINE__ so that it does not move
// when the file is edited.
//
// After the handler returns, execution carries on. Callers that would then touch memory they do
// not own (popping an empty list, for example) return a default value instead.
//
// The handler is process-wide; replacing it is not thread-safe and is meant for start-up or for
// tests. The default handler writes one line to standard error:
//   Assertion failed: <condition>, file <source>, line <site>
#ifndef COW_ASSERT_H
#define COW_ASSERT_H

#include "odb_Export.h"

using cow_AssertHandler = void (*)(const char* condition, const char* source, int line);

// Reports a failed condition through the installed handler.
QTVODB_EXPORT void cow_AssertFailed(const char* condition, const char* source, int line);

// Installs a handler (null restores the default) and returns the previous one.
QTVODB_EXPORT cow_AssertHandler cow_SetAssertHandler(cow_AssertHandler handler);

// Reports `condition` (its text given as `text`) when it does not hold; returns the condition so
// that callers can stop where carrying on would be unsafe.
inline bool cow_Check(bool condition, const char* text, const char* source, int line) {
  if (!condition) cow_AssertFailed(text, source, line);
  return condition;
}

#endif
