// cow_List: a general list over a cow_1DArray that also works at the front, and its iterator.
//
// A signed 32-bit size followed by the array. Copies share everything (O(1)); writes unshare the
// table once and the one block they touch. Prepend uses the array's free room in front of the
// first element, so it moves block pointers, never elements. Every operation returns the list so
// calls can be chained.
//
// Misuse is reported through cow_AssertFailed with the texts below; removing from an empty list
// or at an index outside it then does nothing, so the size never goes negative. Get and ConstGet
// check no bounds.
#ifndef COW_LIST_H
#define COW_LIST_H

#include "cow_1DArray.h"
#include "odb_Export.h"

template <class T>
class QTVODB_EXPORT cow_List {
 public:
  using value_type = T;

  cow_List() = default;
  cow_List(const cow_List&) = default;
  cow_List& operator=(const cow_List&) = default;
  ~cow_List() = default;

  int Size() const { return m_size; }
  // Write access to array position i (extends the array, not the list).
  T& Get(int i) { return m_array.Get(i); }
  const T& ConstGet(int i) const { return m_array.PartialArrayConstGet(i); }
  const T& operator[](int i) const { return m_array[i]; }

  cow_List& Append(const T& x) {
    m_array.Get(m_size) = x;
    ++m_size;
    return *this;
  }

  cow_List& Append(const cow_List& other) {
    cow_List source(other);  // `other` may be this list
    m_array.Grow(m_size + source.m_size);
    for (int i = 0; i < source.m_size; ++i) Append(source.m_array[i]);
    return *this;
  }

  cow_List& Prepend(const T& x) {
    m_array.GetHead() = x;
    ++m_size;
    return *this;
  }

  // Inserts x after position index; index -1 puts x first, index equal to the size appends.
  cow_List& InsertAfter(long index, const T& x) {
    cow_Check(index <= m_size, "index <= size", "include/cow_List", 162);
    if (index >= m_size) return Append(x);
    for (int i = m_size - 1; i >= index + 1; --i) m_array.Get(i + 1) = m_array.Get(i);
    m_array.Get(static_cast<int>(index) + 1) = x;
    ++m_size;
    return *this;
  }

  cow_List& RemoveIndex(int index) {
    if (!cow_Check(0 <= index && index < m_size, "0 <= index && index < size", "include/cow_List",
                   31))
      return *this;
    --m_size;
    for (int i = index; i < m_size; ++i) m_array.Get(i) = m_array.Get(i + 1);
    m_array.Get(m_size) = T();
    return *this;
  }

  cow_List& RemoveLast() {
    if (!cow_Check(m_size != 0, "size", "include/cow_List", 52)) return *this;
    --m_size;
    m_array.Get(m_size) = T();
    return *this;
  }

  cow_List& RemoveFirst() {
    if (!cow_Check(m_size != 0, "size", "include/cow_List", 74)) return *this;
    m_array.Get(0) = T();
    m_array.RemoveHead();
    --m_size;
    return *this;
  }

  cow_List& Clear() {
    m_array.Grow(0);
    m_size = 0;
    return *this;
  }

 private:
  int m_size = 0;
  cow_1DArray<T> m_array;
};

// Walks a list's elements in order over a shared copy of the list.
template <class T>
class QTVODB_EXPORT cow_ListIter {
 public:
  explicit cow_ListIter(const cow_List<T>& list) : m_list(list) {}
  void First() { m_i = 0; }
  void Next() { ++m_i; }
  bool IsDone() const { return m_i >= m_list.Size(); }
  const T& Current() const { return m_list[m_i]; }

 private:
  cow_List<T> m_list;
  int m_i = 0;
};

#endif
