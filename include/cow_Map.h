// cow_Map: a copy-on-write map from string keys to values, as a digital search tree.
//
// A counted handle to the root node and the number of entries. A node holds its key, its value
// and counted handles to its "0" and "1" children. The branch at depth d is taken on the lowest
// bit of a key character chosen alternately from the front and the back of the key (k[d/2] for
// even d, k[len-1-d/2] for odd d), which spreads keys that share a prefix; past the key's length
// the search goes to the "0" child. Copies share the tree (O(1)); a write copies the nodes on its
// path only. Iteration is in the tree's pre-order, neither key order nor insertion order.
//
// K is a string type with CStr() and Length() (odb_String, cow_String); V is any copyable value.
// A map and its copies belong to one thread at a time.
#ifndef COW_MAP_H
#define COW_MAP_H

#include "cow_Assert.h"
#include "cow_COW.h"
#include "odb_Export.h"
#include "uti_Array.h"

template <class K, class V>
struct QTVODB_EXPORT cow_MapNode {
  cow_MapNode(const K& k, const V& v) : key(k), value(v) {}
  bool HasValue() const { return true; }

  K key;
  V value;
  cow_COW<cow_MapNode> child[2];
};

template <class K, class V>
class QTVODB_EXPORT cow_Map {
 public:
  using Node = cow_MapNode<K, V>;

  int Size() const { return m_size; }

  // The value of `key`; an absent key reports "x.HasValue()" and yields a default value.
  const V& Get(const K& key) const {
    const Node* x = Lookup(key);
    if (!cow_Check(x != nullptr, "x.HasValue()", "include/cow_Map", 176)) return Default();
    return x->value;
  }
  // The value of `key` for writing (unshares its path), or null after reporting "x->HasValue()".
  V* GetPointer(const K& key) {
    Node* x = Walk(key);
    cow_Check(x != nullptr, "x->HasValue()", "include/cow_Map", 176);
    return x ? &x->value : nullptr;
  }
  bool IsMember(const K& key) const { return Lookup(key) != nullptr; }

  // Adds key with value, or replaces the value of a present key; true when an entry was added.
  bool Insert(const K& key, const V& value) {
    if (!m_root.HasObject()) {
      m_root.Reset(new Node(key, value));
      m_size = 1;
      return true;
    }
    Node* node = m_root.Get();
    for (int d = 0;; ++d) {
      if (Same(node->key, key)) {
        node->value = value;
        return false;
      }
      cow_COW<Node>& next = node->child[Branch(key, d)];
      if (!next.HasObject()) {
        next.Reset(new Node(key, value));
        ++m_size;
        return true;
      }
      node = next.Get();
    }
  }

  // Removes key; true when it was present. The emptied place takes a leaf of its own subtree,
  // whose key agrees with every branch above it, so the tree stays searchable.
  bool Remove(const K& key) {
    cow_COW<Node>* slot = &m_root;
    for (int d = 0; slot->HasObject(); ++d) {
      Node* node = slot->Get();
      if (Same(node->key, key)) {
        cow_COW<Node>* leaf = slot;
        while (true) {
          Node* n = leaf->Get();
          if (n->child[0].HasObject())
            leaf = &n->child[0];
          else if (n->child[1].HasObject())
            leaf = &n->child[1];
          else
            break;
        }
        if (leaf != slot) {
          node->key = (*leaf)->key;
          node->value = (*leaf)->value;
        }
        *leaf = cow_COW<Node>();
        --m_size;
        return true;
      }
      slot = &node->child[Branch(key, d)];
    }
    return false;
  }

  const cow_COW<Node>& Root() const { return m_root; }

 private:
  static const V& Default() {
    static const V value{};
    return value;
  }
  static bool Same(const K& a, const K& b) {
    if (a.Length() != b.Length()) return false;
    const char* x = a.CStr();
    const char* y = b.CStr();
    for (auto n = a.Length(); n > 0; --n)
      if (*x++ != *y++) return false;
    return true;
  }
  static int Branch(const K& key, int d) {
    int length = static_cast<int>(key.Length());
    if (d > length) return 0;
    int half = d / 2;
    if (half >= length) return 0;
    unsigned char c = static_cast<unsigned char>(key.CStr()[d % 2 == 0 ? half : length - 1 - half]);
    return c & 1;
  }
  const Node* Lookup(const K& key) const {
    const Node* node = m_root.ConstGet();
    for (int d = 0; node; ++d) {
      if (Same(node->key, key)) return node;
      node = node->child[Branch(key, d)].ConstGet();
    }
    return nullptr;
  }
  Node* Walk(const K& key) {
    if (!m_root.HasObject()) return nullptr;
    Node* node = m_root.Get();
    for (int d = 0;; ++d) {
      if (Same(node->key, key)) return node;
      cow_COW<Node>& next = node->child[Branch(key, d)];
      if (!next.HasObject()) return nullptr;
      node = next.Get();
    }
  }

  cow_COW<Node> m_root;
  int m_size = 0;
};

// Walks a map in the tree's pre-order over a shared copy of the map. First() must come first.
template <class K, class V>
class QTVODB_EXPORT cow_MapIter {
 public:
  using Node = cow_MapNode<K, V>;

  explicit cow_MapIter(const cow_Map<K, V>& map) : m_map(map) {}

  void First() {
    m_nodes.clear();
    Collect(m_map.Root().ConstGet());
    cow_Check(static_cast<int>(m_nodes.size()) == m_map.Size(), "count == map.Size()",
              "include/cow_Map", 242);
    m_nodes.push_back(nullptr);
    m_cursor = 0;
  }
  void Next() {
    if (Started() && m_nodes[m_cursor]) ++m_cursor;
  }
  bool IsDone() const { return !Started() || !m_nodes[m_cursor]; }
  const K& CurrentKey() const {
    return Started() && m_nodes[m_cursor] ? m_nodes[m_cursor]->key : DefaultKey();
  }
  const V& CurrentValue() const {
    static const V empty{};
    return Started() && m_nodes[m_cursor] ? m_nodes[m_cursor]->value : empty;
  }

 private:
  bool Started() const {
    return cow_Check(!m_nodes.empty(), "nodes && \"Need to call First() on iterator.\"",
                     "include/cow_Map", 300);
  }
  static const K& DefaultKey() {
    static const K empty{};
    return empty;
  }
  void Collect(const Node* node) {
    if (!node) return;
    m_nodes.push_back(node);
    Collect(node->child[0].ConstGet());
    Collect(node->child[1].ConstGet());
  }

  cow_Map<K, V> m_map;
  uti_Array<const Node*> m_nodes;
  int m_cursor = 0;
};

#endif
