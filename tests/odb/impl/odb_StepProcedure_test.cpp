#include "odb_StepProcedure.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "StepFile.h"
#include "odb_StepProcedureRecord.h"
#include "odb_StepRepositoryData.h"
#include "store_StepProcedure.h"

namespace {

using StepProcedureFile = StepFile;

// A procedure of `kind` with every setting moved off its default, so that a setting lost or
// swapped on its way through the file shows.
odb_StepProcedure Busy(odb_StepProcedure::Kind kind) {
  odb_StepProcedure p;
  p.kind = kind;
  p.nlgeom = p.perturbation = true;
  p.matrixStorage = odb_StepProcedure::UNSYMMETRIC;
  p.timePeriod = 2.5;
  p.initialIncrement = 0.1;
  p.minIncrement = 1e-7;
  p.maxIncrement = 0.3;
  p.fixedIncrementation = true;
  p.continueWithoutConvergence = true;
  p.stabilization = odb_StepProcedure::DAMPING_FACTOR;
  p.stabilizationValue = 2e-4;
  p.adiabatic = p.steadyState = p.consolidation = p.legacyCreepSpelling = true;
  p.fullyPlasticRegion = "Core set";
  p.cetol = 1e-3, p.deltmx = 5, p.mxdem = 0.2, p.dcmax = 0.7, p.utol = 3;
  p.creep = odb_StepProcedure::CREEP_EXPLICIT;
  p.end = odb_StepProcedure::END_PERIOD;
  p.maxLoadFactor = 1.5;
  p.separatedSolution = p.hasAlpha = p.noHaf = true;
  p.initialAccelerations = false;
  p.alpha = -0.05, p.haftol = 10;
  p.vectors = 18;
  p.timeIncrementation = odb_StepProcedure::USER_INCREMENT;
  p.scaleFactor = 0.9, p.userIncrement = 1e-6;
  p.linearBulkViscosity = 0.1, p.quadraticBulkViscosity = 1.5;
  p.massScaling = odb_StepProcedure::AUTOMATIC;
  p.massScalingType = odb_StepProcedure::SET_EQUAL_DT;
  p.massScalingRegion = "Skin";
  p.massScalingFactor = 4, p.massScalingDt = 2e-6, p.feedRate = 3, p.crossSection = 0.25;
  p.massScalingIntervals = 5, p.massScalingFrequency = 7;
  p.rollingDirection = "1";
  p.eigensolver = odb_StepProcedure::SUBSPACE;
  p.eigenvalues = 10, p.acousticCoupling = odb_StepProcedure::SWITCH_OFF;
  p.normalization = odb_StepProcedure::NORMALIZE_MASS;
  p.numberInterval = 3, p.frequencyPoints = 20, p.maxIterations = 30;
  p.userBoundaries = true;
  p.minFrequency = 1, p.maxFrequency = 100, p.bias = 3, p.maxEigenvalue = 50;
  p.steadyStateSolution = odb_StepProcedure::DIRECT_REAL_ONLY;
  p.continueAnalysis = true;
  p.timeIncrement = 0.01;
  p.damping = odb_StepProcedure::RAYLEIGH;
  p.firstMode = 2, p.lastMode = 9, p.modeIncrement = 3;
  p.dampingValue = 0.02, p.rayleighAlpha = 0.3, p.rayleighBeta = 4e-5;
  p.components = odb_StepProcedure::COMP_SRSS;
  p.summation = odb_StepProcedure::SUM_TENP;
  p.spectrum = "El Centro";
  p.direction[0] = 0.6, p.direction[2] = 0.8;
  p.spectrumScale = 9.81;
  p.hasAnnealTemperature = true;
  p.annealTemperature = 20;
  p.solverInput = "*Output, history\n*Energy output";
  return p;
}

// Two procedures agree when their stored forms do: the record lists every setting that differs
// from its default, by name and value.
void ExpectSame(const odb_StepProcedure& expected, const odb_StepProcedure& actual) {
  const store_StepProcedureRecord a = odb_ProcedureRecord(expected),
                                  b = odb_ProcedureRecord(actual);
  EXPECT_EQ(a.kind, b.kind);
  EXPECT_EQ(a.solverInput, b.solverInput);
  ASSERT_EQ(a.settings.size(), b.settings.size());
  for (std::size_t i = 0; i < a.settings.size(); ++i) {
    EXPECT_EQ(a.settings[i].name, b.settings[i].name);
    EXPECT_EQ(a.settings[i].isText, b.settings[i].isText);
    EXPECT_EQ(a.settings[i].number, b.settings[i].number) << a.settings[i].name;
    EXPECT_EQ(a.settings[i].text, b.settings[i].text);
  }
}

odb_StepRepository Reopened(std::shared_ptr<store_Database>& store, const std::string& path) {
  store->Commit();
  store->Close();
  store = store_Database::Open(path, true);
  odb_StepRepository steps = odb_StepRepositoryAccess::Make(store);
  odb_StepRepositoryAccess::Load(steps);
  return steps;
}

}  // namespace

TEST(StepProcedure, RecordHoldsOnlySettingsOffTheirDefaults) {
  odb_StepProcedure p;
  p.kind = odb_StepProcedure::VISCO;
  EXPECT_TRUE(odb_ProcedureRecord(p).settings.empty());
  p.cetol = 0.5;
  p.fullyPlasticRegion = "Plastic zone";
  const store_StepProcedureRecord record = odb_ProcedureRecord(p);
  ASSERT_EQ(record.settings.size(), 2u);
  EXPECT_EQ(record.settings[0].name, "cetol");
  EXPECT_EQ(record.settings[1].text, "Plastic zone");
  // Every field of the busy procedure differs from its default, so each has its own name (the
  // direction has two nonzero components).
  EXPECT_EQ(odb_ProcedureRecord(Busy(odb_StepProcedure::STATIC)).settings.size(), 76u);
}

TEST(StepProcedure, RecordRefusesUnknownKindAndWrongTypeAndPassesOverUnknownNames) {
  store_StepProcedureRecord record;
  record.kind = odb_StepProcedure::ANNEAL + 1;
  EXPECT_EQ(MessageOf([&] { odb_ProcedureOf(record); }),
            "A step procedure has the unknown kind 22.");
  record.kind = odb_StepProcedure::ANNEAL;
  store_StepSetting text;
  text.name = "cetol";
  text.isText = true;
  record.settings = {text};
  EXPECT_EQ(MessageOf([&] { odb_ProcedureOf(record); }),
            "Step setting cetol has a value of the wrong type.");
  record.settings[0] = store_StepSetting();
  record.settings[0].name = "eigenvalues";
  record.settings[0].number = 1e12;  // no int
  EXPECT_EQ(MessageOf([&] { odb_ProcedureOf(record); }),
            "Step setting eigenvalues has a value of the wrong type.");
  record.settings[0].name = "setting of a newer release";
  EXPECT_EQ(odb_ProcedureOf(record).kind, odb_StepProcedure::ANNEAL);
}

TEST(StepProcedure, KindGivesProcedureTextAndDomain) {
  odb_StepProcedure p;
  p.kind = odb_StepProcedure::STATIC;
  EXPECT_STREQ(odb_ProcedureText(p), "*STATIC");
  p.perturbation = true;
  EXPECT_STREQ(odb_ProcedureText(p), "*STATIC, PERTURBATION");
  EXPECT_EQ(odb_ProcedureDomain(p), odb_Enum::TIME);
  p.kind = odb_StepProcedure::FREQUENCY;
  EXPECT_EQ(odb_ProcedureDomain(p), odb_Enum::MODAL);
  p.kind = odb_StepProcedure::STEADY_STATE_DYNAMICS;
  EXPECT_EQ(odb_ProcedureDomain(p), odb_Enum::FREQUENCY);
  p.kind = odb_StepProcedure::STATIC_RIKS;
  EXPECT_EQ(odb_ProcedureDomain(p), odb_Enum::ARC_LENGTH);
  EXPECT_STREQ(odb_ProcedureText(p), "*STATIC, RIKS");
}

TEST_F(StepProcedureFile, EveryKindReadsBackAfterReopening) {
  m_steps.Step("Initial", "", "", Busy(odb_StepProcedure::INITIAL));
  std::string previous = "Initial";
  for (int kind = odb_StepProcedure::STATIC; kind <= odb_StepProcedure::ANNEAL; ++kind) {
    const std::string name = "Step-" + std::to_string(kind);
    m_steps.Step(name.c_str(), "", previous.c_str(),
                 Busy(static_cast<odb_StepProcedure::Kind>(kind)));
    previous = name;
  }
  odb_StepRepository back = Reopened(m_store, m_path);
  ASSERT_EQ(back.size(), odb_StepProcedure::ANNEAL);
  ExpectSame(Busy(odb_StepProcedure::INITIAL), back["Initial"].procedureSettings());
  for (int kind = odb_StepProcedure::STATIC; kind <= odb_StepProcedure::ANNEAL; ++kind) {
    const std::string name = "Step-" + std::to_string(kind);
    const odb_Step& step = back[name.c_str()];
    ExpectSame(Busy(static_cast<odb_StepProcedure::Kind>(kind)), step.procedureSettings());
    EXPECT_EQ(step.timePeriod(), 2.5);
    EXPECT_EQ(step.solverInput(), "*Output, history\n*Energy output");
  }
  EXPECT_EQ(back["Step-14"].domain(), odb_Enum::MODAL);  // FREQUENCY
}

TEST_F(StepProcedureFile, FactoriesStoreTheirKinds) {
  m_steps.StaticStep("Static", "", "");
  m_steps.StaticLinearPerturbationStep("Perturb", "", "Static");
  m_steps.HeatTransferStep("Heat", "", "Perturb");
  odb_StepRepository back = Reopened(m_store, m_path);
  EXPECT_EQ(back["Static"].procedureSettings().kind, odb_StepProcedure::STATIC);
  EXPECT_FALSE(back["Static"].procedureSettings().perturbation);
  EXPECT_TRUE(back["Perturb"].procedureSettings().perturbation);
  EXPECT_EQ(back["Perturb"].procedure(), "*STATIC, PERTURBATION");
  EXPECT_EQ(back["Heat"].procedureSettings().kind, odb_StepProcedure::HEAT_TRANSFER);
  EXPECT_EQ(back["Heat"].totalTime(), 2.0);
}

TEST_F(StepProcedureFile, StepOfTextAloneIsUnspecifiedAndTakesSolverInputLater) {
  odb_Step& step = odb_StepRepositoryAccess::AddStep(m_steps, "Old", "", odb_Enum::TIME, 3.0, "",
                                                     "*STATIC", 0.0);
  // The tables are made with the first procedure: a file without one is as an older release
  // wrote it, and still reads.
  EXPECT_TRUE(store_StepProcedures(*m_store).empty());
  EXPECT_EQ(step.procedureSettings().kind, odb_StepProcedure::UNSPECIFIED);
  EXPECT_EQ(step.procedureSettings().timePeriod, 3.0);
  step.setSolverInput("*Restart, write");
  odb_StepRepository back = Reopened(m_store, m_path);
  EXPECT_EQ(back["Old"].solverInput(), "*Restart, write");
  EXPECT_EQ(back["Old"].procedureSettings().kind, odb_StepProcedure::UNSPECIFIED);
  EXPECT_EQ(back["Old"].procedure(), "*STATIC");
}

TEST_F(StepProcedureFile, GeneralCreatorRefusesUnspecifiedUnknownAndLateInitial) {
  odb_StepProcedure p;
  EXPECT_EQ(MessageOf([&] { m_steps.Step("A", "", "", p); }), "Invalid procedure kind.");
  p.kind = static_cast<odb_StepProcedure::Kind>(99);
  EXPECT_EQ(MessageOf([&] { m_steps.Step("A", "", "", p); }), "Invalid procedure kind.");
  p.kind = odb_StepProcedure::STATIC;
  m_steps.Step("A", "", "", p);
  p.kind = odb_StepProcedure::INITIAL;
  EXPECT_EQ(MessageOf([&] { m_steps.Step("B", "", "A", p); }), "Invalid procedure kind.");
  EXPECT_EQ(MessageOf([&] { m_steps.Step("A", "", "", p); }), "A Step named \"A\" already exists.");
  EXPECT_EQ(m_steps.size(), 1);
}
