// odb_HistoryRegion: the history outputs recorded at one point of the model during one step.
//
// A handle: copies share the region (O(1)). Regions are created and found through their step
// (odb_Step::HistoryRegion, odb_Step::historyRegions); the step's database holds them. A region
// reads its outputs' names and types from the file on first use; the pairs are read only when an
// output's data are asked for. Subsets are orphan regions: detached copies that hold their
// outputs in memory and refuse new outputs. One thread at a time.
#ifndef ODB_HISTORYREGION_H
#define ODB_HISTORYREGION_H

#include "odb_Enum.h"
#include "odb_Export.h"
#include "odb_HistoryOutput.h"
#include "odb_HistoryPoint.h"
#include "odb_LoadCase.h"
#include "odb_Repository.h"
#include "odb_String.h"
#include "uti_LabelMap.h"
#include "uti_SharedPtr.h"

// The messages of history regions.
enum odb_HistoryRegionEnm : int {
  odb_HistoryRegion_ORPHAN = 0  // HistoryOutput on a subset
};

template <>
struct QTVODB_EXPORT uti_LabelTable<odb_HistoryRegionEnm, 1> {
  static const uti_LabelRow<odb_HistoryRegionEnm> rows[];
};

// The messages of the stored side of regions.
enum odb_HistoryRegionPersEnm : int {
  odb_HistoryRegionPers_BAD_LOCATION = 0  // an output on a point of no kind
};

template <>
struct QTVODB_EXPORT uti_LabelTable<odb_HistoryRegionPersEnm, 1> {
  static const uti_LabelRow<odb_HistoryRegionPersEnm> rows[];
};

using odb_HistoryOutputRepository = odb_Repository<odb_String, odb_HistoryOutput>;
using odb_HistoryOutputRepositoryIT = odb_RepositoryIterator<odb_String, odb_HistoryOutput>;

struct odb_HistoryRegionData;

class QTVODB_EXPORT odb_HistoryRegion {
 public:
  // An empty orphan region.
  odb_HistoryRegion();

  odb_String name() const;
  odb_String description() const;
  const odb_HistoryPoint& historyPoint() const;
  // The empty load case when the region has none.
  const odb_LoadCase& loadCase() const;
  // The point's kind.
  odb_Enum::odb_ResultPositionEnum position() const;
  // True for regions that belong to no step (subsets).
  bool isOrphan() const;

  // The outputs by name.
  odb_HistoryOutputRepository& historyOutputs();
  const odb_HistoryOutputRepository& historyOutputs() const;
  odb_HistoryOutputRepository& historyOutput() { return historyOutputs(); }
  const odb_HistoryOutputRepository& historyOutput() const { return historyOutputs(); }

  // Creates the output `name` and returns it; a name the region holds already gives that output
  // back and writes nothing. Refused, in this order: on an orphan region ("Adding a history
  // output object to an orphan History object is not allowed."); for a type other than SCALAR
  // ("Only SCALAR data allowed for a historyVariable object."); at an ELEMENT_NODAL point
  // ("odb_Enum::ELEMENT_NODAL history not allowed."); at a point of no kind ("HistoryOutput
  // cannot be created for this output location"); when the database refuses the write, for
  // example when read-only ("HistoryOutput request failed."). The first output at a node or an
  // element gives its instance an internal one-member set named after the region, ending in
  // " results_nset" or " results_elset".
  odb_HistoryOutput& HistoryOutput(const odb_String& name, const odb_String& description,
                                   odb_Enum::odb_DataTypeEnum type = odb_Enum::SCALAR);

  // Orphan copies keeping the name, description, point and load case: every output cut to the
  // pairs with start < time (and time < end), or the one output `name` whole (throws "Key
  // "NAME" not found in repository" when there is none).
  odb_HistoryRegion getSubset(double start) const;
  odb_HistoryRegion getSubset(double start, double end) const;
  odb_HistoryRegion getSubset(const odb_String& outputName) const;

 private:
  friend struct odb_HistoryRegionAccess;

  explicit odb_HistoryRegion(std::shared_ptr<odb_HistoryRegionData> data);
  odb_HistoryRegion Subset(double start, double end, bool bounded) const;

  std::shared_ptr<odb_HistoryRegionData> m_data;
};

// A step's history regions are stored ones: the persistent region and the region a program holds
// are the same handle.
using odb_HistoryRegionPers = odb_HistoryRegion;
using odb_HistoryRegionRepository = odb_Repository<odb_String, odb_HistoryRegionPers>;
using odb_HistoryRegionRepositoryIT = odb_RepositoryIterator<odb_String, odb_HistoryRegion>;

#endif
