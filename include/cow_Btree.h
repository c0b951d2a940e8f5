// cow_Btree<K, V>: a copy-on-write, height-balanced binary search tree, ordered by key.
//
// The map is a counted link to its root node (empty for an empty map) and the number of entries.
// A node holds, in order: its value, its key, links to its left subtree (keys that sort before)
// and right subtree (keys that sort after), its height (0 for a node without children) and its
// count of links. Copying a node shares both subtrees, so copying a map is O(1) and a write
// copies only the nodes on the path from the root to the node it changes.
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

#include "odb_Export.h"
#include "odb_String.h"

// Byte order of two texts, as strcmp gives it.
inline int cow_BtreeCompare(const char* a, const char* b) {
  while (*a && *a == *b) {
    ++a;
    ++b;
  }
  return static_cast<unsigned char>(*a) - static_cast<unsigned char>(*b);
}
inline int cow_BtreeCompare(const odb_String& a, const odb_String& b) {
  return cow_BtreeCompare(a.CStr(), b.CStr());
}
inline int cow_BtreeCompare(const cow_String& a, const cow_String& b) {
  return cow_BtreeCompare(a.CStr(), b.CStr());
}
// The key a new node keeps. String keys get characters of their own, allocated right after the
// node, so that a search reads each node's key from memory next to the node instead of
// wherever the caller's string lives; that halves the cache misses per level of a large tree.
inline odb_String cow_BtreeNodeKey(const odb_String& key) {
  return odb_String(key.CStr(), key.Length());
}
inline cow_String cow_BtreeNodeKey(const cow_String& key) {
  return cow_String(key.CStr(), key.Length());
}
template <class K>
const K& cow_BtreeNodeKey(const K& key) {
  return key;
}

template <class K>
int cow_BtreeCompare(const K& a, const K& b) {
  return a < b ? -1 : (b < a ? 1 : 0);
}

template <class K, class V>
struct cow_BtreeNode;

// A counted, copy-on-write link to a node. The count lives in the node, so checking whether a
// write must copy touches no other memory, and the link caches the height of the node it points
// to, so balancing a parent reads both children's heights without visiting the children.
template <class K, class V>
class QTVODB_EXPORT cow_BtreeLink {
 public:
  using Node = cow_BtreeNode<K, V>;

  cow_BtreeLink() = default;
  cow_BtreeLink(const cow_BtreeLink& other) : m_node(other.m_node), m_height(other.m_height) {
    if (m_node) ++m_node->references;
  }
  cow_BtreeLink& operator=(const cow_BtreeLink& other) {
    cow_BtreeLink copy(other);
    Swap(copy);
    return *this;
  }
  ~cow_BtreeLink() { Release(); }

  bool HasObject() const { return m_node != nullptr; }
  const Node* ConstGet() const { return m_node; }
  const Node* operator->() const { return m_node; }
  int References() const { return m_node ? m_node->references : 0; }
  // The node for writing: a node that other links share is copied first.
  Node* Get() {
    if (m_node && m_node->references != 1) {
      Node* copy = new Node(*m_node);
      Release();
      m_node = copy;
    }
    return m_node;
  }
  // Takes ownership of a new node.
  void Reset(Node* node) {
    Release();
    m_node = node;
    m_height = node ? node->height : 0;
  }
  void Swap(cow_BtreeLink& other) {
    Node* node = m_node;
    int height = m_height;
    m_node = other.m_node;
    m_height = other.m_height;
    other.m_node = node;
    other.m_height = height;
  }
  // The node's height as last recorded here (a missing node counts as 0, like a leaf).
  int Height() const { return m_height; }
  void RecordHeight() { m_height = m_node ? m_node->height : 0; }

 private:
  void Release() {
    if (m_node && --m_node->references <= 0) delete m_node;
    m_node = nullptr;
  }

  Node* m_node = nullptr;
  int m_height = 0;
};

template <class K, class V>
struct QTVODB_EXPORT cow_BtreeNode {
  using Handle = cow_BtreeLink<K, V>;

  cow_BtreeNode(const V& v, const K& k) : value(v), key(cow_BtreeNodeKey(k)) {}
  // A copy shares both subtrees and starts unshared itself.
  cow_BtreeNode(const cow_BtreeNode& other)
      : value(other.value),
        key(other.key),
        left(other.left),
        right(other.right),
        height(other.height) {}
  cow_BtreeNode& operator=(const cow_BtreeNode&) = delete;

  void UpdateHeight() {
    if (!left.HasObject() && !right.HasObject()) {
      height = 0;
    } else {
      int l = left.Height(), r = right.Height();
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
      slot.RecordHeight();
      return true;
    }
    if (!Insert(child, k, v)) return false;
    Balance(child);
    node->UpdateHeight();
    slot.RecordHeight();
    return true;
  }

  // Removes k from the subtree held by `slot`; the caller has checked that k is present. The
  // removed node, linked to nothing, ends in `removed`.
  static void Remove(Handle& slot, const K& k, Handle& removed) {
    cow_BtreeNode* node = slot.Get();
    int c = cow_BtreeCompare(k, node->key);
    if (c != 0) {
      Handle& child = c < 0 ? node->left : node->right;
      Remove(child, k, removed);
      RemoveNode(slot, child);
      return;
    }
    if (!node->left.HasObject() || !node->right.HasObject()) {
      Handle rest;
      rest.Swap(node->left.HasObject() ? node->left : node->right);
      slot.Swap(rest);
      removed.Swap(rest);
      return;
    }
    // Two children: the successor node (the smallest key on the right) is relinked into the
    // node's place. Nodes are moved, never their values, so a reference to any other entry's
    // value stays valid across the removal.
    Handle successor;
    DetachSmallest(node->right, successor);
    if (node->right.HasObject()) Balance(node->right);
    cow_BtreeNode* promoted = successor.Get();
    promoted->left.Swap(node->left);
    promoted->right.Swap(node->right);
    promoted->UpdateHeight();
    successor.RecordHeight();
    slot.Swap(successor);
    removed.Swap(successor);
  }

  // After a removal below `child`: rebalance that position and recompute the parent's height.
  static void RemoveNode(Handle& parent, Handle& child) {
    if (child.HasObject()) Balance(child);
    parent.Get()->UpdateHeight();
    parent.RecordHeight();
  }

  // Single rotation when the children's heights differ by two or more; true when it rotated.
  static bool Balance(Handle& slot) {
    const cow_BtreeNode* node = slot.ConstGet();
    int diff = node->right.Height() - node->left.Height();
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
  int references = 1;

 private:
  // The `up` child becomes the subtree's root; its `down` subtree moves under the old root.
  static void Rotate(Handle& slot, Handle cow_BtreeNode::*up, Handle cow_BtreeNode::*down) {
    cow_BtreeNode* node = slot.Get();
    Handle top;
    top.Swap(node->*up);
    cow_BtreeNode* promoted = top.Get();
    (node->*up).Swap(promoted->*down);
    node->UpdateHeight();
    slot.RecordHeight();
    (promoted->*down).Swap(slot);
    promoted->UpdateHeight();
    top.RecordHeight();
    slot.Swap(top);
  }

  // Moves the node with the smallest key below `slot` into `out`; its right subtree takes its
  // place.
  static void DetachSmallest(Handle& slot, Handle& out) {
    cow_BtreeNode* node = slot.Get();
    if (node->left.HasObject()) {
      DetachSmallest(node->left, out);
      RemoveNode(slot, node->left);
      return;
    }
    out.Swap(slot);
    slot.Swap(out.Get()->right);
  }
};

template <class K, class V>
class QTVODB_EXPORT cow_Btree {
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
    typename Node::Handle removed;
    return Remove(key, removed);
  }
  // As above, handing the removed node to `removed` instead of freeing it, so that references
  // to its value stay valid as long as the caller keeps the link.
  bool Remove(const K& key, typename Node::Handle& removed) {
    if (!Node::Find(m_root, key)) return false;
    Node::Remove(m_root, key, removed);
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
class QTVODB_EXPORT cow_BtreeIterator {
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
