// A test fixture with the library up, warnings captured, and a fresh folder for files.
#ifndef TESTS_ODBSESSION_H
#define TESTS_ODBSESSION_H

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "TempDir.h"
#include "ThrownMessage.h"
#include "odb_Exception.h"
#include "odb_Initialize.h"
#include "odb_WipReporter.h"
#include "thr_ThreadSingleton.h"
#include "wip_WIP.h"

class OdbSession : public ::testing::Test {
 protected:
  void SetUp() override {
    odb_initialize(m_count);
    thr_ThreadSingleton<wip_WIP>::Instance().Install(&m_reporter);
  }
  void TearDown() override { odb_finalize(m_count); }

  // The warnings written since the last call, one "Warning: " line each.
  std::string TakeWarnings() {
    std::string text = m_out.str();
    m_out.str("");
    return text;
  }

  static bool Exists(const std::string& path) { return std::ifstream(path).good(); }

  TempDir m_dir;
  std::ostringstream m_out;
  odb_WipReporter m_reporter{m_out};
  int m_count = 0;
};

#endif
