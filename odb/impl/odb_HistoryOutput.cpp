#include "odb_HistoryOutput.h"

#include <utility>
#include <vector>

#include "odb_Damage.h"
#include "odb_Exception.h"
#include "odb_HistoryData.h"
#include "odb_Message.h"

const uti_LabelRow<odb_HistoryOutputEnm> uti_LabelTable<odb_HistoryOutputEnm, 1>::rows[] = {
    {"History time and data array of unequal length.", "odb_HistoryOutput_MSGID_00",
     odb_HistoryOutput_UNEQUAL_ARRAYS},
    {"Data added to a history variable should be of width 2", "odb_HistoryOutput_MSGID_01",
     odb_HistoryOutput_WIDTH_NOT_TWO},
    {"Cannot add data to an orphan history object. The object was likely created using the "
     "getSubset method, or by a program that did not keep the reference to the history objects.",
     "odb_HistoryOutput_MSGID_02", odb_HistoryOutput_ORPHAN},
    {"Data sequences added to a history variable should be of equal length.",
     "odb_HistoryOutput_MSGID_03", odb_HistoryOutput_UNEQUAL_SEQUENCES},
    {nullptr, nullptr, {}}};

namespace {

const char kSource[] = "odb/impl/odb_HistoryOutput";

[[noreturn]] void Throw(odb_HistoryOutputEnm code, int site) {
  odb_ThrowMessage(odb_CatalogueMessage(code), kSource, site);
}

// Pairs given as two-number sequences, checked for their width before any is taken.
odb_HistoryPairs PairsOf(const odb_SequenceSequenceFloat& pairs, int site) {
  const int n = pairs.size();
  for (int i = 0; i < n; ++i)
    if (pairs[i].size() != 2) Throw(odb_HistoryOutput_WIDTH_NOT_TWO, site);
  odb_HistoryPairs out;
  out.times.resize(static_cast<std::size_t>(n));
  out.values.resize(static_cast<std::size_t>(n));
  for (int i = 0; i < n; ++i) {
    const odb_SequenceFloat& pair = pairs[i];
    out.times[i] = pair[0];
    out.values[i] = pair[1];
  }
  return out;
}

odb_HistoryData View(std::shared_ptr<const odb_HistoryPairs> pairs) {
  const double* times = pairs->times.data();
  const float* values = pairs->values.data();
  const int size = static_cast<int>(pairs->times.size());
  return odb_HistoryData(std::move(pairs), times, values, size);
}

}  // namespace

odb_SequenceFloat odb_HistoryData::operator[](int i) const {
  const float pair[2] = {static_cast<float>(m_times[i]), m_values[i]};
  return odb_SequenceFloat(pair, 2);
}

odb_SequenceSequenceFloat odb_HistoryData::sequence() const {
  odb_SequenceSequenceFloat out(m_size);
  for (int i = 0; i < m_size; ++i) out.append((*this)[i]);
  return out;
}

odb_HistoryOutput::odb_HistoryOutput() : m_data(std::make_shared<odb_HistoryOutputData>()) {}

odb_HistoryOutput::odb_HistoryOutput(const odb_String& name, const odb_String& description,
                                     odb_Enum::odb_DataTypeEnum type,
                                     const odb_SequenceSequenceFloat& data,
                                     const odb_SequenceSequenceFloat& conjugateData)
    : m_data(std::make_shared<odb_HistoryOutputData>()) {
  m_data->name = name;
  m_data->description = description;
  m_data->type = type;
  auto pairs = std::make_shared<odb_HistoryPairs>(PairsOf(data, 77));
  auto conjugate = std::make_shared<odb_HistoryPairs>(PairsOf(conjugateData, 78));
  if (!conjugate->times.empty() && conjugate->times.size() != pairs->times.size())
    Throw(odb_HistoryOutput_UNEQUAL_SEQUENCES, 80);
  m_data->pairs = std::move(pairs);
  m_data->conjugate = std::move(conjugate);
}

odb_HistoryOutput::odb_HistoryOutput(std::shared_ptr<odb_HistoryOutputData> data)
    : m_data(std::move(data)) {}

odb_String odb_HistoryOutput::name() const {
  return m_data->name;
}

odb_String odb_HistoryOutput::description() const {
  return m_data->description;
}

odb_Enum::odb_DataTypeEnum odb_HistoryOutput::type() const {
  return m_data->type;
}

bool odb_HistoryOutput::isAttached() const {
  return m_data->series != nullptr;
}

namespace {

// The series to append to; refuses detached outputs and databases that cannot be written.
store_HistorySeries& Appendable(const odb_HistoryOutputData& data, int site) {
  if (!data.series) Throw(odb_HistoryOutput_ORPHAN, site);
  if (!data.store->IsOpen()) throw store_Error("The database is closed.");
  if (data.store->ReadOnly()) throw store_Error("The database is read-only: cannot write.");
  return *data.series;
}

}  // namespace

void odb_HistoryOutput::addData(double time, double value) {
  Appendable(*m_data, 122).Append(time, static_cast<float>(value));
}

void odb_HistoryOutput::addData(const odb_SequenceFloat& times, const odb_SequenceFloat& values) {
  store_HistorySeries& series = Appendable(*m_data, 126);
  if (times.size() != values.size()) Throw(odb_HistoryOutput_UNEQUAL_ARRAYS, 127);
  const std::size_t n = static_cast<std::size_t>(times.size());
  std::vector<double> t(n);
  std::vector<float> v(n);
  for (std::size_t i = 0; i < n; ++i) {
    t[i] = times[static_cast<int>(i)];
    v[i] = values[static_cast<int>(i)];
  }
  series.Append(t.data(), v.data(), n);
}

void odb_HistoryOutput::addData(const odb_SequenceSequenceFloat& pairs) {
  store_HistorySeries& series = Appendable(*m_data, 139);
  const odb_HistoryPairs checked = PairsOf(pairs, 140);
  series.Append(checked.times.data(), checked.values.data(), checked.times.size());
}

odb_HistoryData odb_HistoryOutput::data() const {
  if (!m_data->series) return View(m_data->pairs);
  auto pairs = std::make_shared<odb_HistoryPairs>();
  odb_Reading("the data of " + m_data->subject,
              [&] { m_data->series->Read(pairs->times, pairs->values); });
  return View(std::move(pairs));
}

odb_HistoryData odb_HistoryOutput::conjugateData() const {
  return View(m_data->conjugate);
}

odb_HistoryOutput odb_HistoryOutput::getSubset(double start) const {
  return Subset(start, 0.0, false);
}

odb_HistoryOutput odb_HistoryOutput::getSubset(double start, double end) const {
  return Subset(start, end, true);
}

odb_HistoryOutput odb_HistoryOutput::Subset(double start, double end, bool bounded) const {
  const odb_HistoryData all = data();
  const odb_HistoryData conjugate = conjugateData();
  auto pairs = std::make_shared<odb_HistoryPairs>();
  auto conjugatePairs = std::make_shared<odb_HistoryPairs>();
  for (int i = 0; i < all.size(); ++i) {
    const double t = all.time(i);
    if (!(t > start) || !(!bounded || t < end)) continue;
    pairs->times.push_back(t);
    pairs->values.push_back(all.value(i));
    if (i < conjugate.size()) {
      conjugatePairs->times.push_back(conjugate.time(i));
      conjugatePairs->values.push_back(conjugate.value(i));
    }
  }
  auto subset = std::make_shared<odb_HistoryOutputData>();
  subset->name = m_data->name;
  subset->description = m_data->description;
  subset->type = m_data->type;
  subset->loadCase = m_data->loadCase;
  subset->pairs = std::move(pairs);
  subset->conjugate = std::move(conjugatePairs);
  return odb_HistoryOutputAccess::Make(std::move(subset));
}
