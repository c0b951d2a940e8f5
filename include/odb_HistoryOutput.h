// odb_HistoryOutput: one named quantity of a history region, as a series of (time, value) pairs
// in the order they were added; and odb_HistoryData, the pairs as read back.
//
// An output is a handle: copies share it (O(1)). An attached output belongs to a region of a
// step and writes to the database: addData appends to memory in amortised constant time and the
// database's save writes the pairs appended since the last save as one block (times as doubles,
// values as floats); nothing written before is rewritten. A detached output (built from its
// pairs, or a subset) holds its pairs in memory and refuses addData. Only SCALAR outputs are
// stored. One thread at a time for an output, its copies and its database.
#ifndef ODB_HISTORYOUTPUT_H
#define ODB_HISTORYOUTPUT_H

#include "odb_Enum.h"
#include "odb_Export.h"
#include "odb_Sequence.h"
#include "odb_String.h"
#include "uti_LabelMap.h"
#include "uti_SharedPtr.h"

// The messages of history outputs.
enum odb_HistoryOutputEnm : int {
  odb_HistoryOutput_UNEQUAL_ARRAYS = 0,    // addData(times, values) of different lengths
  odb_HistoryOutput_WIDTH_NOT_TWO = 1,     // a pair of other than two numbers
  odb_HistoryOutput_ORPHAN = 2,            // addData on a detached output
  odb_HistoryOutput_UNEQUAL_SEQUENCES = 3  // data and conjugate data of different lengths
};

template <>
struct QTVODB_EXPORT uti_LabelTable<odb_HistoryOutputEnm, 1> {
  static const uti_LabelRow<odb_HistoryOutputEnm> rows[];
};

// (time, value) pairs, read-only. Copies share the pairs (O(1)). Times are doubles and values
// floats, as stored; the nested-sequence form that some callers want is offered by conversion,
// which narrows times to float and costs a small list per pair.
class QTVODB_EXPORT odb_HistoryData {
 public:
  odb_HistoryData() = default;
  // Takes the pairs; `owner` keeps the arrays that `times` and `values` point into alive.
  odb_HistoryData(std::shared_ptr<const void> owner, const double* times, const float* values,
                  int size)
      : m_owner(std::move(owner)), m_times(times), m_values(values), m_size(size) {}

  int size() const { return m_size; }
  bool isEmpty() const { return m_size == 0; }
  // Pair i (0-based, unchecked).
  double time(int i) const { return m_times[i]; }
  float value(int i) const { return m_values[i]; }
  // size() times and values, contiguous.
  const double* times() const { return m_times; }
  const float* values() const { return m_values; }
  // Pair i as a two-element sequence (time, value).
  odb_SequenceFloat operator[](int i) const;
  // Every pair as a two-element sequence.
  odb_SequenceSequenceFloat sequence() const;
  operator odb_SequenceSequenceFloat() const { return sequence(); }

 private:
  std::shared_ptr<const void> m_owner;
  const double* m_times = nullptr;
  const float* m_values = nullptr;
  int m_size = 0;
};

struct odb_HistoryOutputData;

class QTVODB_EXPORT odb_HistoryOutput {
 public:
  // A detached SCALAR output with no name and no pairs.
  odb_HistoryOutput();
  // A detached output holding `data`, one (time, value) sequence of two numbers per pair, and,
  // for complex outputs, `conjugateData` of the same shape and length. Throws "Data added to a
  // history variable should be of width 2" for a pair of another width and "Data sequences added
  // to a history variable should be of equal length." when the conjugate data has another length.
  odb_HistoryOutput(const odb_String& name, const odb_String& description,
                    odb_Enum::odb_DataTypeEnum type, const odb_SequenceSequenceFloat& data,
                    const odb_SequenceSequenceFloat& conjugateData = odb_SequenceSequenceFloat());

  odb_String name() const;
  odb_String description() const;
  odb_Enum::odb_DataTypeEnum type() const;
  // True for an output of a region of a step, which writes to its database.
  bool isAttached() const;

  // Appends one pair (the value narrowed to float). Refused on a detached output with "Cannot
  // add data to an orphan history object. ..." and on a read-only database.
  void addData(double time, double value);
  // Appends times[i], values[i] for every i; throws "History time and data array of unequal
  // length." when the lengths differ. Nothing is appended when anything is refused.
  void addData(const odb_SequenceFloat& times, const odb_SequenceFloat& values);
  // Appends each (time, value) sequence; throws "Data added to a history variable should be of
  // width 2" for one of another width, appending none of them.
  void addData(const odb_SequenceSequenceFloat& pairs);

  // Every pair in the order added: for an attached output the saved blocks, read whole, then
  // the pairs not yet saved.
  odb_HistoryData data() const;
  // The conjugate pairs of a complex output; empty for real outputs and stored outputs.
  odb_HistoryData conjugateData() const;

  // Detached copies keeping the name, description and type, with the pairs whose time is
  // strictly greater than `start` (and strictly less than `end`): both bounds are exclusive.
  odb_HistoryOutput getSubset(double start) const;
  odb_HistoryOutput getSubset(double start, double end) const;

 private:
  friend struct odb_HistoryOutputAccess;

  explicit odb_HistoryOutput(std::shared_ptr<odb_HistoryOutputData> data);
  // The pairs with start < time, and time < end when `bounded`.
  odb_HistoryOutput Subset(double start, double end, bool bounded) const;

  std::shared_ptr<odb_HistoryOutputData> m_data;
};

#endif
