// odb_SequenceFieldValue: the values of a field output, one per location, in the order their
// sub-fields were first written and, within one, in the order written.
//
// The sequence holds the field's sub-fields, not values: a sub-field's arrays are read from the
// file the first time one of its values is asked for and kept, and each get builds the value
// from them into the sequence's own one-slot cache, so the reference returned stays valid only
// until the next get on the same sequence: after `const odb_FieldValue& a = vals[0]; vals[1];`
// `a` shows value 1. Copy the value (odb_FieldValue a = vals[0]) to keep it longer. Walking the
// values in order costs a few tens of nanoseconds each and no memory beyond the arrays. Values
// appended one by one (not from a field) are kept as they are, after the sub-fields' values.
// Copying a sequence costs O(number of sub-fields). One thread at a time.
#ifndef ODB_SEQUENCEFIELDVALUE_H
#define ODB_SEQUENCEFIELDVALUE_H

#include "odb_Export.h"
#include "odb_FieldValue.h"
#include "odb_Sequence.h"
#include "odb_String.h"
#include "odb_SubField.h"
#include "uti_Array.h"
#include "uti_SharedPtr.h"

class odb_Assembly;
class odb_FieldOutput;

// Field values held by value: what append takes in one call, and what FieldValueListList gives
// per sub-field.
using odb_FieldValueList = uti_Array<odb_FieldValue>;

class QTVODB_EXPORT odb_SequenceFieldValue {
 public:
  odb_SequenceFieldValue() = default;

  int size() const;
  bool isEmpty() const { return size() == 0; }
  // Value i, 0-based; throws "Index out of range." outside 0..size()-1.
  const odb_FieldValue& get(int i) const { return constGet(i); }
  const odb_FieldValue& constGet(int i) const;
  const odb_FieldValue& value(int i) const { return constGet(i); }
  const odb_FieldValue& operator[](int i) const { return constGet(i); }

  void append(const odb_FieldValue& value) { m_loose.push_back(value); }
  void append(const odb_SequenceFieldValue& values);
  void append(const odb_SubField& subField);
  void append(const odb_FieldValueList& values) { m_loose.append(values.begin(), values.end()); }
  // Appends the values of `field` at the listed labels (node labels for nodal sub-fields, element
  // labels for the others) on the instances of `assembly`, as sub-fields that share the field's
  // arrays: a sub-field kept whole is shared as it is, one kept in part becomes a subset holding
  // only those locations. Labels absent from the field add nothing; values on instances that the
  // assembly does not hold are left out. Reads the field's sub-fields, O(values of the field).
  void appendSubField(const odb_SequenceInt& labels, const odb_FieldOutput& field,
                      odb_Assembly& assembly);
  // The sub-fields, in order, and per sub-field its data type and element type label.
  const odb_SequenceSubField& SubField() const { return m_subFields; }
  // Every value built, one list per sub-field in order, then one list of the values appended one
  // by one (when there are any): a copy of every value, O(size()) time and memory.
  uti_Array<odb_FieldValueList> FieldValueListList() const;
  odb_Sequence<odb_Enum::odb_DataTypeEnum> subFieldTypes() const;
  // The distinct element type labels, in order of first appearance ("" for nodal data is left
  // out).
  odb_SequenceString baseElementTypes() const;
  void clearAll();

 private:
  // The sub-field holding value i and the position of the value in it.
  void Locate(int i, int& block, int& at) const;

  odb_SequenceSubField m_subFields;
  uti_Array<int> m_starts;  // the index of each sub-field's first value
  uti_Array<odb_FieldValue> m_loose;
  mutable odb_FieldValue m_current;
  mutable int m_hint = 0;
};

#endif
