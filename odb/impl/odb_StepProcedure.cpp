// The settings of a step procedure by name, as the store keeps them: one table lists every
// setting with its member, so that writing and reading cannot disagree.
#include <cstring>
#include <string>

#include "odb_StepProcedureRecord.h"
#include "odb_Util.h"
#include "store_Database.h"

namespace {

using P = odb_StepProcedure;

struct DoubleSetting {
  const char* name;
  double P::*member;
};
struct IntSetting {
  const char* name;
  int P::*member;
};
struct BoolSetting {
  const char* name;
  bool P::*member;
};
struct TextSetting {
  const char* name;
  odb_String P::*member;
};

const DoubleSetting kDoubles[] = {
    {"time_period", &P::timePeriod},
    {"initial_increment", &P::initialIncrement},
    {"min_increment", &P::minIncrement},
    {"max_increment", &P::maxIncrement},
    {"stabilization_value", &P::stabilizationValue},
    {"cetol", &P::cetol},
    {"deltmx", &P::deltmx},
    {"mxdem", &P::mxdem},
    {"dcmax", &P::dcmax},
    {"utol", &P::utol},
    {"max_load_factor", &P::maxLoadFactor},
    {"alpha", &P::alpha},
    {"haftol", &P::haftol},
    {"scale_factor", &P::scaleFactor},
    {"user_increment", &P::userIncrement},
    {"linear_bulk_viscosity", &P::linearBulkViscosity},
    {"quadratic_bulk_viscosity", &P::quadraticBulkViscosity},
    {"mass_scaling_factor", &P::massScalingFactor},
    {"mass_scaling_dt", &P::massScalingDt},
    {"feed_rate", &P::feedRate},
    {"cross_section", &P::crossSection},
    {"min_frequency", &P::minFrequency},
    {"max_frequency", &P::maxFrequency},
    {"bias", &P::bias},
    {"max_eigenvalue", &P::maxEigenvalue},
    {"time_increment", &P::timeIncrement},
    {"damping_value", &P::dampingValue},
    {"rayleigh_alpha", &P::rayleighAlpha},
    {"rayleigh_beta", &P::rayleighBeta},
    {"spectrum_scale", &P::spectrumScale},
    {"anneal_temperature", &P::annealTemperature},
};
const IntSetting kInts[] = {
    {"matrix_storage", &P::matrixStorage},
    {"stabilization", &P::stabilization},
    {"creep", &P::creep},
    {"end", &P::end},
    {"vectors", &P::vectors},
    {"time_incrementation", &P::timeIncrementation},
    {"mass_scaling", &P::massScaling},
    {"mass_scaling_type", &P::massScalingType},
    {"mass_scaling_intervals", &P::massScalingIntervals},
    {"mass_scaling_frequency", &P::massScalingFrequency},
    {"eigensolver", &P::eigensolver},
    {"eigenvalues", &P::eigenvalues},
    {"acoustic_coupling", &P::acousticCoupling},
    {"normalization", &P::normalization},
    {"number_interval", &P::numberInterval},
    {"frequency_points", &P::frequencyPoints},
    {"max_iterations", &P::maxIterations},
    {"steady_state_solution", &P::steadyStateSolution},
    {"damping", &P::damping},
    {"first_mode", &P::firstMode},
    {"last_mode", &P::lastMode},
    {"mode_increment", &P::modeIncrement},
    {"components", &P::components},
    {"summation", &P::summation},
};
const BoolSetting kBools[] = {
    {"nlgeom", &P::nlgeom},
    {"perturbation", &P::perturbation},
    {"fixed_incrementation", &P::fixedIncrementation},
    {"continue_without_convergence", &P::continueWithoutConvergence},
    {"adiabatic", &P::adiabatic},
    {"steady_state", &P::steadyState},
    {"consolidation", &P::consolidation},
    {"legacy_creep_spelling", &P::legacyCreepSpelling},
    {"separated_solution", &P::separatedSolution},
    {"has_alpha", &P::hasAlpha},
    {"no_haf", &P::noHaf},
    {"initial_accelerations", &P::initialAccelerations},
    {"user_boundaries", &P::userBoundaries},
    {"continue_analysis", &P::continueAnalysis},
    {"has_anneal_temperature", &P::hasAnnealTemperature},
};
const TextSetting kTexts[] = {
    {"fully_plastic_region", &P::fullyPlasticRegion},
    {"mass_scaling_region", &P::massScalingRegion},
    {"rolling_direction", &P::rollingDirection},
    {"spectrum", &P::spectrum},
};
const char* const kDirection[] = {"direction_1", "direction_2", "direction_3"};

store_StepSetting Number(const char* name, double value) {
  store_StepSetting s;
  s.name = name;
  s.number = value;
  return s;
}

[[noreturn]] void WrongType(const std::string& name) {
  throw store_Error("Step setting " + name + " has a value of the wrong type.");
}

}  // namespace

bool odb_IsProcedureKind(int kind) {
  return kind >= P::UNSPECIFIED && kind <= P::ANNEAL;
}

store_StepProcedureRecord odb_ProcedureRecord(const odb_StepProcedure& p) {
  const odb_StepProcedure defaults;
  store_StepProcedureRecord record;
  record.kind = p.kind;
  record.solverInput = odb_ToText(p.solverInput);
  for (const DoubleSetting& s : kDoubles)
    if (std::memcmp(&(p.*s.member), &(defaults.*s.member), sizeof(double)) != 0)
      record.settings.push_back(Number(s.name, p.*s.member));
  for (const IntSetting& s : kInts)
    if (p.*s.member != defaults.*s.member) record.settings.push_back(Number(s.name, p.*s.member));
  for (const BoolSetting& s : kBools)
    if (p.*s.member != defaults.*s.member)
      record.settings.push_back(Number(s.name, p.*s.member ? 1.0 : 0.0));
  for (const TextSetting& s : kTexts)
    if (!(p.*s.member == defaults.*s.member)) {
      store_StepSetting text;
      text.name = s.name;
      text.isText = true;
      text.text = odb_ToText(p.*s.member);
      record.settings.push_back(text);
    }
  for (int k = 0; k < 3; ++k)
    if (p.direction[k] != 0.0) record.settings.push_back(Number(kDirection[k], p.direction[k]));
  return record;
}

odb_StepProcedure odb_ProcedureOf(const store_StepProcedureRecord& record) {
  if (!odb_IsProcedureKind(record.kind))
    throw store_Error("A step procedure has the unknown kind " + std::to_string(record.kind) + ".");
  odb_StepProcedure p;
  p.kind = static_cast<odb_StepProcedure::Kind>(record.kind);
  p.solverInput = odb_FromText(record.solverInput);
  for (const store_StepSetting& setting : record.settings) {
    const std::string& name = setting.name;
    bool known = false;
    for (const DoubleSetting& s : kDoubles)
      if (name == s.name) {
        if (setting.isText) WrongType(name);
        p.*s.member = setting.number;
        known = true;
      }
    for (const IntSetting& s : kInts)
      if (name == s.name) {
        // A whole number in range: converting anything else to int would be undefined.
        if (setting.isText ||
            !(setting.number >= -2147483648.0 && setting.number <= 2147483647.0) ||
            setting.number != static_cast<double>(static_cast<long long>(setting.number)))
          WrongType(name);
        p.*s.member = static_cast<int>(setting.number);
        known = true;
      }
    for (const BoolSetting& s : kBools)
      if (name == s.name) {
        if (setting.isText) WrongType(name);
        p.*s.member = setting.number != 0.0;
        known = true;
      }
    for (const TextSetting& s : kTexts)
      if (name == s.name) {
        if (!setting.isText) WrongType(name);
        p.*s.member = odb_FromText(setting.text);
        known = true;
      }
    for (int k = 0; k < 3 && !known; ++k)
      if (name == kDirection[k]) {
        if (setting.isText) WrongType(name);
        p.direction[k] = setting.number;
      }
  }
  return p;
}

const char* odb_ProcedureText(const odb_StepProcedure& p) {
  switch (p.kind) {
    case P::UNSPECIFIED:
      return "";
    case P::INITIAL:
      return "";
    case P::STATIC:
      return p.perturbation ? "*STATIC, PERTURBATION" : "*STATIC";
    case P::STATIC_RIKS:
      return "*STATIC, RIKS";
    case P::VISCO:
      return "*VISCO";
    case P::IMPLICIT_DYNAMICS:
      return "*DYNAMIC";
    case P::SUBSPACE_DYNAMICS:
      return "*DYNAMIC, SUBSPACE";
    case P::EXPLICIT_DYNAMICS:
      return "*DYNAMIC, EXPLICIT";
    case P::COUPLED_TEMP_DISPLACEMENT:
      return "*COUPLED TEMPERATURE-DISPLACEMENT";
    case P::EXPLICIT_TEMP_DISPLACEMENT:
      return "*DYNAMIC TEMPERATURE-DISPLACEMENT, EXPLICIT";
    case P::COUPLED_THERMAL_ELECTRIC:
      return "*COUPLED THERMAL-ELECTRICAL";
    case P::HEAT_TRANSFER:
      return "*HEAT TRANSFER";
    case P::MASS_DIFFUSION:
      return "*MASS DIFFUSION";
    case P::SOILS:
      return "*SOILS";
    case P::FREQUENCY:
      return "*FREQUENCY";
    case P::BUCKLE:
      return "*BUCKLE";
    case P::GEOSTATIC:
      return "*GEOSTATIC";
    case P::STEADY_STATE_DYNAMICS:
      return "*STEADY STATE DYNAMICS";
    case P::MODAL_DYNAMIC:
      return "*MODAL DYNAMIC";
    case P::RANDOM_RESPONSE:
      return "*RANDOM RESPONSE";
    case P::RESPONSE_SPECTRUM:
      return "*RESPONSE SPECTRUM";
    case P::ANNEAL:
      return "*ANNEAL";
  }
  return "";
}

odb_Enum::odb_DomainEnum odb_ProcedureDomain(const odb_StepProcedure& p) {
  switch (p.kind) {
    case P::FREQUENCY:
    case P::BUCKLE:
    case P::RESPONSE_SPECTRUM:
      return odb_Enum::MODAL;
    case P::STEADY_STATE_DYNAMICS:
    case P::RANDOM_RESPONSE:
      return odb_Enum::FREQUENCY;
    case P::STATIC_RIKS:
      return odb_Enum::ARC_LENGTH;
    default:
      return odb_Enum::TIME;
  }
}
