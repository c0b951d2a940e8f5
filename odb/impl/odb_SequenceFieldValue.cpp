#include "odb_SequenceFieldValue.h"

#include <algorithm>
#include <unordered_set>
#include <vector>

#include "odb_Assembly.h"
#include "odb_Exception.h"
#include "odb_FieldOutput.h"
#include "odb_FieldSubset.h"
#include "odb_SubFieldData.h"

namespace {

// The components of location `at` of a sub-field, its conjugate and orientation, into `value`.
void BuildValue(odb_SubFieldData& b, std::size_t at, odb_FieldValue& value) {
  const int element = b.position == odb_Enum::NODAL ? -1 : b.ElementLabels()[at];
  value.SetLocation(b.position, b.type, b.instance, element, b.NodeLabels()[at],
                    b.IntegrationPoints()[at], b.sectionPoint, b.elementType);
  value.SetData(b.data.data() + at * b.width, b.width);
  value.SetConjugateData(b.complex ? b.conjugate.data() + at * b.width : nullptr,
                         b.complex ? b.width : 0);
  value.SetOrientation(
      b.orientationWidth ? b.orientation.data() + at * b.orientationWidth : nullptr,
      b.orientationWidth);
}

}  // namespace

int odb_SequenceFieldValue::size() const {
  const int stored = m_subFields.empty() ? 0 : m_starts.back() + m_subFields.back().size();
  return stored + static_cast<int>(m_loose.size());
}

void odb_SequenceFieldValue::append(const odb_SubField& subField) {
  const int start = m_subFields.empty() ? 0 : m_starts.back() + m_subFields.back().size();
  m_subFields.push_back(subField);
  m_starts.push_back(start);
}

void odb_SequenceFieldValue::append(const odb_SequenceFieldValue& values) {
  if (&values == this) {
    const odb_SequenceFieldValue copy = values;
    append(copy);
    return;
  }
  for (const odb_SubField& sub : values.m_subFields) append(sub);
  m_loose.append(values.m_loose.begin(), values.m_loose.end());
}

void odb_SequenceFieldValue::appendSubField(const odb_SequenceInt& labels,
                                            const odb_FieldOutput& field, odb_Assembly& assembly) {
  std::unordered_set<int> wanted;
  for (int i = 0; i < labels.size(); ++i) wanted.insert(labels[i]);
  for (const odb_SubField& handle : field.values().SubField()) {
    odb_SubFieldData& sub = *odb_SubFieldAccess::Data(handle);
    if (!assembly.instances().isMember(handle.instance().name())) continue;
    const bool nodal = sub.position == odb_Enum::NODAL;
    std::vector<int> keep;
    for (std::size_t i = 0, n = sub.Locations(); i < n; ++i)
      if (wanted.count(nodal ? sub.NodeLabels()[i] : sub.ElementLabels()[i]))
        keep.push_back(static_cast<int>(i));
    if (keep.size() == sub.Locations())
      append(handle);
    else if (!keep.empty())
      append(odb_SubFieldAccess::Make(odb_PickLocations(sub, keep)));
  }
}

uti_Array<odb_FieldValueList> odb_SequenceFieldValue::FieldValueListList() const {
  uti_Array<odb_FieldValueList> lists;
  odb_FieldValue value;
  for (const odb_SubField& handle : m_subFields) {
    odb_SubFieldData& sub = *odb_SubFieldAccess::Data(handle);
    odb_FieldValueList list;
    for (std::size_t i = 0, n = sub.Locations(); i < n; ++i) {
      BuildValue(sub, i, value);
      list.push_back(value);
    }
    lists.push_back(list);
  }
  if (!m_loose.empty()) lists.push_back(m_loose);
  return lists;
}

void odb_SequenceFieldValue::Locate(int i, int& block, int& at) const {
  const int n = m_starts.size();
  int b = m_hint < n ? m_hint : 0;
  if (!(m_starts[b] <= i && i < m_starts[b] + m_subFields[b].size())) {
    b = static_cast<int>(std::upper_bound(m_starts.begin(), m_starts.end(), i) - m_starts.begin()) -
        1;
  }
  m_hint = b;
  block = b;
  at = i - m_starts[b];
}

const odb_FieldValue& odb_SequenceFieldValue::constGet(int i) const {
  const int total = size();
  if (i < 0 || i >= total)
    odb_ThrowMessage("Index out of range.", "odb/impl/odb_SequenceFieldValue", 60);
  const int stored = total - static_cast<int>(m_loose.size());
  if (i >= stored) return m_loose[static_cast<std::size_t>(i - stored)];
  int block = 0, at = 0;
  Locate(i, block, at);
  BuildValue(*odb_SubFieldAccess::Data(m_subFields[static_cast<std::size_t>(block)]),
             static_cast<std::size_t>(at), m_current);
  return m_current;
}

odb_Sequence<odb_Enum::odb_DataTypeEnum> odb_SequenceFieldValue::subFieldTypes() const {
  odb_Sequence<odb_Enum::odb_DataTypeEnum> types;
  for (const odb_SubField& sub : m_subFields) types.append(sub.type());
  return types;
}

odb_SequenceString odb_SequenceFieldValue::baseElementTypes() const {
  odb_SequenceString types;
  for (const odb_SubField& sub : m_subFields)
    if (!sub.elementType().Empty() && !types.isMember(sub.elementType()))
      types.append(sub.elementType());
  return types;
}

void odb_SequenceFieldValue::clearAll() {
  m_subFields.clear();
  m_starts.clear();
  m_loose.clear();
  m_hint = 0;
}
