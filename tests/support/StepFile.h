// A test fixture with a step repository over a fresh database file in a folder of its own.
#ifndef TESTS_STEPFILE_H
#define TESTS_STEPFILE_H

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "TempDir.h"
#include "ThrownMessage.h"
#include "odb_StepRepository.h"
#include "odb_StepRepositoryData.h"
#include "store_Database.h"

class StepFile : public ::testing::Test {
 protected:
  void SetUp() override {
    m_store = store_Database::Create(m_path);
    m_steps = odb_StepRepositoryAccess::Make(m_store);
  }

  odb_Step& NewStep(const odb_String& name, odb_Enum::odb_DomainEnum domain = odb_Enum::TIME) {
    return odb_StepRepositoryAccess::AddStep(m_steps, name, "", domain, 1.0, "", "*STATIC", 0.0);
  }

  TempDir m_dir;
  std::string m_path = m_dir.file("steps.odb");
  std::shared_ptr<store_Database> m_store;
  odb_StepRepository m_steps;
};

#endif
