// A test fixture with the section-category, material and section repositories over a fresh
// database file in a folder of its own.
#ifndef TESTS_MODELFILE_H
#define TESTS_MODELFILE_H

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "TempDir.h"
#include "ThrownMessage.h"
#include "odb_MaterialData.h"
#include "odb_SectionCategoryData.h"
#include "odb_SectionData.h"
#include "store_Database.h"

class ModelFile : public ::testing::Test {
 protected:
  void SetUp() override {
    m_store = store_Database::Create(m_path);
    m_categories = odb_SectionCategoryRepositoryAccess::Make(m_store);
    m_materials = odb_MaterialRepositoryAccess::Make(m_store);
    m_sections = odb_SectionRepositoryAccess::Make(m_store);
  }

  // Saves what was written, closes the writer and opens the file again read-only, as a reader
  // would after the analysis. The fixture's repositories keep what they hold in memory.
  std::shared_ptr<store_Database> SaveAndReopen() {
    m_store->Commit();
    m_store->Close();
    return store_Database::Open(m_path, true);
  }

  // The text of the store's refusal to write to a read-only database.
  static constexpr const char* kReadOnly = "The database is read-only: cannot write.";

  TempDir m_dir;
  std::string m_path = m_dir.file("model.odb");
  std::shared_ptr<store_Database> m_store;
  odb_SectionCategoryRepository m_categories;
  odb_MaterialRepository m_materials;
  odb_SectionRepository m_sections;
};

#endif
