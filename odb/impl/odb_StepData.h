// odb_StepData: what a step handle shares with its copies and its frame views; internal.
//
// The step's stored description, and the caches of its frame records and load cases, each
// filled on first use. Frame records are kept as the store gives them (values in single
// precision); frame handles are built from them on demand.
#ifndef ODB_STEPDATA_H
#define ODB_STEPDATA_H

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "odb_AssemblyData.h"
#include "odb_Enum.h"
#include "odb_Frame.h"
#include "odb_FrameFields.h"
#include "odb_HistoryPoint.h"
#include "odb_HistoryRegion.h"
#include "odb_LoadCase.h"
#include "odb_Repository.h"
#include "odb_SequenceFrame.h"
#include "odb_Step.h"
#include "odb_StepProcedure.h"
#include "odb_String.h"
#include "store_Database.h"

struct odb_StepData {
  std::shared_ptr<store_Database> store;
  std::int64_t id = 0;
  odb_String name;
  odb_String description;
  odb_Enum::odb_DomainEnum domain = odb_Enum::TIME;
  double timePeriod = 0.0;
  double totalTime = 0.0;
  odb_String previousStepName;
  odb_String procedure;
  // The procedure's kind and settings, read on first use; UNSPECIFIED (with the step's time
  // period) for a step stored without them.
  bool settingsRead = false;
  odb_StepProcedure settings;
  void ReadSettings();

  bool framesRead = false;
  std::vector<store_FrameRecord> frames;
  odb_AssemblyLookup assembly;
  // The fields of each frame, made on first use so that every handle on a frame shares them.
  mutable std::vector<std::shared_ptr<odb_FrameFields>> frameFields;
  std::shared_ptr<odb_FrameFields> FieldsOf(int frameIndex) const;

  bool loadCasesRead = false;
  odb_Repository<odb_String, odb_LoadCase> loadCases;
  bool historyRegionsRead = false;
  odb_HistoryRegionRepository historyRegions;

  // A step's data from its stored record; nothing of its frames is read.
  odb_StepData(std::shared_ptr<store_Database> db, const store_StepRecord& record,
               odb_AssemblyLookup assembly = {});

  // Reads all frame records once; later calls do nothing.
  // "the WHAT of step 'NAME'", for damage found while reading them.
  std::string Subject(const char* what) const;
  void ReadFrames();
  // Reads the frame records beyond those held; true when there were any. Only once read.
  bool ReadNewFrames();
  // Reads the stored load cases not yet held; true when there were any.
  bool ReadLoadCases();
  int FrameCount() {
    ReadFrames();
    return static_cast<int>(frames.size());
  }
  // A frame handle on record i (index checked by the caller).
  odb_Frame MakeFrame(int i) const;
  // The frame handle of record i kept for the step's lifetime, made on first use, so that
  // references that frame views hand out stay valid as long as the step (index checked by the
  // caller).
  odb_Frame& KeptFrame(int i) const;
  mutable std::vector<std::unique_ptr<odb_Frame>> keptFrames;
};

// The step's history regions, read from the file once (odb_StepHistory.cpp).
void odb_ReadHistoryRegions(odb_StepData& step);
// Stores a new region of the step and records it; see odb_Step::HistoryRegion.
odb_HistoryRegion& odb_AddHistoryRegion(odb_StepData& step, const odb_String& name,
                                        const odb_String& description,
                                        const odb_HistoryPoint& point,
                                        const odb_LoadCase& loadCase);

// Makes step handles and their frame sequences from the implementation.
struct odb_StepAccess {
  static odb_Step Make(std::shared_ptr<odb_StepData> data) { return odb_Step(std::move(data)); }
  static const std::shared_ptr<odb_StepData>& Data(const odb_Step& step) { return step.m_data; }
};
struct odb_SequenceFrameAccess {
  static odb_SequenceFrame Make(std::shared_ptr<odb_StepData> step) {
    return odb_SequenceFrame(std::move(step));
  }
};

#endif
