// uti_Array<T>: a growable array of objects, for the lists that public handles hold or return by
// value (the blocks of a field, its locations, a part's section assignments).
//
// It is what a standard vector would be for these few uses, kept here so that the public headers
// need no container header: a program that includes odb_API.h compiles a third fewer lines.
// Elements are contiguous; appending is amortised O(1) (the storage doubles) and may move the
// elements, so pointers and references into the array last until the next append. A copy copies
// every element; a move takes the storage. An array and its copies belong to one thread at a time.
#ifndef UTI_ARRAY_H
#define UTI_ARRAY_H

#include <cstddef>
#include <new>
#include <type_traits>

template <class T>
class uti_Array {
 public:
  uti_Array() = default;
  uti_Array(const uti_Array& other) { append(other.begin(), other.end()); }
  uti_Array(uti_Array&& other) noexcept { Swap(other); }
  uti_Array& operator=(uti_Array other) noexcept {
    Swap(other);
    return *this;
  }
  ~uti_Array() {
    clear();
    ::operator delete(m_data);
  }

  int size() const { return static_cast<int>(m_size); }
  bool empty() const { return m_size == 0; }

  T* begin() { return m_data; }
  T* end() { return m_data + m_size; }
  const T* begin() const { return m_data; }
  const T* end() const { return m_data + m_size; }
  T& operator[](int i) { return m_data[i]; }
  const T& operator[](int i) const { return m_data[i]; }
  const T& front() const { return m_data[0]; }
  const T& back() const { return m_data[m_size - 1]; }

  void push_back(const T& value) {
    if (m_size == m_capacity) {
      // The value may live in this array: build it in the new storage before the old goes.
      Grow(m_capacity ? 2 * m_capacity : 4, &value);
      return;
    }
    ::new (static_cast<void*>(m_data + m_size)) T(value);
    ++m_size;
  }
  // Appends copies of [first, last), which must not lie in this array.
  void append(const T* first, const T* last) {
    const std::size_t n = static_cast<std::size_t>(last - first);
    if (m_size + n > m_capacity) Grow(m_size + n > 2 * m_capacity ? m_size + n : 2 * m_capacity);
    for (; first != last; ++first) {
      ::new (static_cast<void*>(m_data + m_size)) T(*first);
      ++m_size;
    }
  }
  void clear() {
    while (m_size > 0) m_data[--m_size].~T();
  }

 private:
  void Swap(uti_Array& other) noexcept {
    T* data = m_data;
    m_data = other.m_data;
    other.m_data = data;
    const std::size_t size = m_size, capacity = m_capacity;
    m_size = other.m_size;
    m_capacity = other.m_capacity;
    other.m_size = size;
    other.m_capacity = capacity;
  }

  // Moves the elements into storage for `capacity` and, when `extra` is given, appends a copy of
  // it there first; the array is unchanged if a copy throws (elements that cannot throw on a
  // move are moved).
  void Grow(std::size_t capacity, const T* extra = nullptr) {
    T* fresh = static_cast<T*>(::operator new(capacity * sizeof(T)));
    try {
      if (extra) ::new (static_cast<void*>(fresh + m_size)) T(*extra);
    } catch (...) {
      ::operator delete(fresh);
      throw;
    }
    std::size_t built = 0;
    try {
      for (; built < m_size; ++built) {
        if constexpr (std::is_nothrow_move_constructible<T>::value) {
          ::new (static_cast<void*>(fresh + built)) T(static_cast<T&&>(m_data[built]));
        } else {
          ::new (static_cast<void*>(fresh + built)) T(m_data[built]);
        }
      }
    } catch (...) {
      while (built > 0) fresh[--built].~T();
      if (extra) fresh[m_size].~T();
      ::operator delete(fresh);
      throw;
    }
    const std::size_t size = m_size + (extra ? 1 : 0);
    clear();
    ::operator delete(m_data);
    m_data = fresh;
    m_size = size;
    m_capacity = capacity;
  }

  T* m_data = nullptr;
  std::size_t m_size = 0;
  std::size_t m_capacity = 0;
};

#endif
