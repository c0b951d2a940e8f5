// odb_StepProcedure: what a step computes (its procedure kind) and the settings that an input
// deck writes for it: incrementation, stabilization, nonlinear geometry, matrix storage, the
// parameters of each kind and the mass scaling of explicit steps.
//
// A plain value, copied freely. odb_StepRepository::Step stores one with a new step; the step
// reads it back with procedureSettings(). Settings that a kind does not use are ignored for it.
// A step made from a procedure text alone (odb_Odb::Step), or stored by an earlier release,
// reads as kind UNSPECIFIED, and its deck writes the stored procedure text. docs/input-deck.md
// lists which setting writes which parameter.
#ifndef ODB_STEPPROCEDURE_H
#define ODB_STEPPROCEDURE_H

#include "odb_Export.h"
#include "odb_String.h"

// The enumerations are kept on few lines: odb_API.h, which includes this header, has a budget of
// preprocessed lines.
// clang-format off
struct QTVODB_EXPORT odb_StepProcedure {
  // Stored in database files by number: new kinds go at the end.
  enum Kind : int { UNSPECIFIED = 0, INITIAL, STATIC, STATIC_RIKS, VISCO, IMPLICIT_DYNAMICS,
    SUBSPACE_DYNAMICS, EXPLICIT_DYNAMICS, COUPLED_TEMP_DISPLACEMENT, EXPLICIT_TEMP_DISPLACEMENT,
    COUPLED_THERMAL_ELECTRIC, HEAT_TRANSFER, MASS_DIFFUSION, SOILS, FREQUENCY, BUCKLE, GEOSTATIC,
    STEADY_STATE_DYNAMICS, MODAL_DYNAMIC, RANDOM_RESPONSE, RESPONSE_SPECTRUM, ANNEAL };
  enum MatrixStorage : int { SOLVER_DEFAULT = 0, UNSYMMETRIC = 1, SYMMETRIC = 2 };
  enum Stabilization : int { NO_STABILIZATION = 0, ENERGY_FRACTION = 1, DAMPING_FACTOR = 2 };
  enum Creep : int { CREEP_DEFAULT = 0, CREEP_NONE = 1, CREEP_EXPLICIT = 2 };
  enum End : int { END_NONE = 0, END_SS = 1, END_PERIOD = 2 };
  enum TimeIncrementation : int { GLOBAL_ESTIMATE = 0, ELEMENT_BY_ELEMENT = 1, USER_INCREMENT = 2,
    FIXED_ELEMENT_BY_ELEMENT = 3 };
  enum MassScaling : int { NO_MASS_SCALING = 0, SEMI_AUTOMATIC = 1, AUTOMATIC = 2,
    REINITIALIZE = 3, DISABLE = 4 };
  enum MassScalingType : int { UNIFORM = 0, BELOW_MIN = 1, SET_EQUAL_DT = 2, ROLLING = 3 };
  enum Eigensolver : int { LANCZOS = 0, SUBSPACE = 1 };
  enum Switch : int { SWITCH_DEFAULT = 0, SWITCH_ON = 1, SWITCH_OFF = 2 };
  enum Normalization : int { NORMALIZE_DEFAULT = 0, NORMALIZE_DISPLACEMENT = 1, NORMALIZE_MASS = 2 };
  enum SteadyStateSolution : int { MODAL_SOLUTION = 0, DIRECT_SOLUTION = 1, DIRECT_REAL_ONLY = 2 };
  enum Damping : int { NO_DAMPING = 0, VISCOUS = 1, COMPOSITE = 2, RAYLEIGH = 3, STRUCTURAL = 4 };
  enum Summation : int { SUM_DEFAULT = 0, SUM_SRSS = 1, SUM_TENP = 2 };
  enum Components : int { COMP_DEFAULT = 0, COMP_ALGEBRAIC = 1, COMP_SRSS = 2 };
  // clang-format on

  Kind kind = UNSPECIFIED;
  // Every kind.
  bool nlgeom = false;
  bool perturbation = false;  // STATIC: a linear perturbation step
  int matrixStorage = SOLVER_DEFAULT;
  double timePeriod = 1.0;
  // Incrementation: the data line of most kinds.
  double initialIncrement = 1.0, minIncrement = 1e-05, maxIncrement = 1.0;
  bool fixedIncrementation = false, continueWithoutConvergence = false;
  int stabilization = NO_STABILIZATION;
  double stabilizationValue = 0.0;
  bool adiabatic = false, steadyState = false, consolidation = false;
  odb_String fullyPlasticRegion;
  // Tolerances; each is written when above 0. `utol` 0 in an automatic consolidation step
  // writes utol=1.0.
  double cetol = 0.0, deltmx = 0.0, mxdem = 0.0, dcmax = 0.0, utol = 0.0;
  int creep = CREEP_DEFAULT, end = END_NONE;
  bool legacyCreepSpelling = false;  // "no creep" and "explicit" instead of creep=none/explicit
  double maxLoadFactor = 0.0;        // STATIC_RIKS: 0 for no limit
  bool separatedSolution = false;    // coupled kinds: *Solution Technique, type=SEPARATED
  // IMPLICIT_DYNAMICS.
  bool hasAlpha = false, noHaf = false, initialAccelerations = true;
  double alpha = 0.0, haftol = 0.0;
  int vectors = 0;  // SUBSPACE_DYNAMICS, BUCKLE
  // EXPLICIT_DYNAMICS, EXPLICIT_TEMP_DISPLACEMENT.
  int timeIncrementation = GLOBAL_ESTIMATE;
  double scaleFactor = 1.0, userIncrement = 0.0;
  double linearBulkViscosity = 0.06, quadraticBulkViscosity = 1.2;
  int massScaling = NO_MASS_SCALING, massScalingType = UNIFORM;
  odb_String massScalingRegion;  // empty: the whole model
  double massScalingFactor = 0.0, massScalingDt = 0.0, feedRate = 0.0, crossSection = 0.0;
  int massScalingIntervals = 0, massScalingFrequency = 0;
  odb_String rollingDirection;
  // FREQUENCY, BUCKLE, STEADY_STATE_DYNAMICS, RANDOM_RESPONSE.
  int eigensolver = LANCZOS, eigenvalues = 0, acousticCoupling = SWITCH_DEFAULT;
  int normalization = NORMALIZE_DEFAULT, numberInterval = 0, frequencyPoints = 0;
  int maxIterations = 0;
  bool userBoundaries = false;
  double minFrequency = 0.0, maxFrequency = 0.0, bias = 0.0, maxEigenvalue = 0.0;
  int steadyStateSolution = MODAL_SOLUTION;
  // Modal kinds.
  bool continueAnalysis = false;
  double timeIncrement = 0.0;
  int damping = NO_DAMPING, firstMode = 0, lastMode = 0, modeIncrement = 1;
  double dampingValue = 0.0, rayleighAlpha = 0.0, rayleighBeta = 0.0;
  int components = COMP_DEFAULT, summation = SUM_DEFAULT;
  odb_String spectrum;
  double direction[3] = {0.0, 0.0, 0.0};
  double spectrumScale = 1.0;
  // ANNEAL.
  bool hasAnnealTemperature = false;
  double annealTemperature = 0.0;
  // Written after the step's procedure lines (and in the initial step's place).
  odb_String solverInput;
};

#endif
