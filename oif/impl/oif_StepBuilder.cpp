// The analysis steps: a comment header, the step card, the procedure lines and the load cases.
// docs/input-deck.md lists which setting writes which parameter and the data line of each kind.
#include <string>

#include "cow_Assert.h"
#include "oif_Components.h"
#include "oif_DeckText.h"

namespace {

using P = odb_StepProcedure;
const char* const kSource = "oif/impl/oif_StepBuilder";
const char* const kDashes = "----------------------------------------------------------------";

// The kinds whose card says whether geometry is nonlinear.
bool TakesNlgeom(const P& p) {
  switch (p.kind) {
    case P::STATIC:
      return !p.perturbation;
    case P::STATIC_RIKS:
    case P::VISCO:
    case P::IMPLICIT_DYNAMICS:
    case P::SUBSPACE_DYNAMICS:
    case P::EXPLICIT_DYNAMICS:
    case P::EXPLICIT_TEMP_DISPLACEMENT:
    case P::COUPLED_TEMP_DISPLACEMENT:
    case P::SOILS:
    case P::GEOSTATIC:
      return true;
    default:
      return false;
  }
}

bool KnownKind(int kind) {
  return kind >= P::UNSPECIFIED && kind <= P::ANNEAL;
}

// "initial, period" and, unless incrementation is fixed, ", minimum, maximum".
void Increments(utl_Stream& out, const P& p) {
  out << "\n" << p.initialIncrement << ", " << p.timePeriod;
  if (!p.fixedIncrementation) out << ", " << p.minIncrement << ", " << p.maxIncrement;
}

void Direct(utl_Stream& out, const P& p, const char* separator) {
  if (p.fixedIncrementation)
    out << separator << (p.continueWithoutConvergence ? "direct=NO STOP" : "direct");
}

void Stabilize(utl_Stream& out, const P& p) {
  if (p.stabilization == P::ENERGY_FRACTION) out << ", stabilize=" << p.stabilizationValue;
  if (p.stabilization == P::DAMPING_FACTOR) out << ", stabilize, factor=" << p.stabilizationValue;
}

void End(utl_Stream& out, const P& p) {
  if (p.steadyState) return;
  if (p.end == P::END_SS) out << ", end=SS";
  if (p.end == P::END_PERIOD) out << ", end=PERIOD";
}

void Positive(utl_Stream& out, const char* parameter, double value) {
  if (value > 0) out << parameter << value;
}

// A value of a data line, or nothing for 0 (the solver's default).
void Optional(utl_Stream& out, double value) {
  if (value != 0) out << value;
}
void Optional(utl_Stream& out, int value) {
  if (value != 0) out << value;
}

void SolutionTechnique(utl_Stream& out, const P& p) {
  if (p.separatedSolution) out << "\n*Solution Technique, type=SEPARATED";
}

void ModalDamping(utl_Stream& out, const P& p) {
  if (p.firstMode > 0)
    out << "\n*Select Eigenmodes, generate\n"
        << p.firstMode << ", " << p.lastMode << ", " << p.modeIncrement;
  switch (p.damping) {
    case P::VISCOUS:
      out << "\n*Modal Damping\n";
      break;
    case P::COMPOSITE:
      out << "\n*Modal Damping, modal=COMPOSITE\n";
      break;
    case P::RAYLEIGH:
      out << "\n*Modal Damping, rayleigh\n"
          << p.firstMode << ", " << p.lastMode << ", " << p.rayleighAlpha << ", " << p.rayleighBeta;
      return;
    case P::STRUCTURAL:
      out << "\n*Modal Damping, structural\n";
      break;
    default:
      return;
  }
  out << p.firstMode << ", " << p.lastMode << ", " << p.dampingValue;
}

void MassScaling(utl_Stream& out, const P& p, const char* corrupted) {
  const char* mode = nullptr;
  switch (p.massScaling) {
    case P::NO_MASS_SCALING:
      return;
    case P::SEMI_AUTOMATIC:
      mode = "Semi-Automatic";
      break;
    case P::AUTOMATIC:
      mode = "Automatic";
      break;
    case P::REINITIALIZE:
      mode = "Reinitialize Mass";
      break;
    case P::DISABLE:
      mode = "Disable Throughout Step";
      break;
    default:
      cow_AssertFailed(corrupted, kSource, 118);
      return;
  }
  const std::string region = p.massScalingRegion.CStr();
  out << "\n** Mass Scaling: " << mode << "\n**               "
      << (region.empty() ? std::string("Whole Model") : region) << "\n";
  out << (p.massScaling == P::AUTOMATIC ? "*Variable Mass Scaling" : "*Fixed Mass Scaling");
  if (!region.empty()) out << ", elset=" << oif_Name(region);
  if (p.massScaling == P::REINITIALIZE) return;
  if (p.massScaling == P::DISABLE) {
    out << ", factor=1.";
    return;
  }
  if (p.massScalingType == P::ROLLING) {
    out << ", type=rolling, feed rate=" << p.feedRate;
    Positive(out, ", cross section=", p.crossSection);
    if (!p.rollingDirection.Empty()) out << ", direction=" << p.rollingDirection;
  } else if (p.massScalingType == P::BELOW_MIN) {
    out << ", type=below min";
  } else if (p.massScalingType == P::SET_EQUAL_DT) {
    out << ", type=set equal dt";
  }
  Positive(out, ", dt=", p.massScalingDt);
  Positive(out, ", factor=", p.massScalingFactor);
  if (p.massScaling == P::AUTOMATIC) {
    if (p.massScalingIntervals > 0) out << ", number interval=" << p.massScalingIntervals;
    if (p.massScalingFrequency > 0) out << ", frequency=" << p.massScalingFrequency;
  }
}

void Explicit(utl_Stream& out, const P& p, const char* keyword, bool adiabatic,
              const char* corrupted) {
  if (p.timeIncrementation < P::GLOBAL_ESTIMATE ||
      p.timeIncrementation > P::FIXED_ELEMENT_BY_ELEMENT || !(p.scaleFactor > 0))
    cow_AssertFailed(corrupted, kSource, 156);
  out << keyword;
  if (adiabatic && p.adiabatic) out << ", adiabatic";
  if (p.timeIncrementation == P::ELEMENT_BY_ELEMENT ||
      p.timeIncrementation == P::FIXED_ELEMENT_BY_ELEMENT)
    out << ", element by element";
  if (p.scaleFactor != 1.0) out << ", scale factor=" << p.scaleFactor;
  if (p.timeIncrementation == P::USER_INCREMENT) out << ", direct user control";
  if (p.timeIncrementation == P::FIXED_ELEMENT_BY_ELEMENT) out << ", fixed time incrementation";
  out << "\n";
  if (p.timeIncrementation == P::USER_INCREMENT) out << p.userIncrement;
  out << ", " << p.timePeriod;
  out << "\n*Bulk Viscosity\n" << p.linearBulkViscosity << ", " << p.quadraticBulkViscosity;
  MassScaling(out, p, corrupted);
}

void Creep(utl_Stream& out, const P& p) {
  if (p.creep == P::CREEP_NONE) out << (p.legacyCreepSpelling ? ", no creep" : ", creep=none");
  if (p.creep == P::CREEP_EXPLICIT)
    out << (p.legacyCreepSpelling ? ", explicit" : ", creep=explicit");
}

void Procedure(utl_Stream& out, const oif_StepInfo& step) {
  const P& p = step.settings;
  switch (p.kind) {
    case P::UNSPECIFIED:
      out << step.procedureText;
      return;
    case P::STATIC:
      out << "*Static";
      if (p.perturbation) return;
      if (p.adiabatic) out << ", adiabatic";
      Direct(out, p, ", ");
      if (!p.fullyPlasticRegion.Empty())
        out << ", fully plastic=" << oif_Name(p.fullyPlasticRegion.CStr());
      Stabilize(out, p);
      Increments(out, p);
      return;
    case P::STATIC_RIKS:
      out << "*Static, riks";
      Direct(out, p, ", ");
      Stabilize(out, p);
      Increments(out, p);
      if (p.maxLoadFactor > 0) out << ", " << p.maxLoadFactor;
      return;
    case P::VISCO:
      out << "*Visco";
      Positive(out, ", cetol=", p.cetol);
      if (p.creep == P::CREEP_EXPLICIT)
        out << (p.legacyCreepSpelling ? ", explicit" : ", creep=explicit");
      Stabilize(out, p);
      Increments(out, p);
      return;
    case P::IMPLICIT_DYNAMICS:
      // Joined without a blank after the comma, unlike every other writer.
      out << "*Dynamic";
      if (p.hasAlpha) out << ",alpha=" << p.alpha;
      if (p.adiabatic) out << ",adiabatic";
      Direct(out, p, ",");
      if (p.noHaf)
        out << ",nohaf";
      else if (p.haftol > 0)
        out << ",haftol=" << p.haftol;
      if (!p.initialAccelerations) out << ",initial=NO";
      Increments(out, p);
      return;
    case P::SUBSPACE_DYNAMICS:
      out << "*Dynamic, subspace";
      if (p.vectors > 0) out << ", vectors=" << p.vectors;
      Increments(out, p);
      return;
    case P::EXPLICIT_DYNAMICS:
      Explicit(out, p, "*Dynamic, Explicit", true, "Corrupted Explicit Dynamics procedure");
      return;
    case P::EXPLICIT_TEMP_DISPLACEMENT:
      Explicit(out, p, "*Dynamic Temperature-displacement, Explicit", false,
               "Corrupted Dynamic, Temp-displacement procedure");
      return;
    case P::COUPLED_TEMP_DISPLACEMENT:
      out << "*Coupled Temperature-Displacement";
      Creep(out, p);
      if (p.steadyState) out << ", steady state";
      Positive(out, ", deltmx=", p.deltmx);
      Positive(out, ", cetol=", p.cetol);
      Stabilize(out, p);
      Increments(out, p);
      SolutionTechnique(out, p);
      return;
    case P::COUPLED_THERMAL_ELECTRIC:
      out << "*Coupled Thermal-Electrical";
      if (p.steadyState) out << ", steady state";
      End(out, p);
      Positive(out, ", deltmx=", p.deltmx);
      Positive(out, ", mxdem=", p.mxdem);
      Increments(out, p);
      SolutionTechnique(out, p);
      return;
    case P::HEAT_TRANSFER:
      out << "*Heat Transfer";
      if (p.steadyState) out << ", steady state";
      End(out, p);
      Positive(out, ", deltmx=", p.deltmx);
      Positive(out, ", mxdem=", p.mxdem);
      Increments(out, p);
      return;
    case P::MASS_DIFFUSION:
      out << "*Mass Diffusion";
      if (p.steadyState) out << ", steady state";
      End(out, p);
      Positive(out, ", dcmax=", p.dcmax);
      Increments(out, p);
      return;
    case P::SOILS:
      out << "*Soils";
      if (p.consolidation) out << ", consolidation";
      if (p.consolidation) End(out, p);
      if (p.utol > 0)
        out << ", utol=" << p.utol;
      else if (p.consolidation && !p.fixedIncrementation)
        out << ", utol=1.0";
      Positive(out, ", cetol=", p.cetol);
      if (p.creep == P::CREEP_NONE) out << ", creep=none";
      Stabilize(out, p);
      Increments(out, p);
      return;
    case P::FREQUENCY:
      out << "*Frequency"
          << (p.eigensolver == P::SUBSPACE ? ", eigensolver=subspace" : ", eigensolver=Lanczos");
      if (p.acousticCoupling == P::SWITCH_ON) out << ", acoustic coupling=on";
      if (p.acousticCoupling == P::SWITCH_OFF) out << ", acoustic coupling=off";
      if (p.normalization == P::NORMALIZE_DISPLACEMENT) out << ", normalization=displacement";
      if (p.normalization == P::NORMALIZE_MASS) out << ", normalization=mass";
      if (p.numberInterval > 0) out << ", number interval=" << p.numberInterval;
      if (p.userBoundaries) out << ", user boundaries";
      Positive(out, ", bias=", p.bias);
      out << "\n";
      Optional(out, p.eigenvalues);
      out << ", ";
      Optional(out, p.minFrequency);
      out << ", ";
      Optional(out, p.maxFrequency);
      return;
    case P::BUCKLE:
      out << "*Buckle";
      if (p.eigensolver == P::LANCZOS) out << ", eigensolver=lanczos";
      out << "\n";
      Optional(out, p.eigenvalues);
      out << ", ";
      Optional(out, p.maxEigenvalue);
      out << ", ";
      Optional(out, p.vectors);
      out << ", ";
      Optional(out, p.maxIterations);
      return;
    case P::GEOSTATIC:
      out << "*Geostatic";
      Increments(out, p);
      return;
    case P::STEADY_STATE_DYNAMICS:
      out << "*Steady State Dynamics";
      if (p.steadyStateSolution == P::DIRECT_REAL_ONLY) out << ", direct=REAL ONLY";
      if (p.steadyStateSolution == P::DIRECT_SOLUTION) out << ", direct";
      out << "\n" << p.minFrequency << ", " << p.maxFrequency << ", " << p.frequencyPoints;
      if (p.bias != 0) out << ", " << p.bias;
      if (p.steadyStateSolution == P::MODAL_SOLUTION) ModalDamping(out, p);
      return;
    case P::MODAL_DYNAMIC:
      out << "*Modal dynamic" << (p.continueAnalysis ? ", continue=YES" : ", continue=NO") << "\n"
          << p.timeIncrement << ", " << p.timePeriod;
      ModalDamping(out, p);
      return;
    case P::RANDOM_RESPONSE:
      out << "*Random Response\n"
          << p.minFrequency << ", " << p.maxFrequency << ", " << p.frequencyPoints;
      if (p.bias != 0) out << ", " << p.bias;
      ModalDamping(out, p);
      return;
    case P::RESPONSE_SPECTRUM:
      out << "*Response spectrum";
      if (p.components == P::COMP_ALGEBRAIC) out << ", comp=ALGEBRAIC";
      if (p.components == P::COMP_SRSS) out << ", comp=SRSS";
      if (p.summation == P::SUM_SRSS)
        out << ", sum=SRSS";
      else if (p.summation == P::SUM_TENP)
        out << ", sum=TENP";
      else if (p.summation != P::SUM_DEFAULT)
        cow_AssertFailed("Unknown response spectrum summation type", kSource, 303);
      if (!p.spectrum.Empty())
        out << "\n"
            << oif_Name(p.spectrum.CStr()) << ", " << p.direction[0] << ", " << p.direction[1]
            << ", " << p.direction[2] << ", " << p.spectrumScale;
      ModalDamping(out, p);
      return;
    case P::ANNEAL:
      out << "*Anneal";
      if (p.hasAnnealTemperature) out << ", temperature=" << p.annealTemperature;
      return;
    case P::INITIAL:
      break;
  }
  cow_AssertFailed("Unimplemented procedure print method", kSource, 317);
}

}  // namespace

std::string oif_StepCard(const oif_StepInfo& step, bool& nlgeom) {
  const P& p = step.settings;
  return oif_Format([&](utl_Stream& out) {
    out << "*Step, name=" << oif_Name(step.name);
    if (!KnownKind(p.kind) || p.kind == P::INITIAL)
      cow_AssertFailed("Unimplemented function to write out *Step card", kSource, 327);
    if (TakesNlgeom(p) && p.nlgeom != nlgeom) {
      out << (p.nlgeom ? ", nlgeom=YES" : ", nlgeom=NO");
      nlgeom = p.nlgeom;
    }
    if (oif_IsPerturbation(p)) out << ", perturbation";
    if (p.matrixStorage == P::UNSYMMETRIC) out << ", unsymm=YES";
    if (p.matrixStorage == P::SYMMETRIC) out << ", unsymm=NO";
    if (!step.description.empty()) out << "\n" << step.description;
  });
}

std::string oif_ProcedureLines(const oif_StepInfo& step) {
  return oif_Format([&](utl_Stream& out) { Procedure(out, step); });
}

void oif_StepBuilder::Prepare() {
  Clear();
  bool nlgeom = false;
  const std::vector<oif_StepInfo>& steps = Model().steps;
  // The initial step is the base state: no header, no card.
  for (std::size_t i = 1; i < steps.size(); ++i) {
    const oif_StepInfo& step = steps[i];
    AddStep(step.name, "", oif_Comment(std::string(kDashes) + "\n\nSTEP: " + step.name));
    AddStep(step.name, "", oif_Keyword(oif_StepCard(step, nlgeom)));
    const std::string procedure = oif_ProcedureLines(step);
    if (!procedure.empty()) AddStep(step.name, "", oif_Keyword(procedure));
    bool first = true;
    for (const std::string& loadCase : step.loadCases) {
      if (loadCase.empty()) continue;
      if (first) AddStep(step.name, loadCase, oif_Comment("\nLOAD CASES\n"));
      first = false;
      AddStep(step.name, loadCase, oif_Keyword("*Load Case, name=" + oif_Name(loadCase)));
    }
  }
}
