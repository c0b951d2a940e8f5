// store_LabelIndex: the position of a node or element label within its mesh, in constant time.
//
// Meshes number their nodes and elements with labels chosen by the user: usually consecutive
// (1..n), often dense with gaps, sometimes scattered over the whole int range. The index picks
// the cheapest form that fits: arithmetic for consecutive labels, a direct table for labels
// whose range is at most four times their number, and an open-addressing hash table otherwise.
// Building costs one pass over the labels (O(n)); the memory is at most 16 bytes per label.
// Building finds duplicates as a side effect, which is how meshes refuse them. Not thread-safe
// while it is being built; concurrent lookups on a built index are fine.
#ifndef STORE_LABELINDEX_H
#define STORE_LABELINDEX_H

#include <cstddef>
#include <cstdint>
#include <vector>

class store_LabelIndex {
 public:
  // Indexes labels[0..n). Returns false, leaving the index empty, when a label occurs twice;
  // `duplicate` then holds it.
  bool Build(const int* labels, int n, int& duplicate);
  // The position of `label`, or -1 when it is not indexed.
  int Find(int label) const {
    switch (m_form) {
      case Form::kConsecutive: {
        std::int64_t i = static_cast<std::int64_t>(label) - m_first;
        return i >= 0 && i < m_count ? static_cast<int>(i) : -1;
      }
      case Form::kDirect: {
        std::int64_t i = static_cast<std::int64_t>(label) - m_first;
        return i >= 0 && i < static_cast<std::int64_t>(m_slots.size()) ? m_slots[i] : -1;
      }
      case Form::kHash:
        return FindHashed(label);
    }
    return -1;
  }
  int Size() const { return m_count; }
  // The position in labels[0..n) of the first label that is not indexed, or -1 when all are:
  // how a mesh checks the node labels of new elements, a piece at a time.
  std::ptrdiff_t FirstMissing(const int* labels, std::size_t n) const;
  // The position in labels[0..n) of the first label that repeats an earlier one, or -1; labels
  // the index lacks are passed over. Increasing labels, the common case, cost one comparison
  // each and no memory; others a second lookup each and one bit per position between the
  // lowest and highest position they name (at most one bit per indexed label).
  std::ptrdiff_t FirstRepeat(const int* labels, std::size_t n) const;

 private:
  enum class Form { kConsecutive, kDirect, kHash };
  static std::uint32_t Mix(int label) {
    std::uint32_t x = static_cast<std::uint32_t>(label) * 0x9E3779B1u;
    return x ^ (x >> 15);
  }
  int FindHashed(int label) const;
  bool BuildDirect(const int* labels, int n, std::int64_t low, std::int64_t high, int& duplicate);
  bool BuildHash(const int* labels, int n, int& duplicate);

  Form m_form = Form::kConsecutive;
  std::int64_t m_first = 0;
  int m_count = 0;
  // Direct: slot (label - first) holds the position or -1. Hash: (label, position) pairs side
  // by side, so a probe touches one cache line; a position of -1 marks a free entry.
  struct Entry {
    int label;
    int position;
  };
  std::vector<int> m_slots;
  std::vector<Entry> m_entries;
  std::uint32_t m_mask = 0;
};

#endif
