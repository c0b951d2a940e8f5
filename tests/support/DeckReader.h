// A small keyword reader for the tests of the input deck: it reads back the parts (nodes,
// elements, sets), the instances and the assembly's sets of a deck the library wrote, so that a
// test can compare them with the database. It knows only the keywords the mesh writers use.
#ifndef TESTS_DECKREADER_H
#define TESTS_DECKREADER_H

#include <array>
#include <cstdlib>
#include <fstream>
#include <map>
#include <string>
#include <utility>
#include <vector>

struct DeckPart {
  std::map<int, std::array<double, 3>> nodes;
  std::map<int, std::pair<std::string, std::vector<int>>> elements;  // type, node labels
  std::map<std::string, std::vector<int>> nsets, elsets;
};

struct DeckModel {
  std::map<std::string, DeckPart> parts;
  std::map<std::string, std::string> instances;  // instance -> part
  // Assembly sets by (name, instance); blocks of one name add up.
  std::map<std::pair<std::string, std::string>, std::vector<int>> nsets, elsets;
  std::vector<std::string> problems;
};

namespace deck_reader {

inline std::string Trim(const std::string& s) {
  const std::size_t a = s.find_first_not_of(' ');
  if (a == std::string::npos) return "";
  return s.substr(a, s.find_last_not_of(' ') - a + 1);
}

// Splits at commas outside double quotes; quotes are removed and fields trimmed.
inline std::vector<std::string> Fields(const std::string& line) {
  std::vector<std::string> fields(1);
  bool quoted = false;
  for (char c : line) {
    if (c == '"')
      quoted = !quoted;
    else if (c == ',' && !quoted)
      fields.emplace_back();
    else
      fields.back() += c;
  }
  for (std::string& f : fields) f = Trim(f);
  return fields;
}

inline std::string Parameter(const std::vector<std::string>& fields, const std::string& name) {
  for (std::size_t i = 1; i < fields.size(); ++i)
    if (fields[i].rfind(name + "=", 0) == 0) return fields[i].substr(name.size() + 1);
  return "";
}

inline bool Flag(const std::vector<std::string>& fields, const std::string& name) {
  for (std::size_t i = 1; i < fields.size(); ++i)
    if (fields[i] == name) return true;
  return false;
}

}  // namespace deck_reader

inline DeckModel ReadDeck(const std::string& path) {
  using namespace deck_reader;
  DeckModel deck;
  std::ifstream in(path);
  std::vector<std::string> keyword;
  DeckPart* part = nullptr;
  std::vector<int>* set = nullptr;
  bool generate = false;
  std::string elementType;
  std::vector<int> pending;  // an element whose line continues
  for (std::string line; std::getline(in, line);) {
    if (line.rfind("**", 0) == 0) continue;
    if (!line.empty() && line[0] == '*') {
      keyword = Fields(line);
      set = nullptr;
      const std::string& k = keyword[0];
      generate = Flag(keyword, "generate");
      if (k == "*Part")
        part = &deck.parts[Parameter(keyword, "name")];
      else if (k == "*End Part")
        part = nullptr;
      else if (k == "*Element")
        elementType = Parameter(keyword, "type");
      else if (k == "*Instance")
        deck.instances[Parameter(keyword, "name")] = Parameter(keyword, "part");
      else if (k == "*Nset" || k == "*Elset") {
        const bool node = k == "*Nset";
        const std::string name = Parameter(keyword, node ? "nset" : "elset");
        const std::string instance = Parameter(keyword, "instance");
        if (part && instance.empty())
          set = &(node ? part->nsets : part->elsets)[name];
        else
          set = &(node ? deck.nsets : deck.elsets)[{name, instance}];
      }
      continue;
    }
    const std::vector<std::string> fields = Fields(line);
    const std::string& k = keyword.empty() ? std::string() : keyword[0];
    if (k == "*Node" && part) {
      std::array<double, 3> xyz = {0, 0, 0};
      for (std::size_t i = 1; i < fields.size() && i < 4; ++i)
        xyz[i - 1] = std::strtod(fields[i].c_str(), nullptr);
      part->nodes[std::atoi(fields[0].c_str())] = xyz;
    } else if (k == "*Element" && part) {
      const bool continues = !line.empty() && line.back() == ',';
      for (const std::string& f : fields)
        if (!f.empty()) pending.push_back(std::atoi(f.c_str()));
      if (continues) continue;
      part->elements[pending[0]] = {elementType,
                                    std::vector<int>(pending.begin() + 1, pending.end())};
      pending.clear();
    } else if (set) {
      if (generate) {
        const int first = std::atoi(fields[0].c_str()), last = std::atoi(fields[1].c_str()),
                  step = std::atoi(fields[2].c_str());
        for (int v = first;; v += step) {
          set->push_back(v);
          if (v == last || step == 0) break;
        }
      } else {
        for (const std::string& f : fields)
          if (!f.empty()) set->push_back(std::atoi(f.c_str()));
      }
    }
  }
  return deck;
}

#endif
