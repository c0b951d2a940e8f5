#include "oif_ModelInfo.h"

#include <gtest/gtest.h>

#include "MeshFile.h"
#include "oif_Builder.h"

namespace {

class OifModelInfoFile : public MeshFile {
 protected:
  void Add(const char* name, odb_StepProcedure::Kind kind, const char* previous,
           bool perturbation = false) {
    odb_StepProcedure p;
    p.kind = kind;
    p.perturbation = perturbation;
    m_odb->steps().Step(name, "", previous, p);
  }
};

}  // namespace

TEST_F(OifModelInfoFile, NoStepsLeaveEveryStepFieldEmpty) {
  oif_ModelInfo info(*m_odb);
  EXPECT_TRUE(info.writeAssemblyStructure());
  EXPECT_EQ(info.stepNames().size(), 0);
  EXPECT_EQ(info.initialStepName(), "");
  EXPECT_EQ(info.firstAnalysisStepName(), "");
  EXPECT_EQ(info.firstGeneralStepName(), "");
  EXPECT_FALSE(info.hasExplicitStep());
}

TEST_F(OifModelInfoFile, BaseStateIsAddedBeforeAnalysisStepsAndPerturbationsAreNotGeneral) {
  Add("Modes", odb_StepProcedure::FREQUENCY, "");
  Add("Preload", odb_StepProcedure::STATIC, "Modes", true);
  Add("Load", odb_StepProcedure::STATIC, "Preload");
  Add("Crash", odb_StepProcedure::EXPLICIT_DYNAMICS, "Load");
  oif_ModelInfo info(Reopen());
  ASSERT_EQ(info.stepNames().size(), 5);
  EXPECT_EQ(info.stepNames()[0], "Initial");
  EXPECT_EQ(info.stepNames()[4], "Crash");
  EXPECT_EQ(info.initialStepName(), "Initial");
  EXPECT_EQ(info.firstAnalysisStepName(), "Modes");
  EXPECT_EQ(info.firstGeneralStepName(), "Load");
  EXPECT_TRUE(info.hasExplicitStep());
}

TEST_F(OifModelInfoFile, StoredInitialStepIsTheInitialStep) {
  Add("Base", odb_StepProcedure::INITIAL, "");
  Add("Load", odb_StepProcedure::STATIC, "Base");
  oif_ModelInfo info(*m_odb);
  ASSERT_EQ(info.stepNames().size(), 2);
  EXPECT_EQ(info.initialStepName(), "Base");
  EXPECT_EQ(info.firstGeneralStepName(), "Load");
  EXPECT_FALSE(info.hasExplicitStep());
}

TEST_F(OifModelInfoFile, UnwritablePathReturnsFalseAndWriteInputThrows) {
  oif_ModelInfo info(*m_odb);
  oif_Builder builder(info);
  const std::string path = m_dir.file("no such folder/deck.inp");
  EXPECT_FALSE(builder.WriteInputFile(path.c_str()));
  EXPECT_FALSE(Exists(path));
  EXPECT_EQ(MessageOf([&] { m_odb->writeInput(path.c_str()); }),
            "Cannot write the input file '" + path + "'.");
  closeOdb(*m_odb);
  EXPECT_EQ(MessageOf([&] { oif_ModelInfo closed(*m_odb); }), "The database is closed.");
}
