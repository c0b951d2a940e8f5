// odb_FieldBulkData: one block of a field output's values (one element type, or the nodes, at one
// position and section point of one part instance) as plain arrays.
//
// The arrays are the block's own, read from the file once for the whole block: data() holds
// width() floats per location, row after row, in the order they were written. The per-location
// labels and mises() are derived on first request. A handle: copies share the block, and the
// pointers stay valid while any copy of the block (or its field) lives. length() and width() are
// kept in the handle, so that they cost nothing in a loop's condition; they describe the block
// as it was when the handle was made (values added to the field later come with the blocks of a
// new bulkDataBlocks()). One thread at a time.
#ifndef ODB_FIELDBULKDATA_H
#define ODB_FIELDBULKDATA_H

#include "odb_ArrayView.h"
#include "odb_Enum.h"
#include "odb_Export.h"
#include "odb_Instance.h"
#include "odb_SectionPoint.h"
#include "odb_String.h"
#include "uti_Array.h"
#include "uti_SharedPtr.h"

struct odb_SubFieldData;

class QTVODB_EXPORT odb_FieldBulkData {
 public:
  // An empty block.
  odb_FieldBulkData() = default;

  odb_Enum::odb_ResultPositionEnum position() const;
  odb_Enum::odb_DataTypeEnum type() const;
  const odb_Instance& instance() const;
  odb_String baseElementType() const;
  odb_SectionPoint sectionPoint() const;
  // Locations (values) in the block, and floats per value.
  int length() const { return m_length; }
  int width() const { return m_width; }
  // Elements the block covers (0 for nodal data), and locations per element.
  int numberOfElements() const;
  int valuesPerElement() const;

  // length() x width() floats.
  const float* data() const;
  // The imaginary parts of complex data, as data(); nullptr for real data.
  const float* conjugateData() const;
  // orientationWidth() floats per location (2 or 4); nullptr when the block has none.
  const float* localCoordSystem() const;
  int orientationWidth() const;
  // Per location; -1 where a label does not apply (node labels of integration-point data...).
  const int* elementLabels() const;
  const int* nodeLabels() const;
  const int* integrationPoints() const;
  // The Mises stress of each location (tensor data; zeros for other types).
  const float* mises() const;

  // Reading into the caller's arrays, for programs that read frame after frame into buffers
  // they own and reuse (std::vector converts to the views; size it first). The labels come as
  // stored: numberOfLabels() of them, one per element (one per node for nodal data), each with
  // valuesPerElement() locations in a row; the data as length() rows of width() floats, the
  // conjugate data likewise, the orientations as length() rows of orientationWidth() floats.
  // Each view must hold exactly that many values ("readData(): the array holds 47 values; the
  // block gives 48."), checked before anything is written; conjugate data of a real block and
  // orientations of a block without them are refused. A block not read yet goes from the file
  // straight into the caller's array, and nothing of it is kept: this costs about what reading
  // a plain file costs, without the library allocating memory.
  int numberOfLabels() const;
  void readLabels(odb_MutableArrayView<int> into) const;
  void readData(odb_MutableArrayView<float> into) const;
  void readConjugateData(odb_MutableArrayView<float> into) const;
  void readLocalCoordSystem(odb_MutableArrayView<float> into) const;

 private:
  friend struct odb_FieldBulkDataAccess;

  explicit odb_FieldBulkData(std::shared_ptr<odb_SubFieldData> block);
  odb_SubFieldData& Block() const;
  // The block's description, refused when faulty, without reading its arrays.
  odb_SubFieldData& Described() const;
  std::shared_ptr<odb_SubFieldData> m_block;
  int m_length = 0, m_width = 0;
};

// The blocks of a field output, in the order their sub-fields were first written.
class QTVODB_EXPORT odb_SequenceFieldBulkData {
 public:
  odb_SequenceFieldBulkData() = default;
  int size() const { return m_blocks.size(); }
  bool isEmpty() const { return m_blocks.empty(); }
  // Block i, 0-based; throws "Index out of range." outside 0..size()-1.
  const odb_FieldBulkData& get(int i) const { return constGet(i); }
  const odb_FieldBulkData& constGet(int i) const;
  const odb_FieldBulkData& operator[](int i) const { return constGet(i); }
  void append(const odb_FieldBulkData& block) { m_blocks.push_back(block); }
  void clearAll() { m_blocks.clear(); }

 private:
  uti_Array<odb_FieldBulkData> m_blocks;
};

#endif
