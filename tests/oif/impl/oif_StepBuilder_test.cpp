#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "AssertRecorder.h"
#include "DeckFile.h"
#include "oif_Components.h"

namespace {

using P = odb_StepProcedure;

class OifStepBuilderDeck : public DeckFile {
 protected:
  // Adds a step of `kind` after the last one, its settings changed by `set`.
  template <class Set>
  void Add(const char* name, P::Kind kind, Set&& set) {
    P p;
    p.kind = kind;
    set(p);
    m_odb->steps().Step(name, "", m_last.c_str(), p);
    m_last = name;
  }
  void Add(const char* name, P::Kind kind) {
    Add(name, kind, [](P&) {});
  }
  std::string m_last;
};

oif_StepInfo Info(P::Kind kind) {
  oif_StepInfo step;
  step.name = "S";
  step.settings.kind = kind;
  return step;
}

}  // namespace

// One deck with a step of every procedure kind, the settings varied so that every parameter of
// every writer appears at least once.
TEST_F(OifStepBuilderDeck, EveryProcedureKindWritesItsCardParametersAndDataLines) {
  Add("Initial", P::INITIAL, [](P& p) { p.solverInput = "*Restart, write"; });
  Add("Static direct", P::STATIC, [](P& p) {
    p.nlgeom = p.adiabatic = p.fixedIncrementation = p.continueWithoutConvergence = true;
    p.fullyPlasticRegion = "Core";
    p.stabilization = P::ENERGY_FRACTION;
    p.stabilizationValue = 0.0002;
    p.matrixStorage = P::UNSYMMETRIC;
    p.initialIncrement = 0.1;
  });
  Add("Static", P::STATIC, [](P& p) {
    p.nlgeom = true;  // in force already: not written again
    p.fixedIncrementation = true;
    p.stabilization = P::DAMPING_FACTOR;
    p.stabilizationValue = 1.5;
    p.matrixStorage = P::SYMMETRIC;
  });
  Add("Perturbation", P::STATIC, [](P& p) { p.perturbation = true; });
  Add("Riks", P::STATIC_RIKS, [](P& p) {
    p.maxLoadFactor = 2;
    p.nlgeom = true;
  });
  Add("Visco", P::VISCO, [](P& p) {
    p.cetol = 0.001;
    p.creep = P::CREEP_EXPLICIT;
    p.nlgeom = true;
  });
  Add("Visco old", P::VISCO, [](P& p) {
    p.creep = P::CREEP_EXPLICIT;
    p.legacyCreepSpelling = p.nlgeom = true;
  });
  Add("Dynamic", P::IMPLICIT_DYNAMICS, [](P& p) {
    p.hasAlpha = p.adiabatic = p.fixedIncrementation = true;
    p.alpha = -0.05;
    p.haftol = 10;
    p.initialAccelerations = false;
  });
  Add("Dynamic no stop", P::IMPLICIT_DYNAMICS, [](P& p) {
    p.fixedIncrementation = p.continueWithoutConvergence = p.noHaf = true;
    p.haftol = 10;  // no half-step check: its tolerance is not written
  });
  Add("Subspace", P::SUBSPACE_DYNAMICS, [](P& p) { p.vectors = 12; });
  Add("Explicit", P::EXPLICIT_DYNAMICS, [](P& p) {
    p.adiabatic = p.nlgeom = true;
    p.timeIncrementation = P::ELEMENT_BY_ELEMENT;
    p.scaleFactor = 0.9;
    p.massScaling = P::SEMI_AUTOMATIC;
    p.massScalingRegion = "Skin";
    p.massScalingType = P::BELOW_MIN;
    p.massScalingDt = 1e-6;
    p.massScalingFactor = 2;
  });
  Add("Explicit user", P::EXPLICIT_DYNAMICS, [](P& p) {
    p.nlgeom = true;
    p.timeIncrementation = P::USER_INCREMENT;
    p.userIncrement = 1e-5;
    p.massScaling = P::AUTOMATIC;
    p.massScalingType = P::SET_EQUAL_DT;
    p.massScalingDt = 2e-6;
    p.massScalingIntervals = 5;
  });
  Add("Explicit fixed", P::EXPLICIT_DYNAMICS, [](P& p) {
    p.nlgeom = true;
    p.timeIncrementation = P::FIXED_ELEMENT_BY_ELEMENT;
    p.massScaling = P::AUTOMATIC;
    p.massScalingType = P::ROLLING;
    p.feedRate = 3;
    p.crossSection = 0.25;
    p.rollingDirection = "1";
    p.massScalingFrequency = 7;
  });
  Add("Temp-disp explicit", P::EXPLICIT_TEMP_DISPLACEMENT, [](P& p) {
    p.nlgeom = true;
    p.massScaling = P::REINITIALIZE;
    p.massScalingRegion = "Skin";
    p.linearBulkViscosity = 0.08;
  });
  Add("Temp-disp explicit off", P::EXPLICIT_TEMP_DISPLACEMENT, [](P& p) {
    p.nlgeom = true;
    p.massScaling = P::DISABLE;
  });
  Add("Coupled", P::COUPLED_TEMP_DISPLACEMENT, [](P& p) {
    p.creep = P::CREEP_NONE;
    p.steadyState = p.separatedSolution = p.nlgeom = true;
    p.deltmx = 5;
    p.cetol = 0.01;
    p.stabilization = P::ENERGY_FRACTION;
    p.stabilizationValue = 0.0002;
  });
  Add("Coupled old none", P::COUPLED_TEMP_DISPLACEMENT, [](P& p) {
    p.creep = P::CREEP_NONE;
    p.legacyCreepSpelling = p.nlgeom = true;
  });
  Add("Coupled explicit creep", P::COUPLED_TEMP_DISPLACEMENT, [](P& p) {
    p.creep = P::CREEP_EXPLICIT;
    p.nlgeom = true;
  });
  Add("Coupled old explicit", P::COUPLED_TEMP_DISPLACEMENT, [](P& p) {
    p.creep = P::CREEP_EXPLICIT;
    p.legacyCreepSpelling = p.nlgeom = true;
  });
  Add("Thermal-electric", P::COUPLED_THERMAL_ELECTRIC, [](P& p) {
    p.end = P::END_SS;
    p.deltmx = 2;
    p.mxdem = 0.1;
    p.separatedSolution = true;
  });
  Add("Thermal-electric steady", P::COUPLED_THERMAL_ELECTRIC, [](P& p) {
    p.steadyState = true;
    p.end = P::END_SS;  // a steady-state step has no end
  });
  Add("Heat steady", P::HEAT_TRANSFER, [](P& p) {
    p.steadyState = true;
    p.deltmx = 5;
  });
  Add("Heat", P::HEAT_TRANSFER, [](P& p) {
    p.end = P::END_PERIOD;
    p.mxdem = 0.2;
  });
  Add("Diffusion", P::MASS_DIFFUSION, [](P& p) {
    p.end = P::END_SS;
    p.dcmax = 0.7;
  });
  Add("Diffusion steady", P::MASS_DIFFUSION, [](P& p) { p.steadyState = true; });
  Add("Soils", P::SOILS, [](P& p) {
    p.consolidation = p.nlgeom = true;
    p.end = P::END_PERIOD;
    p.cetol = 0.1;
    p.creep = P::CREEP_NONE;
    p.stabilization = P::DAMPING_FACTOR;
    p.stabilizationValue = 0.5;
  });
  Add("Soils utol", P::SOILS, [](P& p) {
    p.consolidation = p.nlgeom = true;
    p.utol = 2;
  });
  Add("Frequency", P::FREQUENCY, [](P& p) {
    p.acousticCoupling = P::SWITCH_ON;
    p.normalization = P::NORMALIZE_DISPLACEMENT;
    p.eigenvalues = 10;
    p.maxFrequency = 100;
  });
  Add("Frequency subspace", P::FREQUENCY, [](P& p) {
    p.eigensolver = P::SUBSPACE;
    p.acousticCoupling = P::SWITCH_OFF;
    p.normalization = P::NORMALIZE_MASS;
    p.numberInterval = 3;
    p.userBoundaries = true;
    p.bias = 2;
    p.minFrequency = 1;
  });
  Add("Buckle", P::BUCKLE, [](P& p) { p.eigenvalues = 4; });
  Add("Buckle subspace", P::BUCKLE, [](P& p) {
    p.eigensolver = P::SUBSPACE;
    p.eigenvalues = 5;
    p.maxEigenvalue = 50;
    p.vectors = 8;
    p.maxIterations = 30;
  });
  Add("Geostatic", P::GEOSTATIC, [](P& p) { p.nlgeom = true; });
  Add("Steady real", P::STEADY_STATE_DYNAMICS, [](P& p) {
    p.steadyStateSolution = P::DIRECT_REAL_ONLY;
    p.minFrequency = 1;
    p.maxFrequency = 50;
    p.frequencyPoints = 20;
  });
  Add("Steady direct", P::STEADY_STATE_DYNAMICS, [](P& p) {
    p.steadyStateSolution = P::DIRECT_SOLUTION;
    p.maxFrequency = 50;
    p.frequencyPoints = 20;
    p.bias = 3;
  });
  Add("Steady modal", P::STEADY_STATE_DYNAMICS, [](P& p) {
    p.maxFrequency = 50;
    p.frequencyPoints = 10;
    p.damping = P::VISCOUS;
    p.firstMode = 1;
    p.lastMode = 10;
    p.dampingValue = 0.02;
  });
  Add("Modal", P::MODAL_DYNAMIC, [](P& p) {
    p.continueAnalysis = true;
    p.timeIncrement = 0.01;
    p.damping = P::COMPOSITE;
    p.firstMode = 1;
    p.lastMode = 5;
    p.dampingValue = 0.05;
  });
  Add("Modal Rayleigh", P::MODAL_DYNAMIC, [](P& p) {
    p.timeIncrement = 0.01;
    p.damping = P::RAYLEIGH;
    p.firstMode = 1;
    p.lastMode = 5;
    p.rayleighAlpha = 0.3;
    p.rayleighBeta = 4e-5;
  });
  Add("Random", P::RANDOM_RESPONSE, [](P& p) {
    p.minFrequency = 0.5;
    p.maxFrequency = 30;
    p.frequencyPoints = 15;
    p.bias = 1.5;
    p.damping = P::STRUCTURAL;
    p.firstMode = 2;
    p.lastMode = 8;
    p.modeIncrement = 2;
    p.dampingValue = 0.01;
  });
  Add("Spectrum", P::RESPONSE_SPECTRUM, [](P& p) {
    p.components = P::COMP_ALGEBRAIC;
    p.summation = P::SUM_SRSS;
    p.spectrum = "El Centro";
    p.direction[0] = 0.6;
    p.direction[2] = 0.8;
    p.spectrumScale = 9.81;
  });
  Add("Spectrum TENP", P::RESPONSE_SPECTRUM, [](P& p) {
    p.components = P::COMP_SRSS;
    p.summation = P::SUM_TENP;
  });
  Add("Anneal", P::ANNEAL, [](P& p) {
    p.hasAnnealTemperature = true;
    p.annealTemperature = 20;
  });
  Add("Anneal plain", P::ANNEAL, [](P& p) { p.solverInput = "*Output, history\n*Energy output"; });
  // A step described by its procedure text alone, as files of earlier releases hold them.
  m_odb->Step("Text", "", odb_Enum::TIME, 1.0, m_last.c_str(), "*STATIC, DIRECT\n0.5, 1.", 0.0);
  ExpectDeck("procedures.inp", Deck());
}

TEST_F(OifStepBuilderDeck, CardWritesNoDescriptionOrUnsymmForDefaultsAndNlgeomOnlyOnChange) {
  bool nlgeom = false;
  oif_StepInfo step = Info(P::STATIC);
  EXPECT_EQ(oif_StepCard(step, nlgeom), "*Step, name=S");
  step.settings.nlgeom = true;
  step.description = "Described";
  EXPECT_EQ(oif_StepCard(step, nlgeom), "*Step, name=S, nlgeom=YES\nDescribed");
  EXPECT_TRUE(nlgeom);
  EXPECT_EQ(oif_StepCard(step, nlgeom), "*Step, name=S\nDescribed");
  // A kind outside the nlgeom group neither writes it nor changes what is in force.
  step = Info(P::HEAT_TRANSFER);
  EXPECT_EQ(oif_StepCard(step, nlgeom), "*Step, name=S");
  EXPECT_TRUE(nlgeom);
}

TEST_F(OifStepBuilderDeck, InconsistentOrUnknownProceduresAssert) {
  AssertRecorder recorder;
  oif_StepInfo step = Info(P::EXPLICIT_DYNAMICS);
  step.settings.scaleFactor = 0;
  oif_ProcedureLines(step);
  step.settings.kind = P::EXPLICIT_TEMP_DISPLACEMENT;
  step.settings.scaleFactor = 1;
  step.settings.massScaling = 9;
  oif_ProcedureLines(step);
  step = Info(P::RESPONSE_SPECTRUM);
  step.settings.summation = 7;
  oif_ProcedureLines(step);
  step = Info(P::INITIAL);
  oif_ProcedureLines(step);
  bool nlgeom = false;
  step.settings.kind = static_cast<P::Kind>(40);
  oif_StepCard(step, nlgeom);
  std::vector<std::string> fired;
  for (const RecordedAssert& a : recorder.fired()) {
    EXPECT_EQ(a.source, "oif/impl/oif_StepBuilder");
    fired.push_back(a.condition);
  }
  EXPECT_EQ(fired, (std::vector<std::string>{"Corrupted Explicit Dynamics procedure",
                                             "Corrupted Dynamic, Temp-displacement procedure",
                                             "Unknown response spectrum summation type",
                                             "Unimplemented procedure print method",
                                             "Unimplemented function to write out *Step card"}));
}

// A file whose steps were all made from a procedure text has no procedure tables, as files of
// earlier releases do: each step writes its stored text.
TEST_F(OifStepBuilderDeck, StepsOfAFileWithoutProceduresWriteTheirStoredText) {
  m_odb->Step("Load", "Pull", odb_Enum::TIME, 1.0, "", "*STATIC", 0.0);
  m_odb->Step("Modes", "", odb_Enum::MODAL, 0.0, "Load", "*FREQUENCY\n10,", 1.0);
  Reopen();
  const std::vector<std::string> lines = Deck();
  std::vector<std::string> cards;
  for (std::size_t i = 0; i < lines.size(); ++i)
    if (lines[i].rfind("*Step", 0) == 0 && i + 3 <= lines.size())
      cards.insert(cards.end(), lines.begin() + static_cast<long>(i),
                   lines.begin() + static_cast<long>(i) + 3);
  EXPECT_EQ(cards, (std::vector<std::string>{"*Step, name=Load", "Pull", "*STATIC",
                                             "*Step, name=Modes", "*FREQUENCY", "10,"}));
}
