// odb_FieldValueData: the floats of one field value (its components, or its orientation).
//
// A small owned array: up to nine floats (a 3x3 matrix, a full tensor and its conjugate all fit)
// live inside the object, so building a value allocates nothing; longer runs go to the heap.
// Copying copies the floats. Equal when the counts and every float are equal. One thread at a
// time.
#ifndef ODB_FIELDVALUEDATA_H
#define ODB_FIELDVALUEDATA_H

#include "odb_Export.h"
#include "odb_Sequence.h"
#include "uti_SharedPtr.h"

class QTVODB_EXPORT odb_FieldValueData {
 public:
  odb_FieldValueData() = default;
  // `count` zeros.
  explicit odb_FieldValueData(int count);
  odb_FieldValueData(const float* values, int count);
  explicit odb_FieldValueData(const odb_SequenceFloat& values);
  odb_FieldValueData(const odb_FieldValueData& other);
  odb_FieldValueData& operator=(const odb_FieldValueData& other);

  int size() const { return m_count; }
  bool isEmpty() const { return m_count == 0; }
  const float* data() const { return m_heap ? m_heap.get() : m_inline; }
  float* data() { return m_heap ? m_heap.get() : m_inline; }
  // Float i, 0-based; the caller keeps i below size().
  float operator[](int i) const { return data()[i]; }
  // Replaces the contents with `count` floats from `values`.
  void assign(const float* values, int count);
  odb_SequenceFloat sequence() const { return odb_SequenceFloat(data(), m_count); }

 private:
  static constexpr int kInline = 9;
  int m_count = 0;
  float m_inline[kInline] = {};
  std::unique_ptr<float[]> m_heap;
};

QTVODB_EXPORT bool operator==(const odb_FieldValueData& a, const odb_FieldValueData& b);
inline bool operator!=(const odb_FieldValueData& a, const odb_FieldValueData& b) {
  return !(a == b);
}

#endif
