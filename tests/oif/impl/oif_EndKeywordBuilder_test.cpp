#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "DeckFile.h"

namespace {

class OifEndKeywordBuilderDeck : public DeckFile {
 protected:
  odb_Step& Add(const char* name, odb_StepProcedure::Kind kind, const char* previous,
                const char* solverInput = "") {
    odb_StepProcedure p;
    p.kind = kind;
    p.solverInput = solverInput;
    return m_odb->steps().Step(name, "", previous, p);
  }
  // The deck from its first line of the step section on.
  std::vector<std::string> StepSection() {
    std::vector<std::string> lines = Deck();
    std::size_t i = 0;
    while (i < lines.size() && lines[i] != "*End Assembly") ++i;
    return std::vector<std::string>(lines.begin() + static_cast<long>(i) + 1, lines.end());
  }
};

std::vector<std::string> Keywords(const std::vector<std::string>& lines) {
  std::vector<std::string> keywords;
  for (const std::string& line : lines)
    if (line.rfind("**", 0) != 0) keywords.push_back(line);
  return keywords;
}

}  // namespace

TEST_F(OifEndKeywordBuilderDeck, ModelWithoutStepsHasNoStepSection) {
  TwoQuads();
  const std::vector<std::string> lines = Deck();
  EXPECT_EQ(lines.back(), "*End Assembly");
  EXPECT_FALSE(Contains(lines, "*End Step"));
  EXPECT_FALSE(Contains(lines, "*Output, field, variable=PRESELECT"));
}

TEST_F(OifEndKeywordBuilderDeck, OnlyInitialStepWritesItsSolverInputAndNoEndStep) {
  Add("Initial", odb_StepProcedure::INITIAL, "", "*Initial Conditions, type=TEMPERATURE\nAll, 20.");
  EXPECT_EQ(StepSection(),
            (std::vector<std::string>{"*Initial Conditions, type=TEMPERATURE", "All, 20."}));
}

TEST_F(OifEndKeywordBuilderDeck, PrintSuppressionOnlyInFirstAnalysisStepWhenNoneIsExplicit) {
  Add("One", odb_StepProcedure::STATIC, "", "*Restart, write");
  Add("Two", odb_StepProcedure::STATIC, "One");
  EXPECT_EQ(Keywords(StepSection()),
            (std::vector<std::string>{
                "*Step, name=One", "*Static", "1., 1., 0.00001, 1.", "*El Print, freq=999999",
                "*Node Print, freq=999999", "*Output, field, variable=PRESELECT",
                "*Node output, variable=PRESELECT", "*Element output, variable=PRESELECT",
                "*Restart, write", "*End Step", "*Step, name=Two", "*Static", "1., 1., 0.00001, 1.",
                "*Output, field, variable=PRESELECT", "*Node output, variable=PRESELECT",
                "*Element output, variable=PRESELECT", "*End Step"}));
}

TEST_F(OifEndKeywordBuilderDeck, AnyExplicitStepDropsThePrintSuppression) {
  Add("One", odb_StepProcedure::STATIC, "");
  Add("Crash", odb_StepProcedure::EXPLICIT_DYNAMICS, "One");
  const std::vector<std::string> lines = StepSection();
  EXPECT_FALSE(Contains(lines, "*El Print, freq=999999"));
  EXPECT_FALSE(Contains(lines, "*Node Print, freq=999999"));
  EXPECT_TRUE(Contains(lines, "*Output, field, variable=PRESELECT"));
}

TEST_F(OifEndKeywordBuilderDeck, PartsInstancesAndAssemblyAreClosed) {
  odb_DiscretePart& part = TwoQuads();
  m_odb->rootAssembly().Instance("A", part);
  m_odb->rootAssembly().Instance("B", part);
  std::vector<std::string> closing;
  for (const std::string& line : Deck())
    if (line.rfind("*End", 0) == 0 || line.rfind("*Part", 0) == 0 ||
        line.rfind("*Instance", 0) == 0 || line.rfind("*Assembly", 0) == 0)
      closing.push_back(line);
  EXPECT_EQ(closing, (std::vector<std::string>{
                         "*Part, name=PLATE", "*End Part", "*Assembly, name=Assembly",
                         "*Instance, name=A, part=PLATE", "*End Instance",
                         "*Instance, name=B, part=PLATE", "*End Instance", "*End Assembly"}));
}
