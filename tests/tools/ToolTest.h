// The fixture of the odb tool's tests: a fresh folder, sample databases written into it, and the
// program run on them.
#ifndef TESTS_TOOLTEST_H
#define TESTS_TOOLTEST_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "TempDir.h"
#include "ToolRun.h"
#include "ToolSample.h"
#include "odb_API.h"

class ToolTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { odb_initializeAPI(); }

  std::string Sample(const std::string& name, const ToolSample& options = ToolSample()) {
    const std::string path = m_dir.file(name);
    WriteToolSample(path, options);
    return path;
  }
  ToolResult Run(const std::vector<std::string>& args) { return RunOdb(m_dir.path(), args); }
  std::string File(const std::string& name) const { return m_dir.file(name); }

 private:
  TempDir m_dir;
};

inline bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

#endif
