// odb_StepRepository: the steps of a database in the order in which they were added, with the
// creators and the readers that keep them in step with the database file.
//
// The database object owns its step repository; the repository holds step handles, which share
// their data with any copies a caller keeps. The database reads its steps on first use, one
// record per step and none of their frames; odb_Odb::update reads the step list again and, per
// known step, only the frames added since. Creators write the new step to the database at once.
// Copying the repository is O(1) (the lists are shared). One thread at a time.
#ifndef ODB_STEPREPOSITORY_H
#define ODB_STEPREPOSITORY_H

#include "odb_Enum.h"
#include "odb_Export.h"
#include "odb_Step.h"
#include "odb_StepProcedure.h"
#include "odb_StepRepositoryBase.h"
#include "odb_String.h"
#include "uti_SharedPtr.h"

struct odb_StepRepositoryData;
struct odb_StepRepositoryAccess;

class QTVODB_EXPORT odb_StepRepository : public odb_StepRepositoryBase<odb_Step> {
 public:
  // A repository of no database: the creators throw.
  odb_StepRepository() = default;

  // Creators of steps of one procedure ("*STATIC", "*STATIC, PERTURBATION", "*HEAT TRANSFER",
  // stored with kind STATIC, STATIC with `perturbation` set, HEAT_TRANSFER and default
  // settings): domain TIME, time period 1, starting (total time) where `previousStepName` ends, or
  // at 0 when it is empty. Checks, in this order: "Invalid step name." for an empty name, "Previous
  // step "NAME" not found." for a previous step not held, "A Step named "NAME" already exists.".
  odb_Step& StaticStep(const odb_String& name, const odb_String& description,
                       const odb_String& previousStepName);
  odb_Step& StaticLinearPerturbationStep(const odb_String& name, const odb_String& description,
                                         const odb_String& previousStepName);
  odb_Step& HeatTransferStep(const odb_String& name, const odb_String& description,
                             const odb_String& previousStepName);
  // The general creator: a step of any procedure kind with its settings, stored with the step
  // (odb_Step::procedureSettings reads them back). The time period is the procedure's, the
  // domain and procedure text follow from the kind (MODAL for FREQUENCY, BUCKLE and
  // RESPONSE_SPECTRUM, FREQUENCY for STEADY_STATE_DYNAMICS and RANDOM_RESPONSE, ARC_LENGTH for
  // STATIC_RIKS, TIME otherwise). Checks as above, then "Invalid procedure kind." for a kind
  // out of range or UNSPECIFIED, and for INITIAL (the base state) anywhere but first.
  odb_Step& Step(const odb_String& name, const odb_String& description,
                 const odb_String& previousStepName, const odb_StepProcedure& procedure);

 private:
  friend struct odb_StepRepositoryAccess;

  // Appends a step for every stored step not yet held, in stored order; frames are not read.
  void Load();
  // Reads the steps stored since the last read and, for each step already held whose frames
  // have been read, the frames stored since. True when anything new was read.
  bool Update();
  // Writes a new step and appends it. Throws "Invalid step name." for an empty name and "A Step
  // named "NAME" already exists." for a name already held; the previous step is not checked.
  odb_Step& AddStep(const odb_String& name, const odb_String& description,
                    odb_Enum::odb_DomainEnum domain, double timePeriod,
                    const odb_String& previousStepName, const odb_String& procedure,
                    double totalTime);

  // Stores the step's procedure settings after AddStep.
  odb_Step& AddProcedureStep(const odb_String& name, const odb_String& description,
                             const odb_String& previousStepName, const odb_StepProcedure& procedure,
                             double totalTime);

  // The database file and how fields find the database's root assembly; null for a repository
  // of no database.
  std::shared_ptr<const odb_StepRepositoryData> m_data;
};

using odb_StepRepositoryIT = odb_StepRepositoryIterator<odb_Step>;

#endif
