#include "odb_StepRepository.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <functional>
#include <string>

#include "StepFile.h"
#include "odb_StepRepositoryData.h"

namespace {

using StepRepositoryFile = StepFile;

}  // namespace

TEST_F(StepRepositoryFile, FactoriesCheckNameThenPreviousThenDuplicate) {
  m_steps.StaticStep("Step-1", "", "");
  EXPECT_EQ(MessageOf([&] { m_steps.StaticStep("", "", "Missing"); }), "Invalid step name.");
  EXPECT_EQ(MessageOf([&] { m_steps.HeatTransferStep("Step-1", "", "Missing"); }),
            "Previous step \"Missing\" not found.");
  EXPECT_EQ(MessageOf([&] { m_steps.StaticLinearPerturbationStep("Step-1", "", "Step-1"); }),
            "A Step named \"Step-1\" already exists.");
  EXPECT_EQ(MessageOf([&] {
              odb_StepRepositoryAccess::AddStep(m_steps, "", "", odb_Enum::TIME, 1, "", "", 0);
            }),
            "Invalid step name.");
  EXPECT_EQ(m_steps.size(), 1);
}

TEST_F(StepRepositoryFile, FactoriesSetProcedureAndStartWherePreviousEnds) {
  odb_StepRepositoryAccess::AddStep(m_steps, "Step-1", "", odb_Enum::TIME, 2.5, "", "*DYNAMIC",
                                    1.0);
  odb_Step& heat = m_steps.HeatTransferStep("Step-2", "heat", "Step-1");
  EXPECT_EQ(heat.procedure(), "*HEAT TRANSFER");
  EXPECT_EQ(heat.totalTime(), 3.5);
  EXPECT_EQ(heat.timePeriod(), 1.0);
  EXPECT_EQ(heat.previousStepName(), "Step-1");
  EXPECT_EQ(m_steps.StaticLinearPerturbationStep("Step-3", "", "Step-2").procedure(),
            "*STATIC, PERTURBATION");
  odb_Step& first = m_steps.StaticStep("Step-4", "", "");
  EXPECT_EQ(first.procedure(), "*STATIC");
  EXPECT_EQ(first.totalTime(), 0.0);
}
