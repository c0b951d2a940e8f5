// A test fixture with a database holding the two-quad plate placed once as instance "I" and a
// step "S", for history regions and outputs.
#ifndef TESTS_HISTORYFILE_H
#define TESTS_HISTORYFILE_H

#include <vector>

#include "MeshFile.h"

class HistoryFile : public MeshFile {
 protected:
  void SetUp() override {
    MeshFile::SetUp();
    m_part = &TwoQuads();
    m_instance = &m_odb->rootAssembly().Instance("I", *m_part);
    m_step = &NewStep("S");
  }

  odb_Step& NewStep(const char* name) {
    return m_odb->Step(name, "", odb_Enum::TIME, 1.0, "", "*STATIC", 0.0);
  }

  static odb_SequenceFloat Floats(std::initializer_list<float> values) {
    odb_SequenceFloat out;
    for (float v : values) out.append(v);
    return out;
  }

  // The pairs of `data` as (time, value) rows, for comparisons.
  static std::vector<std::pair<double, float>> Pairs(const odb_HistoryData& data) {
    std::vector<std::pair<double, float>> out;
    for (int i = 0; i < data.size(); ++i) out.emplace_back(data.time(i), data.value(i));
    return out;
  }

  odb_DiscretePart* m_part = nullptr;
  odb_Instance* m_instance = nullptr;
  odb_Step* m_step = nullptr;
};

#endif
