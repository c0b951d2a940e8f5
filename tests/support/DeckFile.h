// A test fixture for input decks: a new database (MeshFile), the deck written from it as lines,
// and the comparison of a deck with an expected one stored beside the tests.
#ifndef TESTS_DECKFILE_H
#define TESTS_DECKFILE_H

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "MeshFile.h"

class DeckFile : public MeshFile {
 protected:
  static std::vector<std::string> Lines(const std::string& path) {
    std::vector<std::string> lines;
    std::ifstream in(path);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
  }

  // The deck of the database as written by writeInput.
  std::vector<std::string> Deck() {
    m_odb->writeInput(m_deckPath.c_str());
    return Lines(m_deckPath);
  }

  // Compares `lines` with tests/oif/impl/decks/NAME line by line. On a difference the deck is
  // also written to NAME in the working folder, to be looked at and, once right, copied over.
  static void ExpectDeck(const std::string& name, const std::vector<std::string>& lines) {
    const std::vector<std::string> expected =
        Lines(std::string(QTVODB_SOURCE_DIR) + "/tests/oif/impl/decks/" + name);
    EXPECT_FALSE(expected.empty()) << "no expected deck " << name;
    bool same = expected.size() == lines.size();
    for (std::size_t i = 0; i < expected.size() && i < lines.size(); ++i)
      if (expected[i] != lines[i]) {
        ADD_FAILURE() << name << " line " << i + 1 << ": expected\n  " << expected[i]
                      << "\nwritten\n  " << lines[i];
        same = false;
        break;
      }
    EXPECT_EQ(expected.size(), lines.size()) << name << ": number of lines";
    if (!same) {
      std::ofstream out(name);
      for (const std::string& line : lines) out << line << "\n";
    }
  }

  static bool Contains(const std::vector<std::string>& lines, const std::string& line) {
    for (const std::string& l : lines)
      if (l == line) return true;
    return false;
  }

  std::string m_deckPath = m_dir.file("model.inp");
};

#endif
