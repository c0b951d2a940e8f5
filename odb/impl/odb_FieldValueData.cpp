#include "odb_FieldValueData.h"

#include <algorithm>
#include <cstring>

odb_FieldValueData::odb_FieldValueData(int count) {
  assign(nullptr, count);
}

odb_FieldValueData::odb_FieldValueData(const float* values, int count) {
  assign(values, count);
}

odb_FieldValueData::odb_FieldValueData(const odb_SequenceFloat& values) {
  assign(nullptr, values.size());
  for (int i = 0; i < values.size(); ++i) data()[i] = values[i];
}

odb_FieldValueData::odb_FieldValueData(const odb_FieldValueData& other) {
  assign(other.data(), other.m_count);
}

odb_FieldValueData& odb_FieldValueData::operator=(const odb_FieldValueData& other) {
  if (this != &other) assign(other.data(), other.m_count);
  return *this;
}

void odb_FieldValueData::assign(const float* values, int count) {
  count = std::max(count, 0);
  if (count > kInline) {
    if (!m_heap || count > m_count) m_heap.reset(new float[count]);
  } else {
    m_heap.reset();
  }
  m_count = count;
  if (values)
    std::memcpy(data(), values, sizeof(float) * count);
  else
    std::fill(data(), data() + count, 0.0f);
}

bool operator==(const odb_FieldValueData& a, const odb_FieldValueData& b) {
  return a.size() == b.size() && std::equal(a.data(), a.data() + a.size(), b.data());
}
