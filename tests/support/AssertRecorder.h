// Records the assertions that fire while it is alive, instead of printing them.
#ifndef TESTS_ASSERTRECORDER_H
#define TESTS_ASSERTRECORDER_H

#include <string>
#include <vector>

#include "cow_Assert.h"

struct RecordedAssert {
  std::string condition;
  std::string source;
  int line;
};

class AssertRecorder {
 public:
  AssertRecorder() : m_previous(cow_SetAssertHandler(Record)) { Log().clear(); }
  ~AssertRecorder() { cow_SetAssertHandler(m_previous); }
  AssertRecorder(const AssertRecorder&) = delete;
  AssertRecorder& operator=(const AssertRecorder&) = delete;

  const std::vector<RecordedAssert>& fired() const { return Log(); }
  // True when exactly one assertion fired, with this condition, source and line.
  bool firedOnce(const std::string& condition, const std::string& source, int line) const {
    return Log().size() == 1 && Log()[0].condition == condition && Log()[0].source == source &&
           Log()[0].line == line;
  }

 private:
  static std::vector<RecordedAssert>& Log() {
    static std::vector<RecordedAssert> log;
    return log;
  }
  static void Record(const char* condition, const char* source, int line) {
    Log().push_back({condition, source, line});
  }
  cow_AssertHandler m_previous;
};

#endif
