// A test fixture with a small mesh placed as instance "B-1" and one frame to write fields into:
// two C3D8 hexahedra (1, 2) side by side, a C3D4 tetrahedron (3) on nodes of the first, and two
// S4R shells (4, 5) of the category "SHELL" whose section points are 1 and 2; nodes 1..12 at
// x = 0, 1, 2, y = 0, 1, z = 0, 1 (label = 1 + x + 3y + 6z).
#ifndef TESTS_FIELDFILE_H
#define TESTS_FIELDFILE_H

#include "MeshFile.h"

class FieldFile : public MeshFile {
 protected:
  void SetUp() override {
    MeshFile::SetUp();
    odb_DiscretePart& part =
        m_odb->DiscretePart("BLOCK", odb_Enum::THREE_D, odb_Enum::DEFORMABLE_BODY);
    odb_SequenceInt labels;
    odb_SequenceSequenceFloat points;
    for (int z = 0; z < 2; ++z)
      for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 3; ++x) {
          labels.append(1 + x + 3 * y + 6 * z);
          points.append(Points({{float(x), float(y), float(z)}})[0]);
        }
    part.addNodes(labels, points);
    part.addElements(Ints({1, 2}), Rows({{1, 2, 5, 4, 7, 8, 11, 10}, {2, 3, 6, 5, 8, 9, 12, 11}}),
                     "C3D8");
    part.addElements(Ints({3}), Rows({{1, 2, 4, 7}}), "C3D4");
    odb_SectionCategory& shell = m_odb->SectionCategory("SHELL", "a shell");
    shell.SectionPoint(1, "Bottom");
    shell.SectionPoint(2, "Top");
    part.addElements(Ints({4, 5}), Rows({{1, 2, 8, 7}, {2, 3, 9, 8}}), "S4R", "", shell);
    m_instance = &m_odb->rootAssembly().Instance("B-1", part);
    m_frame = m_odb->Step("LOAD", "", odb_Enum::TIME, 1.0, "", "*STATIC", 0.0).Frame(1, 0.5, "first");
  }

  // `n` rows of `width` floats, row r holding 100 r + c in column c.
  static odb_SequenceSequenceFloat Table(int n, int width) {
    odb_SequenceSequenceFloat rows;
    for (int r = 0; r < n; ++r) {
      odb_SequenceFloat row;
      for (int c = 0; c < width; ++c) row.append(float(100 * r + c));
      rows.append(row);
    }
    return rows;
  }

  odb_Instance* m_instance = nullptr;
  odb_Frame m_frame;
};

#endif
