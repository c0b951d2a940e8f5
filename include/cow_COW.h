// cow_COW, cow_ArrayCOW and the copy policies cow_Direct and cow_Virtual.
//
// cow_COW<T, Policy> is a copy-on-write handle: copies share one object; ConstGet reads the
// shared object and Get first gives this handle a private copy (made by Policy::Copy) when others
// still share it. Copying a handle costs one increment.
//
// cow_ArrayCOW is the same handle in the form stored in lists and repositories: a default one
// holds no object under a count of its own, and assigning one element to another is handle
// assignment (share the source, release the target).
//
// cow_Direct<T> copies with T's copy constructor; cow_Virtual<T> copies polymorphic objects
// through their `virtual T* Copy() const`, so that a copy keeps the dynamic type.
#ifndef COW_COW_H
#define COW_COW_H

#include "cow_CountedHld.h"
#include "odb_Export.h"

template <class T>
struct QTVODB_EXPORT cow_Direct {
  static T* Copy(const T& object) { return new T(object); }
};

template <class T>
struct QTVODB_EXPORT cow_Virtual {
  static T* Copy(const T& object) { return object.Copy(); }
};

template <class T, class Policy = cow_Direct<T>>
class QTVODB_EXPORT cow_COW {
 public:
  // An empty handle: no object and no count.
  cow_COW() = default;
  // Holds a copy of `object` under a fresh count of 1.
  explicit cow_COW(const T& object) : m_hld(Policy::Copy(object)) {}
  // Takes ownership of `object` (no copy).
  explicit cow_COW(T* object) : m_hld(object) {}

  // Read access to the shared object (null for an empty handle).
  const T* ConstGet() const { return m_hld.Object(); }
  const T* operator->() const { return m_hld.Object(); }
  const T& operator*() const { return *m_hld.Object(); }

  // Write access: unshares first, so the object returned is this handle's alone.
  T* Get() {
    if (m_hld.Object() && m_hld.References() != 1) m_hld = Policy::Copy(*m_hld.Object());
    return m_hld.Object();
  }

  int References() const { return m_hld.References(); }
  bool HasObject() const { return m_hld.HasObject(); }
  // Replaces the object by `object` (owned, fresh count), releasing the old share.
  void Reset(T* object) { m_hld = object; }
  // Exchanges what two handles hold; no count changes.
  void Swap(cow_COW& other) { m_hld.Swap(other.m_hld); }
  // True when both handles share one object.
  bool Shares(const cow_COW& other) const { return m_hld.Object() == other.m_hld.Object(); }

 private:
  cow_CountedHld<T> m_hld;
};

template <class T, class Policy = cow_Direct<T>>
class QTVODB_EXPORT cow_ArrayCOW : public cow_COW<T, Policy> {
 public:
  // The null handle: no object under a fresh count of 1; the default value of list slots.
  cow_ArrayCOW() : cow_COW<T, Policy>(static_cast<T*>(nullptr)) {}
  explicit cow_ArrayCOW(const T& object) : cow_COW<T, Policy>(object) {}
  explicit cow_ArrayCOW(T* object) : cow_COW<T, Policy>(object) {}
};

#endif
