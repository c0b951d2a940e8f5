// cow_CountedHld: a reference-counted holder of one heap object.
//
// Two pointers: the shared count (a separately allocated int starting at 1) and the held object,
// which the holders own jointly; the last holder to let go destroys it. Counts are plain ints:
// a holder and every copy of it belong to one thread at a time. A default holder holds nothing
// (both pointers null) and allocates nothing.
#ifndef COW_COUNTEDHLD_H
#define COW_COUNTEDHLD_H

#include "cow_Assert.h"
#include "odb_Export.h"

template <class T>
class QTVODB_EXPORT cow_CountedHld {
 public:
  cow_CountedHld() = default;
  // Takes ownership of `object` under a fresh count of 1.
  explicit cow_CountedHld(T* object) : m_count(new int(1)), m_object(object) {}
  cow_CountedHld(const cow_CountedHld& other) : m_count(other.m_count), m_object(other.m_object) {
    AddReference();
  }
  ~cow_CountedHld() { DropReference(); }

  cow_CountedHld& operator=(const cow_CountedHld& other) {
    if (this == &other || m_count == other.m_count) return *this;
    if (other.m_count) ++*other.m_count;
    DropReference();
    m_count = other.m_count;
    m_object = other.m_object;
    return *this;
  }

  // Drops the old reference and takes `object` under a fresh count of 1.
  cow_CountedHld& operator=(T* object) {
    DropReference();
    m_count = new int(1);
    m_object = object;
    return *this;
  }

  // The number of holders sharing the object (0 for an empty holder).
  int References() const { return m_count ? *m_count : 0; }
  void AddReference() {
    if (m_count) ++*m_count;
  }
  // Lowers the count; at 0 or below the object and the count are freed.
  void DropReference() {
    if (!m_count) return;
    if (--*m_count <= 0) Delete();
    m_count = nullptr;
    m_object = nullptr;
  }
  // Destroys the object and the count and empties this holder.
  void Delete() {
    cow_Check(References() >= 0, "count->References() >= 0", "include/cow_CountedHld", 18);
    delete m_object;
    delete m_count;
    m_object = nullptr;
    m_count = nullptr;
  }

  // Exchanges what two holders hold; no count changes.
  void Swap(cow_CountedHld& other) {
    int* count = m_count;
    T* object = m_object;
    m_count = other.m_count;
    m_object = other.m_object;
    other.m_count = count;
    other.m_object = object;
  }

  T* Object() const { return m_object; }
  bool HasObject() const { return m_object != nullptr; }

 private:
  int* m_count = nullptr;
  T* m_object = nullptr;
};

#endif
