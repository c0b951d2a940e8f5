// odb_ArrayView, odb_MutableArrayView: views of a caller's array, as a pointer and a number of
// values: read-only for the calls that take bulk data (odb_FieldOutput::addData,
// odb_DiscretePart::addNodes and addElements), writable for the calls that read into the
// caller's memory (odb_FieldBulkData::readData, odb_DiscreteEntity::readNodes ...).
//
// The view owns nothing: the array must outlive the call the view is given to, and nothing
// more; a view kept after the call may dangle. A contiguous container (std::vector, std::array:
// anything with data() and size()) converts to a view implicitly, so it can be passed wherever
// a view is asked for; a view of a vector is stale once the vector grows. A C array converts too,
// with its own length. A null pointer makes an empty view, whatever the count. Copying a view
// copies two words; it never touches the values. Calls that take views check their counts against
// size() before they read anything. Views are values: any number of threads may read through views
// of the same unchanging array.
#ifndef ODB_ARRAYVIEW_H
#define ODB_ARRAYVIEW_H

#include <cstddef>

#include "odb_Export.h"

template <class T>
class QTVODB_EXPORT odb_ArrayView {
 public:
  // An empty view.
  constexpr odb_ArrayView() = default;
  // The `size` values at `data`; empty when `data` is null.
  constexpr odb_ArrayView(const T* data, std::size_t size)
      : m_data(data), m_size(data ? size : 0) {}
  // The values a contiguous container holds now.
  template <class C,
            class = decltype(static_cast<const T*>(static_cast<const C*>(nullptr)->data())),
            class = decltype(std::size_t(static_cast<const C*>(nullptr)->size()))>
  odb_ArrayView(const C& values) : m_data(values.data()), m_size(values.size()) {}
  // All N values of a C array.
  template <std::size_t N>
  constexpr odb_ArrayView(const T (&values)[N]) : m_data(values), m_size(N) {}

  constexpr const T* data() const { return m_data; }
  // The number of values (not bytes).
  constexpr std::size_t size() const { return m_size; }
  constexpr bool empty() const { return m_size == 0; }
  // Value i, 0-based; i < size() is the caller's to ensure.
  constexpr const T& operator[](std::size_t i) const { return m_data[i]; }
  constexpr const T* begin() const { return m_data; }
  constexpr const T* end() const { return m_data + m_size; }

 private:
  const T* m_data = nullptr;
  std::size_t m_size = 0;
};

// A writable view: the calls that take one write into the caller's array, after checking that
// it holds exactly the values they have to give. Owns nothing, like odb_ArrayView; a
// contiguous container converts to it implicitly (its size is what the call checks: size the
// vector first).
template <class T>
class QTVODB_EXPORT odb_MutableArrayView {
 public:
  constexpr odb_MutableArrayView() = default;
  // The `size` values at `data`; empty when `data` is null.
  constexpr odb_MutableArrayView(T* data, std::size_t size)
      : m_data(data), m_size(data ? size : 0) {}
  template <class C, class = decltype(static_cast<T*>(static_cast<C*>(nullptr)->data())),
            class = decltype(std::size_t(static_cast<C*>(nullptr)->size()))>
  odb_MutableArrayView(C& values) : m_data(values.data()), m_size(values.size()) {}
  template <std::size_t N>
  constexpr odb_MutableArrayView(T (&values)[N]) : m_data(values), m_size(N) {}

  constexpr T* data() const { return m_data; }
  constexpr std::size_t size() const { return m_size; }
  constexpr bool empty() const { return m_size == 0; }
  constexpr T& operator[](std::size_t i) const { return m_data[i]; }
  constexpr T* begin() const { return m_data; }
  constexpr T* end() const { return m_data + m_size; }

 private:
  T* m_data = nullptr;
  std::size_t m_size = 0;
};

#endif
