// odb_SubFieldData: one sub-field of a field output (one element type, or the nodes, at one
// position and section point of one part instance), as the field's views share it; internal.
//
// A stored sub-field knows its blocks and reads their arrays on first use, all of them into one
// run per array; a subset's or a computed field's sub-field holds its arrays from the start. The
// per-location label arrays and the Mises values are derived once, on first request.
//
// Stored blocks may come from another program or a damaged file. What their rows say about the
// field (type, width, instance, section point) is checked once, when the field's blocks are
// first read (Check); the array lengths are checked per block before a sub-field's arrays are
// read (Load). Either refusal leaves the sub-field unread, so every later use refuses it again.
#ifndef ODB_SUBFIELDDATA_H
#define ODB_SUBFIELDDATA_H

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "odb_Enum.h"
#include "odb_FieldBulkData.h"
#include "odb_Instance.h"
#include "odb_SectionPoint.h"
#include "odb_String.h"
#include "odb_SubField.h"
#include "store_Field.h"
#include "store_FieldMath.h"
#include "store_LargeAllocator.h"

class store_Database;

// An owned run of values that is not cleared when sized: a block read from the file is written
// over at once, and clearing tens of megabytes first would cost as much as the read. Large runs
// get huge pages (store_LargeAllocator): the page faults of filling fresh memory, not the copy,
// were most of the time of reading a field.
template <class T>
class odb_Run {
 public:
  odb_Run() = default;
  odb_Run(const odb_Run&) = delete;
  odb_Run& operator=(const odb_Run&) = delete;
  odb_Run(odb_Run&& other) noexcept { Swap(other); }
  odb_Run& operator=(odb_Run&& other) noexcept {
    odb_Run moved(std::move(other));
    Swap(moved);
    return *this;
  }
  ~odb_Run() { store_FreeLarge(m_values); }

  std::size_t size() const { return m_size; }
  bool empty() const { return m_size == 0; }
  T* data() { return m_values; }
  const T* data() const { return m_values; }
  T& operator[](std::size_t i) { return m_values[i]; }
  const T& operator[](std::size_t i) const { return m_values[i]; }
  // Sizes the run; the first min(old, new) values are kept, the others are undefined.
  void Resize(std::size_t n) {
    if (n > m_capacity) {
      T* grown = static_cast<T*>(store_AllocateLarge(n * sizeof(T)));
      for (std::size_t i = 0; i < m_size; ++i) grown[i] = m_values[i];
      store_FreeLarge(m_values);
      m_values = grown;
      m_capacity = n;
    }
    m_size = n;
  }
  void Assign(const T* values, std::size_t n) {
    Resize(n);
    for (std::size_t i = 0; i < n; ++i) m_values[i] = values[i];
  }

 private:
  void Swap(odb_Run& other) {
    std::swap(m_values, other.m_values);
    std::swap(m_size, other.m_size);
    std::swap(m_capacity, other.m_capacity);
  }
  T* m_values = nullptr;
  std::size_t m_size = 0, m_capacity = 0;
};

// The view of a field that asks for a sub-field's contents: a refused sub-field names its fault
// differently when values or bulk data are built from it.
enum class odb_SubFieldView { VALUES, BULK_DATA };

struct odb_SubFieldData {
  odb_Enum::odb_ResultPositionEnum position = odb_Enum::NODAL;
  odb_Enum::odb_DataTypeEnum type = odb_Enum::SCALAR;
  odb_Instance instance;
  odb_String instanceName;
  odb_String elementType;  // empty for nodal data
  odb_String sectionCategory;
  odb_SectionPoint sectionPoint;
  odb_String setName;
  int width = 1;
  int perLabel = 1;          // locations per label: integration points, nodes, or 1
  int orientationWidth = 0;  // 0, 2 or 4
  bool complex = false;

  // Stored blocks not read yet (empty once read, and for sub-fields made in memory).
  std::shared_ptr<store_Database> store;
  // "the data of field 'S' in frame 3 of step 'LOAD'", for damage found in its arrays.
  std::string subject;
  std::vector<store_FieldBlockRecord> unread;

  // The contents, valid after Load(): one label per element (node), `perLabel` locations each.
  odb_Run<int> labels;
  odb_Run<float> data, conjugate, orientation;
  // For subsets: the positions in the source sub-field of the locations kept.
  std::vector<int> subsetIndices;
  // Set when each location was derived from several stored ones (extrapolation), so that no
  // location has a position in a stored sub-field.
  bool derived = false;
  // Set by SetLocations: the locations are listed one by one rather than `perLabel` per label.
  bool ownLocations = false;
  // A computed sub-field whose data are not computed yet: the first Locations() * width floats of
  // `pendingSource`'s data through `pendingOps`, computed by Load(). Only operations that cannot
  // fail wait like this (2 * S, abs(S)), so that a chain of them and the next operation run as
  // one pass over memory.
  std::shared_ptr<odb_SubFieldData> pendingSource;
  std::vector<store_MathOp> pendingOps;

  // A stored sub-field whose identity is that of block `b`, of a field of `type`; no blocks yet.
  static std::shared_ptr<odb_SubFieldData> FromBlock(const store_FieldBlockRecord& b,
                                                     odb_Enum::odb_DataTypeEnum type,
                                                     const odb_Instance& instance,
                                                     std::shared_ptr<store_Database> store);
  // A sub-field in memory of the same identity as `source`, holding nothing yet.
  static std::shared_ptr<odb_SubFieldData> SameIdentity(const odb_SubFieldData& source);
  // Whether block `b` belongs to this sub-field.
  bool Holds(const store_FieldBlockRecord& b) const;

  // Checks what the rows of a stored sub-field's first block say against the definition of the
  // field named `field` (`fieldWidth` floats per value, 0 when not settled) and against the
  // assembly (`instanceKnown`: whether it holds the block's instance, which `instance` then is);
  // records the first fault for Refuse. Reads no array.
  void Check(const odb_String& field, int fieldWidth, bool instanceKnown);
  // Whether the block names no instance: data of the assembly itself, which the reader cannot
  // place on a mesh.
  bool AssemblyLevel() const { return m_fault == odb_SubField_NO_PART_INSTANCE; }
  // Throws the fault that Check found, as `view` reports it; returns for a readable sub-field.
  void Refuse(odb_SubFieldView view) const;

  // Reads the blocks not read yet (computes pending data); throws the fault that Check found, or
  // the composed length message for a block whose arrays disagree with its count, before reading
  // anything.
  void Load();
  // A stored block of this sub-field, added after its first ones.
  void AddBlock(const store_FieldBlockRecord& block);
  // The number of locations (values), and of labels; neither reads anything.
  std::size_t Locations() const;
  std::size_t LabelCount() const;
  // What the caller's arrays receive from ReadInto.
  enum class Part { LABELS, DATA, CONJUGATE, ORIENTATION };
  // Writes the labels (one per element or node), data, conjugate data or orientations into
  // `out`, which has room for them: from what the sub-field holds, and straight from the file
  // for the blocks it has not read, which it does not keep. Refuses a faulty sub-field as bulk
  // data does, and a block whose arrays disagree with its count, before writing anything.
  void ReadInto(Part part, void* out);

  // The floats of DATA or CONJUGATE without keeping them: the sub-field's own array when it
  // holds them all, else read from the file into `scratch`, which must outlive their use.
  const float* Floats(Part part, odb_Run<float>& scratch);
  // The labels as stored (LabelCount() of them) into `into`, without keeping them.
  void CopyLabels(odb_Run<int>& into);
  // A sub-field in memory at the same locations: identity, labels, locations listed one by one,
  // subset indices and, when `orientations`, orientations of this one, `width` floats per
  // location, and when `room`, room for them (none filled). Reads the labels and orientations
  // only.
  std::shared_ptr<odb_SubFieldData> SameLocations(int width, bool orientations, bool room = true);

  // Makes the sub-field carry its location labels itself, one label per location (subsets and
  // extrapolated fields, whose locations need not be whole elements): `labels` must then hold
  // the element labels (node labels for nodal data) of each location.
  void SetLocations(odb_Run<int> nodeLabels, odb_Run<int> integrationPoints);

  // Per location, built once after Load(); -1 where a label does not apply.
  const odb_Run<int>& ElementLabels();
  const odb_Run<int>& NodeLabels();
  const odb_Run<int>& IntegrationPoints();
  const odb_Run<float>& Mises();

 private:
  // Computes the data of a pending sub-field.
  void ComputePending();
  // Throws the length message of a block: `expected` and `given` locations.
  [[noreturn]] void FailLength(long long expected, long long given) const;
  // Checks the lengths of the arrays of stored block `b` against its count.
  void CheckArrays(const store_FieldBlockRecord& b) const;

  bool m_faulty = false;
  odb_SubFieldEnm m_fault = odb_SubField_NO_MESH_INDEX;
  odb_String m_faultArgument;  // the field's name or a number, for messages with a %s
  // Locations per label that the element type calls for; set by Check.
  int m_perElement = 1;
  std::size_t m_unreadLocations = 0;
  odb_Run<int> m_elementLabels, m_nodeLabels, m_integrationPoints;
  odb_Run<float> m_mises;
  bool m_elementLabelsBuilt = false, m_nodeLabelsBuilt = false, m_pointsBuilt = false,
       m_misesBuilt = false;
};

// Reaches the stored group behind sub-field and bulk-data handles from the implementation.
struct odb_SubFieldAccess {
  static odb_SubField Make(std::shared_ptr<odb_SubFieldData> data) {
    return odb_SubField(std::move(data));
  }
  static const std::shared_ptr<odb_SubFieldData>& Data(const odb_SubField& s) { return s.m_data; }
};
struct odb_FieldBulkDataAccess {
  static odb_FieldBulkData Make(std::shared_ptr<odb_SubFieldData> block) {
    return odb_FieldBulkData(std::move(block));
  }
  static const std::shared_ptr<odb_SubFieldData>& Block(const odb_FieldBulkData& b) {
    return b.m_block;
  }
};

#endif
