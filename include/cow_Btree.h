// cow_Btree<K, V>: a copy-on-write, height-balanced binary search tree, ordered by key.
//
// The map is a counted handle to its root node (empty for an empty map) and the number of
// entries. A node holds, in order: its value, its key, handles to its left subtree (keys that sort
// before) and right subtree (keys that sort after), and its height (0 for a node without
// children). Copying a node shares both subtrees, so copying a map is O(1) and a write copies
// only the nodes on the path from the root to the node it changes.
//
// String keys (odb_String, cow_String) compare as NUL-terminated byte strings, unsigned byte by
// byte, so names sort case-sensitively with upper case first and a prefix before its extensions.
//
// Balance is deliberately simple: a missing child weighs the same as a leaf, and a difference of
// two or more between the children's heights is fixed by one single rotation (never a double
// one). Lookup, insertion and removal are logarithmic. A map and its copies belong to one thread
// at a time.
#ifndef COW_BTREE_H
#define COW_BTREE_H

#include <cstring>

#include "cow_COW.h"
#include "odb_String.h"

inline int cow_BtreeCompare(const odb_String& a, const odb_String& b) {
  return std::strcmp(a.CStr(), b.CStr());
}
inline int cow_BtreeCompare(const cow_String& a, const cow_String& b) {
  return std::strcmp(a.CStr(), b.CStr());
}
template <class K>
int cow_BtreeCompare(const K& a, const K& b) {
  return a < b ? -1 : (b < a ? 1 : 0);
}

template <class K, class V>
struct cow_BtreeNode {
  using Handle = cow_COW<cow_BtreeNode>;

  cow_BtreeNode(const V& v, const K& k) : value(v), key(k) {}

  static int HeightOf(const Handle& h) { return h.HasObject() ? h->height : 0; }
  void UpdateHeight() {
    if (!left.HasObject() && !right.HasObject()) {
      height = 0;
    } else {
      int l = HeightOf(left), r = HeightOf(right);
      height = 1 + (l > r ? l : r);
    }
  }

  // Inserts below the node held by `slot` (made private); true when a node was added.
  static bool Insert(Handle& slot, const K& k, const V& v) {
    cow_BtreeNode* node = slot.Get();
    int c = cow_BtreeCompare(k, node->key);
    if (c == 0) return false;
    Handle& child = c < 0 ? node->left : node->right;
    if (!child.HasObject()) {
      child.Reset(new cow_BtreeNode(v, k));
      node->UpdateHeight();
      return true;
    }
    if (!Insert(child, k, v)) return false;
    Balance(child);
    node->UpdateHeight();
    return true;
  }

  // Removes k from the subtree held by `slot`; the caller has checked that k is present.
  static void Remove(Handle& slot, const K& k) {
    cow_BtreeNode* node = slot.Get();
    int c = cow_BtreeCompare(k, node->key);
    if (c != 0) {
      Handle& child = c < 0 ? node->left : node->right;
      Remove(child, k);
      RemoveNode(node, child);
      return;
    }
    if (!node->left.HasObject() || !node->right.HasObject()) {
      Handle rest;
      rest.Swap(node->left.HasObject() ? node->left : node->right);
      slot.Swap(rest);
      return;
    }
    // Two children: the successor (the smallest key on the right) takes the node's place.
    TakeSmallest(node->right, node->key, node->value);
    RemoveNode(node, node->right);
  }

  // After a removal below `child`: rebalance that position and recompute the parent's height.
  static void RemoveNode(cow_BtreeNode* parent, Handle& child) {
    if (child.HasObject()) Balance(child);
    parent->UpdateHeight();
  }

  // Single rotation when the children's heights differ by two or more; true when it rotated.
  static bool Balance(Handle& slot) {
    cow_BtreeNode* node = slot.Get();
    int diff = HeightOf(node->right) - HeightOf(node->left);
    if (diff >= 2) {
      Rotate(slot, &cow_BtreeNode::right, &cow_BtreeNode::left);
    } else if (diff <= -2) {
      Rotate(slot, &cow_BtreeNode::left, &cow_BtreeNode::right);
    } else {
      return false;
    }
    return true;
  }

  static const cow_BtreeNode* Find(const Handle& root, const K& k) {
    const cow_BtreeNode* node = root.ConstGet();
    while (node) {
      int c = cow_BtreeCompare(k, node->key);
      if (c == 0) return node;
      node = (c < 0 ? node->left : node->right).ConstGet();
    }
    return nullptr;
  }

  V value;
  K key;
  Handle left;
  Handle right;
  int height = 0;

 private:
  // The `up` child becomes the subtree's root; its `down` subtree moves under the old root.
  static void Rotate(Handle& slot, Handle cow_BtreeNode::*up, Handle cow_BtreeNode::*down) {
    cow_BtreeNode* node = slot.Get();
    Handle top;
    top.Swap(node->*up);
    cow_BtreeNode* promoted = top.Get();
    (node->*up).Swap(promoted->*down);
    node->UpdateHeight();
    (promoted->*down).Swap(slot);
    promoted->UpdateHeight();
    slot.Swap(top);
  }

  static void TakeSmallest(Handle& slot, K& k, V& v) {
    cow_BtreeNode* node = slot.Get();
    if (node->left.HasObject()) {
      TakeSmallest(node->left, k, v);
      RemoveNode(node, node->left);
      return;
    }
    k = node->key;
    v = node->value;
    Handle rest;
    rest.Swap(node->right);
    slot.Swap(rest);
  }
};

template <class K, class V>
class cow_Btree {
 public:
  using Node = cow_BtreeNode<K, V>;

  cow_Btree() = default;
  cow_Btree(const cow_Btree&) = default;
  cow_Btree& operator=(const cow_Btree&) = default;
  ~cow_Btree() = default;
  // A new map sharing this one's root.
  cow_Btree Copy() const { return *this; }

  int Size() const { return m_size; }

  // True when a node was added; false, changing nothing, when the key is present.
  bool Insert(const K& key, const V& value) {
    if (!m_root.HasObject()) {
      m_root.Reset(new Node(value, key));
      m_size = 1;
      return true;
    }
    if (!Node::Insert(m_root, key, value)) return false;
    ++m_size;
    Node::Balance(m_root);
    return true;
  }

  // True when a node was removed.
  bool Remove(const K& key) {
    if (!Node::Find(m_root, key)) return false;
    Node::Remove(m_root, key);
    if (m_root.HasObject()) Node::Balance(m_root);
    --m_size;
    return true;
  }

  // The node for writing (its path made private), or null when the key is absent.
  Node* Find(const K& key) {
    if (!Node::Find(m_root, key)) return nullptr;
    typename Node::Handle* slot = &m_root;
    while (true) {
      Node* node = slot->Get();
      int c = cow_BtreeCompare(key, node->key);
      if (c == 0) return node;
      slot = c < 0 ? &node->left : &node->right;
    }
  }
  const Node* ConstFind(const K& key) const { return Node::Find(m_root, key); }

  const typename Node::Handle& Root() const { return m_root; }

 private:
  typename Node::Handle m_root;
  int m_size = 0;
};

// Walks a map in ascending (First/Next) or descending (Last/Previous) key order. Holds a shared
// copy of the map, so later writes to the map it came from do not disturb the walk. The path
// from the root to the current node is kept as a stack of small heap cells.
template <class K, class V>
class cow_BtreeIterator {
 public:
  using Node = cow_BtreeNode<K, V>;

  explicit cow_BtreeIterator(const cow_Btree<K, V>& map) : m_map(map) {}
  cow_BtreeIterator(const cow_BtreeIterator&) = delete;
  cow_BtreeIterator& operator=(const cow_BtreeIterator&) = delete;
  ~cow_BtreeIterator() { Clear(); }

  void First() {
    Clear();
    PushDown(m_map.Root().ConstGet(), &Node::left);
  }
  void Last() {
    Clear();
    PushDown(m_map.Root().ConstGet(), &Node::right);
  }
  void Next() { Step(&Node::right, &Node::left); }
  void Previous() { Step(&Node::left, &Node::right); }

  bool IsDone() const { return m_top == nullptr; }
  // The current node; null once the walk is done.
  const Node* Current() const { return m_top ? m_top->node : nullptr; }

 private:
  struct Cell {
    const Node* node;
    Cell* next;
  };
  using Side = typename Node::Handle Node::*;

  void Push(const Node* node) { m_top = new Cell{node, m_top}; }
  const Node* Pop() {
    Cell* cell = m_top;
    const Node* node = cell->node;
    m_top = cell->next;
    delete cell;
    return node;
  }
  void Clear() {
    while (m_top) Pop();
  }
  void PushDown(const Node* node, Side toward) {
    for (; node; node = (node->*toward).ConstGet()) Push(node);
  }
  // Moves to the neighbour on side `away`: down that subtree if there is one, else up to the
  // first ancestor reached from its `toward` side.
  void Step(Side away, Side toward) {
    if (!m_top) return;
    const Node* current = m_top->node;
    if ((current->*away).HasObject()) {
      PushDown((current->*away).ConstGet(), toward);
      return;
    }
    const Node* popped = Pop();
    while (m_top && (m_top->node->*away).ConstGet() == popped) popped = Pop();
  }

  cow_Btree<K, V> m_map;
  Cell* m_top = nullptr;
};

#endif
