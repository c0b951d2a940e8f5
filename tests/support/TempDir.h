// A fresh folder for one test's files, removed with everything in it when the test ends.
#ifndef TESTS_TEMPDIR_H
#define TESTS_TEMPDIR_H

#include <cstdlib>
#include <filesystem>
#include <string>

class TempDir {
 public:
  TempDir() {
    std::string pattern = std::filesystem::temp_directory_path().string() + "/qtvodb-XXXXXX";
    m_path = mkdtemp(pattern.data()) ? pattern : std::string();
  }
  ~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& path() const { return m_path; }
  std::string file(const std::string& name) const { return m_path + "/" + name; }

 private:
  std::string m_path;
};

#endif
