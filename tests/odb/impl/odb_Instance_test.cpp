#include <gtest/gtest.h>

#include "MeshFile.h"

class InstanceSets : public MeshFile {
 protected:
  void SetUp() override {
    MeshFile::SetUp();
    m_part = &TwoQuads();
    m_instance = &m_odb->rootAssembly().Instance("I", *m_part);
  }
  odb_SequenceElementFace Faces(std::initializer_list<odb_Enum::odb_ElementFaceEnum> faces) {
    odb_SequenceElementFace out;
    for (auto f : faces) out.append(f);
    return out;
  }
  odb_DiscretePart* m_part = nullptr;
  odb_Instance* m_instance = nullptr;
};

TEST_F(InstanceSets, MakeSetsFromLabelsOrFromTheirOwnSequences) {
  odb_Instance& i = *m_instance;
  EXPECT_EQ(i.NodeSet("N", Ints({6, 1})).nodes()[0].label(), 6);
  EXPECT_EQ(i.NodeSet("N2", i.nodes().slice(1, 3)).nodes()[1].label(), 3);
  EXPECT_EQ(i.ElementSet("E", i.elements()).elements().size(), 2);
  odb_Set& s = i.Surface("S", Ints({20}), Faces({odb_Enum::SIDE2}));
  EXPECT_EQ(s.elements()[0].label(), 20);
  EXPECT_EQ(s.type(), odb_Set::SURFACE_SET);
  EXPECT_EQ(i.nodeSets().size(), 2);
}

TEST_F(InstanceSets, RefuseDuplicatesForeignSequencesAndBadSurfaces) {
  odb_Instance& i = *m_instance;
  i.NodeSet("N", Ints({1}));
  EXPECT_EQ(MessageOf([&] { i.NodeSet("N", Ints({2})); }), "Duplicate set or surface name");
  EXPECT_EQ(i.nodeSet("N").nodes().size(), 1);
  EXPECT_EQ(MessageOf([&] { i.NodeSet("M", Ints({9})); }), "Node 9 not found in \"I\".");
  EXPECT_EQ(MessageOf([&] { i.NodeSet("M", m_part->nodes()); }),
            "SequenceNode is not associated with this entity.");
  EXPECT_EQ(MessageOf([&] { i.ElementSet("M", m_part->elements()); }),
            "SequenceElement is not associated with this entity.");
  EXPECT_EQ(MessageOf([&] {
              i.Surface("S", Ints({10, 20}), Faces({odb_Enum::SIDE1}));
            }),
            "Number of faces and elements should agree for a Surface.");
  EXPECT_EQ(MessageOf([&] { i.Surface("S", i.elements(), Faces({odb_Enum::SIDE1})); }),
            "Number of faces and elements for instance surface must agree.");
  EXPECT_EQ(MessageOf([&] { i.Surface("S", Ints({10}), Faces({odb_Enum::FACE5})); }),
            "Face 5 is not a face of element 10 of type S4R.");
  i.Surface("S", Ints({10}), Faces({odb_Enum::SIDE1}));
  EXPECT_EQ(MessageOf([&] { i.Surface("S", Ints({20}), Faces({odb_Enum::SIDE1})); }),
            "Duplicate set or surface name");
}

TEST_F(InstanceSets, AssignSectionsToElementSetsOnly) {
  odb_Instance& i = *m_instance;
  m_odb->materials().Material("STEEL");
  odb_Section& section = m_odb->sections().HomogeneousShellSection("SHELL", "STEEL", 0.5, 5);
  EXPECT_EQ(MessageOf([&] { i.assignSection(i.NodeSet("N", Ints({1})), section); }),
            "Section assignment requires element sets.");
  i.assignSection(i.ElementSet("E", Ints({10, 20})), section);
  ASSERT_EQ(i.sectionAssignments().size(), 1u);
  EXPECT_EQ(i.sectionAssignments()[0].section, "SHELL");
}
