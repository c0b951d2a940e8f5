// The closing keywords and the default output requests:
// - "*End Part" closes each part (after its sets and section assignments), "*End Instance"
//   each instance of a part, "*End Assembly" the assembly level;
// - the initial step gives its solver input text, when it has one, in its place;
// - every later step gets, in the first analysis step only and only when no step is explicit,
//   "*El Print, freq=999999" and "*Node Print, freq=999999"; then always the three PRESELECT
//   output requests, the step's solver input text when it has one, and "*End Step".
// A step with load cases closes each with "*End Load Case", and "*End Step" follows its last
// load case rather than its own items, so that the load cases stay inside the step.
#include <string>

#include "oif_Components.h"

void oif_EndKeywordBuilder::Prepare() {
  Clear();
  const oif_ModelData& model = Model();
  if (model.writeAssemblyStructure) {
    for (const store_PartRecord& part : model.parts) AddPart(part.name, oif_Keyword("*End Part"));
    for (const oif_InstanceInfo& instance : model.instances)
      if (instance.partInstance) AddInstance(instance.name, oif_Keyword("*End Instance"));
    AddAssembly(oif_Keyword("*End Assembly"));
  }
  int counter = 1;
  for (std::size_t i = 0; i < model.steps.size(); ++i) {
    const oif_StepInfo& step = model.steps[i];
    const std::string solverInput = step.settings.solverInput.CStr();
    if (i == 0) {
      if (!solverInput.empty()) AddStep(step.name, "", oif_Keyword(solverInput));
      continue;
    }
    if (counter == 1 && !model.hasExplicitStep) {
      AddStep(step.name, "", oif_Keyword("*El Print, freq=999999"));
      AddStep(step.name, "", oif_Keyword("*Node Print, freq=999999"));
    }
    AddStep(step.name, "", oif_Keyword("*Output, field, variable=PRESELECT"));
    AddStep(step.name, "", oif_Keyword("*Node output, variable=PRESELECT"));
    AddStep(step.name, "", oif_Keyword("*Element output, variable=PRESELECT"));
    if (!solverInput.empty()) AddStep(step.name, "", oif_Keyword(solverInput));
    std::string last;
    for (const std::string& loadCase : step.loadCases)
      if (!loadCase.empty()) {
        AddStep(step.name, loadCase, oif_Keyword("*End Load Case"));
        last = loadCase;
      }
    AddStep(step.name, last, oif_Keyword("*End Step"));
    ++counter;
  }
}
