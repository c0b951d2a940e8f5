// A test fixture with the library up and a new database in a fresh folder, and builders of the
// small meshes the model tests share.
#ifndef TESTS_MESHFILE_H
#define TESTS_MESHFILE_H

#include <string>

#include "OdbSession.h"
#include "odb_API.h"

class MeshFile : public OdbSession {
 protected:
  void SetUp() override {
    OdbSession::SetUp();
    m_odb = &Odb("", "", "", m_path.c_str());
  }

  static odb_SequenceInt Ints(std::initializer_list<int> values) {
    odb_SequenceInt out;
    for (int v : values) out.append(v);
    return out;
  }
  static odb_SequenceSequenceInt Rows(std::initializer_list<std::initializer_list<int>> rows) {
    odb_SequenceSequenceInt out;
    for (auto row : rows) out.append(Ints(row));
    return out;
  }
  static odb_SequenceSequenceFloat Points(
      std::initializer_list<std::initializer_list<float>> rows) {
    odb_SequenceSequenceFloat out;
    for (auto row : rows) {
      odb_SequenceFloat r;
      for (float v : row) r.append(v);
      out.append(r);
    }
    return out;
  }

  // A part of two 4-node quadrilateral shells in a row: nodes 1..6 at x = 0, 1, 2 (labels 1, 2, 3
  // on y = 0 and 4, 5, 6 on y = 1), elements 10 and 20.
  odb_DiscretePart& TwoQuads(const char* name = "PLATE") {
    odb_DiscretePart& part =
        m_odb->DiscretePart(name, odb_Enum::THREE_D, odb_Enum::DEFORMABLE_BODY);
    part.addNodes(Ints({1, 2, 3, 4, 5, 6}),
                  Points({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {0, 1, 0}, {1, 1, 0}, {2, 1, 0}}));
    part.addElements(Ints({10, 20}), Rows({{1, 2, 5, 4}, {2, 3, 6, 5}}), "S4R");
    return part;
  }

  // Saves, closes and opens the file again, read-only.
  odb_Odb& Reopen() {
    saveOdb(*m_odb);
    closeOdb(*m_odb);
    m_odb = &openOdb(m_path.c_str(), true);
    return *m_odb;
  }

  std::string m_path = m_dir.file("model.odb");
  odb_Odb* m_odb = nullptr;
};

#endif
