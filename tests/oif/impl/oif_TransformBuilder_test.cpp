#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "DeckFile.h"

namespace {

using OifTransformBuilderDeck = DeckFile;

}  // namespace

TEST_F(OifTransformBuilderDeck, DatumSystemsAreWrittenAsOrientationsAtAssemblyLevel) {
  odb_DiscretePart& plate = TwoQuads();
  m_odb->rootAssembly().Instance("Plate 1", plate);
  odb_SequenceFloat origin, x, y;
  for (float v : {1.f, 2.f, 3.f}) origin.append(v);
  for (float v : {0.f, 1.f, 0.f}) x.append(v);
  for (float v : {-1.f, 0.f, 0.f}) y.append(v);
  m_odb->rootAssembly().DatumCsys("Fixed", odb_Enum::RECTANGULAR, origin, x, y);
  m_odb->rootAssembly().DatumCsysByThreeNodes("Follow", odb_Enum::SPHERICAL, "Plate 1", 1, 2, 4);
  const std::vector<std::string> lines = Deck();
  std::vector<std::string> orientations;
  for (std::size_t i = 0; i + 1 < lines.size(); ++i)
    if (lines[i].rfind("*Orientation", 0) == 0) {
      orientations.push_back(lines[i]);
      orientations.push_back(lines[i + 1]);
      // One data line each.
      EXPECT_TRUE(lines[i + 2].rfind("*Orientation", 0) == 0 || lines[i + 2] == "*End Assembly");
    }
  EXPECT_EQ(orientations, (std::vector<std::string>{
                              "*Orientation, name=Fixed", "1., 3., 3., 0., 2., 3., 1., 2., 3.",
                              "*Orientation, name=Follow, definition=NODES, system=SPHERICAL",
                              "\"Plate 1\".1, \"Plate 1\".2, \"Plate 1\".4"}));
}
