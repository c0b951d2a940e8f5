// oif_ModelInfo: what the input-deck generator gathers from a database's model before it writes
// anything: whether the deck is part-structured, the steps in order with the initial (base
// state) step first, the first analysis and first general steps, and whether any step is
// explicit.
//
// Built once over an open database and read-only afterwards; it shares the database's file, so
// it must not outlive the database. Not part of odb_API.h: a program that drives the generator
// itself includes oif_ModelInfo.h and oif_Builder.h; odb_Odb::writeInput needs neither.
//
// The initial step: a database's first step of kind odb_StepProcedure::INITIAL, when it has one;
// otherwise, when it has steps, a base state named "Initial" that holds nothing. A database
// without steps has no initial step either.
#ifndef OIF_MODELINFO_H
#define OIF_MODELINFO_H

#include "odb_Export.h"
#include "odb_String.h"
#include "uti_Array.h"
#include "uti_SharedPtr.h"

class odb_Odb;
struct oif_ModelData;
struct oif_ModelInfoAccess;

class QTVODB_EXPORT oif_ModelInfo {
 public:
  // Gathers from the model of `odb`; throws for a closed database.
  explicit oif_ModelInfo(const odb_Odb& odb);

  // Always true: every deck is written as parts plus an assembly.
  bool writeAssemblyStructure() const;
  // Every step, the initial one first; empty for a database without steps.
  const uti_Array<odb_String>& stepNames() const;
  odb_String initialStepName() const;
  // The first step after the initial one; empty when there is none.
  odb_String firstAnalysisStepName() const;
  // The first step after the initial one that is no linear perturbation step; empty for none.
  odb_String firstGeneralStepName() const;
  // True when a step after the initial one is an explicit step.
  bool hasExplicitStep() const;

 private:
  friend struct oif_ModelInfoAccess;
  std::shared_ptr<const oif_ModelData> m_data;
};

#endif
