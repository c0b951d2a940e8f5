// The deck and the database agree: a deck written from a database is read back by a small
// keyword reader, and its nodes, elements and sets compared with what the database holds.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "DeckFile.h"
#include "DeckReader.h"

namespace {

class OifPartBuilderRoundTrip : public DeckFile {
 protected:
  // A block of nx * ny * nz 8-node bricks with awkward coordinates, elements labelled 1, 3, 5 ...
  odb_DiscretePart& Bricks(const char* name, int nx, int ny, int nz) {
    odb_DiscretePart& part =
        m_odb->DiscretePart(name, odb_Enum::THREE_D, odb_Enum::DEFORMABLE_BODY);
    const auto node = [&](int i, int j, int k) { return 1 + i + (nx + 1) * (j + (ny + 1) * k); };
    std::vector<int> labels;
    std::vector<float> xyz;
    for (int k = 0; k <= nz; ++k)
      for (int j = 0; j <= ny; ++j)
        for (int i = 0; i <= nx; ++i) {
          labels.push_back(node(i, j, k));
          xyz.insert(xyz.end(), {0.1f * i, 1.0f / 3 * j - 7e-7f, 12345.678f + 0.37f * k});
        }
    part.addNodes(labels, xyz);
    std::vector<int> elements, connectivity;
    for (int k = 0; k < nz; ++k)
      for (int j = 0; j < ny; ++j)
        for (int i = 0; i < nx; ++i) {
          elements.push_back(static_cast<int>(elements.size()) * 2 + 1);
          connectivity.insert(connectivity.end(),
                              {node(i, j, k), node(i + 1, j, k), node(i + 1, j + 1, k),
                               node(i, j + 1, k), node(i, j, k + 1), node(i + 1, j, k + 1),
                               node(i + 1, j + 1, k + 1), node(i, j + 1, k + 1)});
        }
    part.addElements(elements, connectivity, "C3D8");
    return part;
  }

  // Every part, instance and set of the database agrees with the deck.
  void ExpectAgree(const DeckModel& deck) {
    EXPECT_TRUE(deck.problems.empty());
    odb_DiscretePartRepositoryIT parts(m_odb->parts());
    int partCount = 0;
    for (parts.first(); !parts.isDone(); parts.next(), ++partCount) {
      odb_DiscretePart part = parts.currentValue();
      const std::string name = part.name().CStr();
      ASSERT_EQ(deck.parts.count(name), 1u) << name;
      const DeckPart& read = deck.parts.at(name);
      std::vector<int> labels(part.nodes().size());
      std::vector<float> xyz(labels.size() * 3);
      part.readNodes(labels, xyz);
      ASSERT_EQ(read.nodes.size(), labels.size()) << name;
      for (std::size_t i = 0; i < labels.size(); ++i) {
        const auto found = read.nodes.find(labels[i]);
        ASSERT_NE(found, read.nodes.end()) << labels[i];
        for (int c = 0; c < 3; ++c)
          ASSERT_EQ(static_cast<float>(found->second[c]), xyz[3 * i + c]) << labels[i];
      }
      const odb_SequenceElement& elements = part.elements();
      ASSERT_EQ(read.elements.size(), static_cast<std::size_t>(elements.size())) << name;
      for (int i = 0; i < elements.size(); ++i) {
        const odb_Element e = elements[i];
        const auto found = read.elements.find(e.label());
        ASSERT_NE(found, read.elements.end()) << e.label();
        EXPECT_EQ(found->second.first, e.type().CStr());
        const odb_SequenceInt nodes = e.connectivity();
        ASSERT_EQ(found->second.second.size(), static_cast<std::size_t>(nodes.size()));
        for (int n = 0; n < nodes.size(); ++n) ASSERT_EQ(found->second.second[n], nodes[n]);
      }
      ExpectSets(part.nodeSets(), read.nsets, true);
      ExpectSets(part.elementSets(), read.elsets, false);
    }
    EXPECT_EQ(deck.parts.size(), static_cast<std::size_t>(partCount));
    odb_InstanceRepositoryIT instances(m_odb->rootAssembly().instances());
    for (instances.first(); !instances.isDone(); instances.next()) {
      odb_Instance instance = instances.currentValue();
      const std::string name = instance.name().CStr();
      EXPECT_EQ(deck.instances.at(name), instance.partName().CStr());
      std::map<std::string, std::vector<int>> nsets;
      for (const auto& set : deck.nsets)
        if (set.first.second == name) nsets[set.first.first] = set.second;
      ExpectSets(instance.nodeSets(), nsets, true);
    }
  }

  static void ExpectSets(odb_SetRepository& sets,
                         const std::map<std::string, std::vector<int>>& read, bool nodes) {
    odb_SetRepositoryIT it(sets);
    for (it.first(); !it.isDone(); it.next()) {
      const std::string name = it.currentKey().CStr();
      ASSERT_EQ(read.count(name), 1u) << name;
      std::vector<int> labels;
      if (nodes)
        for (int i = 0; i < it.currentValue().nodes().size(); ++i)
          labels.push_back(it.currentValue().nodes()[i].label());
      else
        for (int i = 0; i < it.currentValue().elements().size(); ++i)
          labels.push_back(it.currentValue().elements()[i].label());
      EXPECT_EQ(read.at(name), labels) << name;
    }
  }
};

}  // namespace

TEST_F(OifPartBuilderRoundTrip, SmallModelOfSeveralTypesLongElementsAndPlanarPartsAgrees) {
  odb_DiscretePart& beam = Bricks("Beam", 10, 2, 2);
  beam.NodeSet("Fixed", Ints({1, 12, 23, 34, 45, 56, 67, 78, 89}));
  beam.NodeSet("Scattered nodes",
               Ints({5, 3, 99, 1, 40, 41, 42, 43, 44, 45, 46, 47, 48, 49, 50, 51, 52, 60}));
  beam.ElementSet("Every other", Ints({1, 5, 9, 13}));
  // 20-node bricks: 21 values per element, so their lines continue.
  odb_DiscretePart& quadratic =
      m_odb->DiscretePart("Quadratic", odb_Enum::THREE_D, odb_Enum::DEFORMABLE_BODY);
  std::vector<int> labels, connectivity;
  std::vector<float> xyz;
  for (int n = 1; n <= 40; ++n) {
    labels.push_back(1000000 + n);
    xyz.insert(xyz.end(), {float(n), float(n) * 0.5f, -float(n)});
  }
  quadratic.addNodes(labels, xyz);
  for (int n = 0; n < 20; ++n) connectivity.push_back(1000001 + n);
  for (int n = 0; n < 20; ++n) connectivity.push_back(1000021 + n);
  quadratic.addElements(std::vector<int>{2000000001, 2000000002}, connectivity, "C3D20R");
  odb_DiscretePart& plate =
      m_odb->DiscretePart("Plate", odb_Enum::TWO_D_PLANAR, odb_Enum::DEFORMABLE_BODY);
  plate.addNodes(Ints({1, 2, 3, 4}), Points({{0, 0}, {1, 0}, {1, 1}, {0, 1}}));
  plate.addElements(Ints({1}), Rows({{1, 2, 3, 4}}), "CPS4");
  odb_Instance& instance = m_odb->rootAssembly().Instance("Beam-1", beam);
  instance.NodeSet("Tip", Ints({11, 22, 33}));
  m_odb->rootAssembly().Instance("Plate-1", plate, Points({{1, 2, 0}}));
  Deck();
  for (const std::string& line : Lines(m_deckPath)) EXPECT_LE(line.size(), 256u) << line;
  ExpectAgree(ReadDeck(m_deckPath));
}

TEST_F(OifPartBuilderRoundTrip, HundredThousandElementModelAgrees) {
  odb_DiscretePart& block = Bricks("Block", 50, 40, 50);
  odb_SequenceInt all, bottom;
  for (int label = 1; label < 200000; label += 2) all.append(label);
  for (int label = 1; label <= 51 * 41; ++label) bottom.append(label);
  block.ElementSet("All", all);
  block.NodeSet("Bottom", bottom);
  m_odb->rootAssembly().Instance("Block-1", block);
  Reopen();
  Deck();
  ExpectAgree(ReadDeck(m_deckPath));
}

// Surface elements take the deck's generic type; the node lists stay theirs.
TEST_F(OifPartBuilderRoundTrip, SurfaceElementsAreWrittenAsSurf) {
  odb_DiscretePart& skin =
      m_odb->DiscretePart("Skin", odb_Enum::THREE_D, odb_Enum::DEFORMABLE_BODY);
  skin.addNodes(Ints({1, 2, 3, 4, 5}),
                Points({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {2, 0, 0}}));
  skin.addElements(Ints({7}), Rows({{1, 2, 3, 4}}), "SFM3D4");
  skin.addElements(Ints({8}), Rows({{2, 5, 3}}), "SFM3D3");
  skin.addElements(Ints({9}), Rows({{2, 5, 3}}), "M3D3");
  const std::vector<std::string> deck = Deck();
  int surf = 0;
  for (const std::string& line : deck) surf += line == "*Element, type=SURF";
  EXPECT_EQ(surf, 2);
  EXPECT_TRUE(Contains(deck, "7, 1, 2, 3, 4"));
  EXPECT_TRUE(Contains(deck, "8, 2, 5, 3"));
  EXPECT_TRUE(Contains(deck, "*Element, type=M3D3"));
  EXPECT_FALSE(Contains(deck, "*Element, type=SFM3D4"));
}
