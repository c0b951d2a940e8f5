// cow_1DArrayList: a length-counted list over a cow_1DArray, and its iterator.
//
// A signed 32-bit length followed by the array, which may hold more positions than the list has
// elements. Copies share everything (O(1)); writes unshare the table once and the one block they
// touch. Appending writes into the current block, so growth never moves elements.
//
// Misuse (an index past the end, popping an empty list) is reported through cow_AssertFailed
// with the texts below. Where going on would break the list (a negative length, a read before
// the first element) the call stops after the report: Remove does nothing and Pop returns a
// default value. Negative indices are not checked.
#ifndef COW_1DARRAYLIST_H
#define COW_1DARRAYLIST_H

#include "cow_1DArray.h"
#include "odb_Export.h"

template <class T>
class QTVODB_EXPORT cow_1DArrayList {
 public:
  using value_type = T;

  cow_1DArrayList() = default;
  // An empty list whose array is presized for `capacity` positions.
  explicit cow_1DArrayList(int capacity) : m_array(capacity) {}
  // A list of the n values, in an array sized for n.
  cow_1DArrayList(const T* values, int n) : m_length(n > 0 ? n : 0), m_array(n) {
    m_array.SetFromArray(values, n);
  }
  cow_1DArrayList(const cow_1DArrayList&) = default;
  cow_1DArrayList& operator=(const cow_1DArrayList&) = default;
  ~cow_1DArrayList() = default;

  int Length() const { return m_length; }
  cow_1DArray<T>& Array() { return m_array; }
  const cow_1DArray<T>& Array() const { return m_array; }

  // Cuts the list to n when it is longer, then sets the array's length to n.
  bool Grow(int n) {
    if (n < m_length) m_length = n > 0 ? n : 0;
    return m_array.Grow(n);
  }

  // Write access to position i of the array (extends the array, not the list).
  T& Get(int i) { return m_array.Get(i); }
  const T& ConstGet(int i) const { return m_array.PartialArrayConstGet(i); }
  const T& operator[](int i) const { return m_array[i]; }

  bool Append(const T& x) {
    m_array.Get(m_length) = x;
    ++m_length;
    return true;
  }

  // Appends other's elements. When other is longer than this list the array is first grown to
  // other's length (not to the sum): the rest extends one element at a time.
  bool Append(const cow_1DArrayList& other) {
    cow_1DArrayList source(other);  // `other` may be this list
    if (source.m_length > m_length) m_array.Grow(source.m_length);
    for (int i = 0; i < source.m_length; ++i) Append(source.m_array[i]);
    return true;
  }

  // Inserts x before position ins; ins equal to the length appends.
  bool Insert(int ins, const T& x) {
    cow_Check(ins <= m_length, "ins <= length", "include/cow_1DArrayList", 99);
    for (int i = m_length - 1; i >= ins; --i) m_array.Get(i + 1) = m_array.Get(i);
    m_array.Get(ins) = x;
    ++m_length;
    return true;
  }

  bool Remove(int i) {
    if (!cow_Check(i < m_length, "i < length", "include/cow_1DArrayList", 70)) return true;
    --m_length;
    for (int k = i; k < m_length; ++k) m_array.Get(k) = m_array.Get(k + 1);
    m_array.Get(m_length) = T();
    return true;
  }

  T Pop() {
    if (!cow_Check(m_length != 0, "length", "include/cow_1DArrayList", 88)) return T();
    T last = m_array.Get(m_length - 1);
    Remove(m_length - 1);
    return last;
  }

  void ClearAll() {
    m_array = cow_1DArray<T>();
    m_length = 0;
  }

  // Elements from `from` up to, not including, min(to, length).
  cow_1DArrayList Slice(int from, int to) const {
    cow_1DArrayList slice;
    int last = to < m_length ? to : m_length;
    for (int i = from < 0 ? 0 : from; i < last; ++i) slice.Append(m_array.PartialArrayConstGet(i));
    return slice;
  }

  // Withdrawn form: reports and does nothing.
  void Slice(int, int, cow_1DArrayList&) const {
    cow_AssertFailed("\"This overload of cow_1DArrayList<T>::Slice is no longer supported\" == 0",
                     "include/cow_1DArrayList", 62);
  }

  // A new[]-allocated copy of the elements (the caller delete[]s it); n receives the length.
  T* GetCArray(int& n) const {
    n = m_length;
    T* copy = new T[m_length > 0 ? m_length : 1];
    for (int i = 0; i < m_length; ++i) copy[i] = m_array[i];
    return copy;
  }

  // Index of the first element equal to x, or the length when there is none.
  int FindFirst(const T& x) const {
    cow_1DArrayIter<T> it(m_array);
    for (it.First(); !it.IsDone() && it.Position() < m_length; it.Next())
      if (it.Current() == x) return it.Position();
    return m_length;
  }

  // Withdrawn: reports and returns the length.
  int FindLast(const T&) const {
    cow_AssertFailed("\"cow_1DArrayList<T>::FindLast is no longer supported\" == 0",
                     "include/cow_1DArrayListCmp", 70);
    return m_length;
  }

  bool IsMember(const T& x) const { return FindFirst(x) < m_length; }
  bool RemoveMember(const T& x) {
    int i = FindFirst(x);
    if (i < m_length) Remove(i);
    return true;
  }
  bool AppendUnlessMember(const T& x) {
    if (!IsMember(x)) Append(x);
    return true;
  }

  // Equal lengths and equal elements; elements in a shared block are equal without comparing.
  bool IsEqual(const cow_1DArrayList& other) const {
    if (m_length != other.m_length) return false;
    for (int i = 0; i < m_length; ++i) {
      const T& a = m_array.PartialArrayConstGet(i);
      const T& b = other.m_array.PartialArrayConstGet(i);
      if (&a != &b && !(a == b)) return false;
    }
    return true;
  }

 private:
  int m_length = 0;
  cow_1DArray<T> m_array;
};

template <class T>
bool operator==(const cow_1DArrayList<T>& a, const cow_1DArrayList<T>& b) {
  return a.IsEqual(b);
}

// Walks a list's elements in order over a shared copy of the list.
template <class T>
class QTVODB_EXPORT cow_1DArrayListIter {
 public:
  explicit cow_1DArrayListIter(const cow_1DArrayList<T>& list) : m_list(list), m_it(list.Array()) {}
  void First() { m_it.First(); }
  void Next() { m_it.Next(); }
  bool IsDone() const { return m_it.IsDone() || m_it.Position() >= m_list.Length(); }
  const T& Current() const { return m_it.Current(); }

 private:
  cow_1DArrayList<T> m_list;
  cow_1DArrayIter<T> m_it;
};

#endif
