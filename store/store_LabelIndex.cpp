#include "store_LabelIndex.h"

#include <algorithm>
#include <cstdint>
#include <vector>

bool store_LabelIndex::Build(const int* labels, int n, int& duplicate) {
  m_slots.clear();
  m_entries.clear();
  m_count = 0;
  m_form = Form::kConsecutive;
  m_first = 0;
  if (n == 0) return true;
  std::int64_t low = labels[0], high = labels[0];
  bool consecutive = true;
  for (int i = 1; i < n; ++i) {
    consecutive = consecutive && static_cast<std::int64_t>(labels[i]) == labels[i - 1] + 1LL;
    low = std::min<std::int64_t>(low, labels[i]);
    high = std::max<std::int64_t>(high, labels[i]);
  }
  if (consecutive) {
    m_first = labels[0];
    m_count = n;
    return true;
  }
  bool built = high - low < 4 * static_cast<std::int64_t>(n) + 1024
                   ? BuildDirect(labels, n, low, high, duplicate)
                   : BuildHash(labels, n, duplicate);
  if (!built) {
    m_slots.clear();
    m_entries.clear();
    m_form = Form::kConsecutive;
    m_first = 0;
    return false;
  }
  m_count = n;
  return true;
}

bool store_LabelIndex::BuildDirect(const int* labels, int n, std::int64_t low, std::int64_t high,
                                   int& duplicate) {
  m_form = Form::kDirect;
  m_first = low;
  m_slots.assign(static_cast<std::size_t>(high - low + 1), -1);
  for (int i = 0; i < n; ++i) {
    int& slot = m_slots[static_cast<std::size_t>(labels[i] - low)];
    if (slot >= 0) {
      duplicate = labels[i];
      return false;
    }
    slot = i;
  }
  return true;
}

bool store_LabelIndex::BuildHash(const int* labels, int n, int& duplicate) {
  m_form = Form::kHash;
  std::uint32_t size = 16;
  while (size < 2u * static_cast<std::uint32_t>(n)) size *= 2;
  m_mask = size - 1;
  m_entries.assign(size, Entry{0, -1});
  for (int i = 0; i < n; ++i) {
    std::uint32_t at = Mix(labels[i]) & m_mask;
    while (m_entries[at].position >= 0) {
      if (m_entries[at].label == labels[i]) {
        duplicate = labels[i];
        return false;
      }
      at = (at + 1) & m_mask;
    }
    m_entries[at] = Entry{labels[i], i};
  }
  return true;
}

int store_LabelIndex::FindHashed(int label) const {
  for (std::uint32_t at = Mix(label) & m_mask;; at = (at + 1) & m_mask) {
    const Entry& e = m_entries[at];
    if (e.position < 0) return -1;
    if (e.label == label) return e.position;
  }
}

std::ptrdiff_t store_LabelIndex::FirstMissing(const int* labels, std::size_t n) const {
  if (m_form == Form::kConsecutive) {
    // Runs of 64 labels are checked without a branch per label, so the loop vectorises; the
    // run holding a missing label is searched again label by label.
    const std::uint64_t count = static_cast<std::uint64_t>(m_count);
    auto outside = [&](int label) {
      return static_cast<std::uint64_t>(static_cast<std::int64_t>(label) - m_first) >= count;
    };
    for (std::size_t at = 0; at < n; at += 64) {
      std::size_t end = std::min(n, at + 64);
      bool any = false;
      for (std::size_t i = at; i < end; ++i) any |= outside(labels[i]);
      if (!any) continue;
      for (std::size_t i = at; i < end; ++i)
        if (outside(labels[i])) return static_cast<std::ptrdiff_t>(i);
    }
    return -1;
  }
  for (std::size_t i = 0; i < n; ++i)
    if (Find(labels[i]) < 0) return static_cast<std::ptrdiff_t>(i);
  return -1;
}

std::ptrdiff_t store_LabelIndex::FirstRepeat(const int* labels, std::size_t n) const {
  // Increasing labels cannot repeat.
  std::size_t next = 1;
  while (next < n && labels[next - 1] < labels[next]) ++next;
  if (next >= n) return -1;
  // Otherwise a bit per position, over the range the labels reach only.
  int low = m_count, high = -1;
  for (std::size_t i = 0; i < n; ++i) {
    const int at = Find(labels[i]);
    if (at < 0) continue;
    low = std::min(low, at);
    high = std::max(high, at);
  }
  if (high < low) return -1;
  std::vector<std::uint64_t> seen(static_cast<std::size_t>(high - low) / 64 + 1, 0);
  for (std::size_t i = 0; i < n; ++i) {
    const int at = Find(labels[i]);
    if (at < 0) continue;
    std::uint64_t& word = seen[static_cast<std::size_t>(at - low) / 64];
    const std::uint64_t bit = std::uint64_t{1} << ((at - low) % 64);
    if (word & bit) return static_cast<std::ptrdiff_t>(i);
    word |= bit;
  }
  return -1;
}
