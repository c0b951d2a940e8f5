// odb_Repository<odb_String, T>: a named collection of the public interface, and its iterator.
//
// A cow_Btree from name to object: lookups, insertions and removals are logarithmic, iteration
// is in ascending byte order of the names (not in the order of insertion), and copying a
// repository is O(1) (a later write copies one root-to-node path). Every lookup checks the name
// first and refuses an absent one with an odb_Exception. The objects are values (usually handles
// that share their data); a repository and its copies belong to one thread at a time.
#ifndef ODB_REPOSITORY_H
#define ODB_REPOSITORY_H

#include "cow_Btree.h"
#include "odb_Exception.h"
#include "odb_Export.h"
#include "odb_String.h"

template <class K, class T>
class QTVODB_EXPORT odb_Repository {
 public:
  using Map = cow_Btree<K, T>;

  int size() const { return m_map.Size(); }
  bool isMember(const K& name) const { return m_map.ConstFind(name) != nullptr; }

  // Throws odb_Exception "Key "NAME" not found in repository" when name is absent.
  void CheckKey(const K& name) const {
    if (isMember(name)) return;
    odb_String text("Key \"");
    text += name;
    text += "\" not found in repository";
    odb_ThrowMessage(text, "include/odb_Repository", 26);
  }

  // The object for writing (its path unshared); throws when name is absent.
  T& get(const K& name) {
    CheckKey(name);
    return m_map.Find(name)->value;
  }
  const T& constGet(const K& name) const {
    CheckKey(name);
    return m_map.ConstFind(name)->value;
  }
  T& operator[](const K& name) { return get(name); }
  const T& operator[](const K& name) const { return constGet(name); }

  // Adds an entry; false, changing nothing, when the name is taken. The creators of named
  // objects call this after their own checks.
  bool insert(const K& name, const T& object) { return m_map.Insert(name, object); }
  // Removes an entry; false when the name is absent.
  bool remove(const K& name) { return m_map.Remove(name); }

  const Map& map() const { return m_map; }

 private:
  Map m_map;
};

// Walks a repository in ascending name order: first(), then next() until isDone().
template <class K, class T>
class QTVODB_EXPORT odb_RepositoryIterator {
 public:
  explicit odb_RepositoryIterator(const odb_Repository<K, T>& repository) : m_it(repository.map()) {
    m_it.First();
  }
  void first() { m_it.First(); }
  void next() { m_it.Next(); }
  bool isDone() const { return m_it.IsDone(); }
  // The current name and object; a default name and object once the walk is done.
  const K& currentKey() const { return m_it.Current() ? m_it.Current()->key : Default<K>(); }
  const T& currentValue() const { return m_it.Current() ? m_it.Current()->value : Default<T>(); }

 private:
  template <class U>
  static const U& Default() {
    static const U value{};
    return value;
  }

  cow_BtreeIterator<K, T> m_it;
};

#endif
