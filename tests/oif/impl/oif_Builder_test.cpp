#include "oif_Builder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "DeckFile.h"
#include "oif_ModelInfo.h"

namespace {

class OifBuilderDeck : public DeckFile {
 protected:
  // A part of two element types: hexahedra 1 and 2 and tetrahedron 3 on nodes 1..12, with
  // coordinates that need every number layout.
  odb_DiscretePart& Block() {
    odb_DiscretePart& part =
        m_odb->DiscretePart("Block", odb_Enum::THREE_D, odb_Enum::DEFORMABLE_BODY);
    part.addNodes(Ints({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}), Points({{0, 0, 0},
                                                                         {0.1f, 0, 0},
                                                                         {2, 0, 0},
                                                                         {0, 1, 0},
                                                                         {1, 1, 0},
                                                                         {2, 1, 0},
                                                                         {0, 0, 1e-7f},
                                                                         {1, 0, 1},
                                                                         {2, 0, 1},
                                                                         {0, 1, 1},
                                                                         {1234567.f, 1, 1},
                                                                         {-2, 1, 1}}));
    part.addElements(Ints({1, 2}), Rows({{1, 2, 5, 4, 7, 8, 11, 10}, {2, 3, 6, 5, 8, 9, 12, 11}}),
                     "C3D8");
    part.addElements(Ints({3}), Rows({{1, 2, 4, 7}}), "C3D4");
    return part;
  }
  static odb_SequenceElementFace Faces(std::initializer_list<odb_Enum::odb_ElementFaceEnum> f) {
    odb_SequenceElementFace out;
    for (auto face : f) out.append(face);
    return out;
  }
};

}  // namespace

TEST_F(OifBuilderDeck, ModelWithPartsSetsSurfacesInstancesMaterialsAndStepsReadsAsExpected) {
  odb_DiscretePart& block = Block();
  block.NodeSet("Set 1", Ints({1, 2}));
  odb_Set& all = block.ElementSet("Set-1", Ints({1, 2, 3}));
  block.Surface("Top's", Ints({1, 2, 3}),
                Faces({odb_Enum::FACE2, odb_Enum::FACE2, odb_Enum::FACE1}));
  odb_Material& steel = m_odb->materials().Material("Steel");
  steel.setElastic(210000.0, 0.3);
  steel.setDensity(7.85e-9);
  m_odb->materials().Material("Void");
  block.assignSection(all, m_odb->sections().HomogeneousSolidSection("Solid", "Steel"));
  odb_Instance& first = m_odb->rootAssembly().Instance("Block-1", block);
  m_odb->rootAssembly().Instance("Block 2", block, Points({{10, 0, 0.5f}, {0, 0, 0, 0, 0, 1, 90}}));
  m_odb->rootAssembly().Instance("Moved", block, Points({{0, -3, 0}}));
  first.NodeSet("Corner", Ints({1, 3, 5, 8}));
  odb_SequenceString both;
  both.append("Block-1");
  both.append("Block 2");
  m_odb->rootAssembly().ElementSet("Pair", both, Rows({{3, 2, 1}, {2}}));
  m_odb->rootAssembly().DatumCsysByThreePoints("Axis", odb_Enum::CYLINDRICAL,
                                               Points({{0, 0, 0}})[0], Points({{1, 0, 0}})[0],
                                               Points({{0, 1, 0}})[0]);
  odb_Step& load = m_odb->steps().StaticStep("Load", "Press the block", "");
  load.LoadCase("LC2");
  load.LoadCase("LC 1");  // written in the order of names
  m_odb->steps().HeatTransferStep("Heat", "", "Load");
  ExpectDeck("model.inp", Deck());
}
