// cow_1DArray: a block-structured, copy-on-write array, and its blocks and iterator.
//
// Elements live in blocks of 2^shift elements; a table of block pointers (from mem_Malloc)
// points at them. Sharing is two-level: copies of an array share the table (counted by the table
// count); once a write has unshared the table, the tables still share the blocks (each block
// counts its holders). A write therefore copies the table once and only the block it touches.
// Growth never moves elements: only the table of pointers grows, in steps of 16 free slots.
//
// Blocks are allocated on first access. Copying and assigning are O(1). An array and its copies
// belong to one thread at a time (counts are plain ints).
//
// Guards that keep a sanitizer-clean process: a read at a position that no block covers returns a
// default value instead of allocating outside the table, and a write at a negative position is
// reported ("pos >= 0") and lands in a scratch value. Blocks wholly past a shortened end are
// released, so that the table never holds pointers it does not count.
#ifndef COW_1DARRAY_H
#define COW_1DARRAY_H

#include <cstdint>

#include "cow_Assert.h"
#include "mem_Malloc.h"
#include "odb_Export.h"

// One block: its own count of holders and 2^shift value-initialised elements.
template <class T>
struct QTVODB_EXPORT cow_1DArrayBlock {
  explicit cow_1DArrayBlock(int n) : count(1), elements(new T[n]()) {}
  cow_1DArrayBlock(int n, const T* src) : count(1), elements(new T[n]) {
    for (int i = 0; i < n; ++i) elements[i] = src[i];
  }
  ~cow_1DArrayBlock() { delete[] elements; }
  cow_1DArrayBlock(const cow_1DArrayBlock&) = delete;
  cow_1DArrayBlock& operator=(const cow_1DArrayBlock&) = delete;

  int count;
  T* elements;
};

template <class T>
class QTVODB_EXPORT cow_1DArray {
 public:
  using Block = cow_1DArrayBlock<T>;

  cow_1DArray() : m_tableCount(new int(1)) {}

  // An array of length n whose blocks are sized so that n needs 8 to 16 of them (16-element
  // blocks below 256 elements); the table is allocated, the blocks are not.
  explicit cow_1DArray(int n)
      : m_slots(16), m_shift(4), m_end(n > 0 ? n : 0), m_tableCount(new int(1)) {
    if (n > 0) {
      // The exponent and leading mantissa bits of n as a float size the blocks and the table.
      const std::uint32_t bits = __builtin_bit_cast(std::uint32_t, static_cast<float>(n));
      int e = static_cast<int>(bits >> 23) - 130;
      if (e > 4) {
        m_shift = e;
        m_slots = 16 + static_cast<int>(((bits & 0x7FFFFFu) + 0x8FFFFFu) >> 20);
      }
    }
    m_table = static_cast<Block**>(mem_Malloc(sizeof(Block*) * m_slots));
    for (int s = 0; s < m_slots; ++s) m_table[s] = nullptr;
  }

  cow_1DArray(const cow_1DArray& other)
      : m_slots(other.m_slots),
        m_shift(other.m_shift),
        m_end(other.m_end),
        m_head(other.m_head),
        m_tableCount(other.m_tableCount),
        m_table(other.m_table) {
    ++*m_tableCount;
  }

  cow_1DArray& operator=(const cow_1DArray& other) {
    if (this == &other) return *this;
    ++*other.m_tableCount;
    Release();
    m_slots = other.m_slots;
    m_shift = other.m_shift;
    m_end = other.m_end;
    m_head = other.m_head;
    m_tableCount = other.m_tableCount;
    m_table = other.m_table;
    return *this;
  }

  ~cow_1DArray() { Release(); }

  // Number of element positions (end index minus head index).
  int Length() const { return m_end - m_head; }

  // Write access to element i; unshares what it touches; extends the array to i + 1 when i is at
  // or past the length.
  T& Get(int i) {
    if (i < Length()) {
      CopyArray();
    } else {
      Grow(i + 1);
    }
    return FullArrayGet(m_head + i);
  }

  // Read access to element i; allocates a missing block inside the used range, copies nothing.
  const T& PartialArrayConstGet(int i) const {
    int pos = m_head + i;
    if (pos < 0 || pos >= m_end) return Default();
    Block*& block = m_table[pos >> m_shift];
    if (!block) block = new Block(1 << m_shift);
    return block->elements[pos & ((1 << m_shift) - 1)];
  }

  // Read access with no allocation: a bare address computation plus a guard against blocks that
  // were never written.
  const T& operator[](int i) const {
    int pos = m_head + i;
    int b = pos >> m_shift;
    if (pos < 0 || b >= m_slots || !m_table[b]) return Default();
    return m_table[b]->elements[pos & ((1 << m_shift) - 1)];
  }

  // Sets the length to n (shorter or longer); n of 0 releases everything. Returns true.
  bool Grow(int n) {
    CopyArray();
    if (n <= 0) {
      ReleaseBlocks(BlockOf(m_head), BlocksUsed());
      m_shift = m_end = m_head = 0;
      m_slots = 0;
      m_table = static_cast<Block**>(mem_Realloc(m_table, 0));
      return true;
    }
    if (m_end == 0) m_shift = 4;
    int oldUsed = BlocksUsed();
    m_end = m_head + n;
    int needed = BlocksUsed();
    if (needed > m_slots) GrowTable(needed + 16);
    if (needed < oldUsed) ReleaseBlocks(needed, oldUsed);
    return true;
  }

  // Writes src[0..n-1] to positions 0..n-1, one unsharing access per block.
  void SetFromArray(const T* src, int n) {
    int i = 0;
    while (i < n) {
      T* first = &Get(i);
      int pos = m_head + i;
      int room = (1 << m_shift) - (pos & ((1 << m_shift) - 1));
      int run = room < n - i ? room : n - i;
      for (int k = 0; k < run; ++k) first[k] = src[i + k];
      i += run;
    }
  }

  // Makes room for one element before the first and returns it for writing.
  T& GetHead() {
    if (m_head > 0) {
      --m_head;
      CopyArray();
      return FullArrayGet(m_head);
    }
    if (m_end == 0) m_shift = 4;
    int used = BlocksUsed();
    CopyArray();
    // A full table gets 16 more slots: the free room is what goes in front.
    if (used == m_slots) GrowTable(used + 16);
    ++m_end;
    int free = m_slots - used;
    for (int b = used - 1; b >= 0; --b) m_table[b + free] = m_table[b];
    for (int b = 0; b < (free < used ? free : used); ++b) m_table[b] = nullptr;
    m_head = free * (1 << m_shift) - 1;
    m_end += free * (1 << m_shift) - 1;
    return FullArrayGet(m_head);
  }

  // Drops the first element; a block left behind loses this array's reference.
  void RemoveHead() {
    CopyArray();
    int before = BlockOf(m_head);
    ++m_head;
    if (BlockOf(m_head) != before && m_table[before]) {
      if (--m_table[before]->count <= 0) delete m_table[before];
      m_table[before] = nullptr;
    }
  }

  // Introspection, for diagnostics and tests.
  int SlotCapacity() const { return m_slots; }
  int BlockShift() const { return m_shift; }
  int HeadIndex() const { return m_head; }
  int EndIndex() const { return m_end; }
  int TableReferences() const { return *m_tableCount; }
  const Block* BlockAt(int slot) const {
    return slot >= 0 && slot < m_slots ? m_table[slot] : nullptr;
  }
  // Asks the processor to start fetching the table entry of `slot`, for callers that walk many
  // arrays and would otherwise wait for each table in turn.
  void PrefetchSlot(int slot) const {
    if (slot >= 0 && slot < m_slots) __builtin_prefetch(m_table + slot);
  }

 private:
  static const T& Default() {
    static const T value{};
    return value;
  }
  static T& Scratch() {
    static thread_local T value;
    value = T();
    return value;
  }

  int BlockOf(int pos) const { return pos >> m_shift; }
  int BlocksUsed() const { return (m_end + (1 << m_shift) - 1) >> m_shift; }

  T& FullArrayGet(int pos) {
    if (!cow_Check(pos >= 0, "pos >= 0", "include/cow_1DArray", 120)) return Scratch();
    int b = pos >> m_shift;
    int size = 1 << m_shift;
    Block*& block = m_table[b];
    if (!block) {
      block = new Block(size);
    } else if (block->count >= 2) {
      --block->count;
      block = new Block(size, block->elements);
    }
    return block->elements[pos - (b << m_shift)];
  }

  void CopyArray() {
    if (*m_tableCount == 1) return;
    --*m_tableCount;
    m_tableCount = new int(1);
    Block** table = static_cast<Block**>(mem_Malloc(sizeof(Block*) * (m_slots > 0 ? m_slots : 1)));
    for (int s = 0; s < m_slots; ++s) table[s] = m_table[s];
    m_table = table;
    for (int b = BlockOf(m_head), e = BlocksUsed(); b < e; ++b)
      if (m_table[b]) ++m_table[b]->count;
  }

  void GrowTable(int slots) {
    m_table = static_cast<Block**>(mem_Realloc(m_table, sizeof(Block*) * slots));
    for (int s = m_slots; s < slots; ++s) m_table[s] = nullptr;
    m_slots = slots;
  }

  void ReleaseBlocks(int from, int to) {
    for (int b = from; b < to && b < m_slots; ++b) {
      Block* block = m_table[b];
      if (block && --block->count <= 0) delete block;
      m_table[b] = nullptr;
    }
  }

  void Release() {
    if (--*m_tableCount > 0) return;
    ReleaseBlocks(BlockOf(m_head), BlocksUsed());
    mem_Free(m_table);
    delete m_tableCount;
  }

  int m_slots = 0;
  int m_shift = 0;
  int m_end = 0;
  int m_head = 0;
  int* m_tableCount;
  Block** m_table = nullptr;
};

// Walks an array from its head; holds a shared copy, so the walk is unaffected by later writes
// to the array it came from.
template <class T>
class QTVODB_EXPORT cow_1DArrayIter {
 public:
  explicit cow_1DArrayIter(const cow_1DArray<T>& array)
      : m_array(array), m_end(array.EndIndex()), m_blockSize(1 << array.BlockShift()) {
    if (array.Length() > 0 && !array.BlockAt(array.HeadIndex() >> array.BlockShift())) m_end = 0;
  }

  void First() {
    m_pos = m_array.HeadIndex();
    m_offset = m_pos & (m_blockSize - 1);
    m_elements = ElementsOfBlock(m_pos);
  }
  void Next() {
    ++m_pos;
    if (++m_offset == m_blockSize) {
      m_offset = 0;
      m_elements = ElementsOfBlock(m_pos);
    }
  }
  bool IsDone() const { return m_pos >= m_end; }
  // The current element; a default value where no block was ever written.
  const T& Current() const {
    return m_elements ? m_elements[m_offset] : m_array[m_pos - m_array.HeadIndex()];
  }
  int Position() const { return m_pos - m_array.HeadIndex(); }

 private:
  const T* ElementsOfBlock(int pos) const {
    if (pos >= m_end) return nullptr;
    const cow_1DArrayBlock<T>* block = m_array.BlockAt(pos / m_blockSize);
    return block ? block->elements : nullptr;
  }

  cow_1DArray<T> m_array;
  int m_end;
  int m_blockSize;
  int m_pos = 0;
  int m_offset = 0;
  const T* m_elements = nullptr;
};

#endif
