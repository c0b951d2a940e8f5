#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "DeckFile.h"

namespace {

using OifPartAttributesBuilderDeck = DeckFile;

// The lines from `first` up to, not including, the next line that starts with `until`.
std::vector<std::string> Between(const std::vector<std::string>& lines, const std::string& first,
                                 const std::string& until) {
  std::vector<std::string> out;
  bool in = false;
  for (const std::string& line : lines) {
    if (line == first)
      in = true;
    else if (in && line.rfind(until, 0) == 0)
      break;
    if (in) out.push_back(line);
  }
  return out;
}

}  // namespace

TEST_F(OifPartAttributesBuilderDeck, ShellBeamAndInstanceAssignmentsWriteTheirDataLines) {
  odb_DiscretePart& plate = TwoQuads();
  m_odb->materials().Material("Alu 6061").setDensity(2.7e-9);
  odb_SequenceDouble dimensions;
  dimensions.append(0.02);
  dimensions.append(0.035);
  odb_Section& shell = m_odb->sections().HomogeneousShellSection("Skin", "Alu 6061", 1.5, 5);
  odb_Section& beam = m_odb->sections().BeamSection("Rib", "Alu 6061", "RECT", dimensions);
  plate.assignSection(plate.ElementSet("Left", Ints({10})), shell);
  odb_Instance& instance = m_odb->rootAssembly().Instance("Plate-1", plate);
  instance.assignSection(instance.ElementSet("Right", Ints({20})), beam);
  const std::vector<std::string> lines = Deck();
  EXPECT_EQ(
      Between(lines, "** Section: Skin", "*End"),
      (std::vector<std::string>{"** Section: Skin",
                                "*Shell Section, elset=Left, material=\"Alu 6061\"", "1.5, 5"}));
  EXPECT_EQ(Between(lines, "*Instance, name=Plate-1, part=PLATE", "*End Assembly"),
            (std::vector<std::string>{
                "*Instance, name=Plate-1, part=PLATE", "** Section: Rib",
                "*Beam Section, elset=Right, material=\"Alu 6061\", section=RECT", "0.02, 0.035",
                "*End Instance", "*Elset, elset=Right, instance=Plate-1", "20, "}));
  EXPECT_EQ(Between(lines, "*Material, name=\"Alu 6061\"", "** -"),
            (std::vector<std::string>{"*Material, name=\"Alu 6061\"", "*Density", "2.7e-09,"}));
}
