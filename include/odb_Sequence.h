// odb_Sequence<T, L>: the list type of the public interface, and its common short names.
//
// The layout of a cow_1DArrayList: a size, then the block array, which may hold more positions
// than the size (the allocated size). Strings are stored as cow_String and nested sequences as
// their bare lists, so a sequence of sequences shares storage with its rows. Copying, assigning,
// passing and returning are O(1); a write copies the block table once and the one block it
// touches. A sequence and its copies belong to one thread at a time.
//
// Indices are 0-based. get(i) extends the storage (not the size) when i is past it; constGet and
// operator[] never extend and give a default value where nothing was ever written. Misuse
// reports the list's assertions ("i < length", "ins <= length", "length").
#ifndef ODB_SEQUENCE_H
#define ODB_SEQUENCE_H

#include "cow_1DArrayList.h"
#include "odb_Enum.h"
#include "odb_Export.h"
#include "odb_String.h"

template <class T, class L>
class odb_Sequence;

// How a sequence stores an element of type T.
template <class T>
struct QTVODB_EXPORT odb_SequenceStorage {
  using type = T;
};
template <>
struct QTVODB_EXPORT odb_SequenceStorage<odb_String> {
  using type = cow_String;
};
template <class U, class L>
struct QTVODB_EXPORT odb_SequenceStorage<odb_Sequence<U, L>> {
  using type = L;
};

template <class T, class L = cow_1DArrayList<typename odb_SequenceStorage<T>::type>>
class QTVODB_EXPORT odb_Sequence {
  using S = typename L::value_type;
  static_assert(sizeof(S) == sizeof(T), "an element must have the layout of what stores it");

 public:
  using value_type = T;
  using list_type = L;

  odb_Sequence() = default;
  // An empty sequence with storage presized for n elements (a capacity hint, not a length).
  explicit odb_Sequence(int n) : m_list(n) {}
  odb_Sequence(const T* values, int n) : m_list(reinterpret_cast<const S*>(values), n) {}
  odb_Sequence(const L& list) : m_list(list) {}
  odb_Sequence(const odb_Sequence&) = default;
  odb_Sequence& operator=(const odb_Sequence&) = default;
  ~odb_Sequence() = default;

  int size() const { return m_list.Length(); }
  bool isEmpty() const { return m_list.Length() == 0; }
  // Positions in storage; at least size().
  int allocatedSize() const { return m_list.Array().Length(); }
  // Cuts the sequence to n when it is longer, and sizes the storage to n. Returns true.
  bool grow(int n) { return m_list.Grow(n); }

  void append(const T& x) { m_list.Append(Stored(x)); }
  void append(const odb_Sequence& other) { m_list.Append(other.m_list); }
  // Inserts x before index i; i equal to size() appends.
  void insert(int i, const T& x) { m_list.Insert(i, Stored(x)); }
  void remove(int i) { m_list.Remove(i); }
  void clearAll() { m_list.ClearAll(); }
  // Elements from `from` up to, not including, min(to, size()).
  odb_Sequence slice(int from, int to) const { return odb_Sequence(m_list.Slice(from, to)); }
  // Index of the first element equal to x, or size() when there is none.
  int findFirst(const T& x) const { return m_list.FindFirst(Stored(x)); }
  bool isMember(const T& x) const { return m_list.IsMember(Stored(x)); }
  bool isEqual(const odb_Sequence& other) const { return m_list.IsEqual(other.m_list); }

  // Write access; makes shared storage private; extends the storage (not the size) past its end.
  T& get(int i) { return Element(m_list.Get(i)); }
  const T& constGet(int i) const { return Element(m_list.ConstGet(i)); }
  const T& operator[](int i) const { return Element(m_list[i]); }

  const L& list() const { return m_list; }

 private:
  static const S& Stored(const T& x) { return reinterpret_cast<const S&>(x); }
  static T& Element(S& s) { return reinterpret_cast<T&>(s); }
  static const T& Element(const S& s) { return reinterpret_cast<const T&>(s); }

  L m_list;
};

template <class T, class L>
bool operator==(const odb_Sequence<T, L>& a, const odb_Sequence<T, L>& b) {
  return a.isEqual(b);
}

using odb_SequenceInt = odb_Sequence<int>;
using odb_SequenceFloat = odb_Sequence<float>;
using odb_SequenceDouble = odb_Sequence<double>;
using odb_SequenceString = odb_Sequence<odb_String>;
using odb_SequenceSequenceInt = odb_Sequence<odb_SequenceInt>;
using odb_SequenceSequenceFloat = odb_Sequence<odb_SequenceFloat>;
using odb_SequenceSequenceSequenceFloat = odb_Sequence<odb_SequenceSequenceFloat>;
using odb_SequenceInvariant = odb_Sequence<odb_Enum::odb_InvariantEnum>;
using odb_SequenceElementFace = odb_Sequence<odb_Enum::odb_ElementFaceEnum>;
using odb_SequenceSequenceElementFace = odb_Sequence<odb_SequenceElementFace>;
using odb_SequenceProductAddOn = odb_Sequence<odb_Enum::odb_ProductAddOnEnum>;

#endif
