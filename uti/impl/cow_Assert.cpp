#include "cow_Assert.h"

#include <cstdio>

namespace {

void WriteToStandardError(const char* condition, const char* source, int line) {
  std::fprintf(stderr, "Assertion failed: %s, file %s, line %d\n", condition, source, line);
}

cow_AssertHandler g_handler = WriteToStandardError;

}  // namespace

void cow_AssertFailed(const char* condition, const char* source, int line) {
  g_handler(condition, source, line);
}

cow_AssertHandler cow_SetAssertHandler(cow_AssertHandler handler) {
  cow_AssertHandler previous = g_handler;
  g_handler = handler ? handler : WriteToStandardError;
  return previous;
}
