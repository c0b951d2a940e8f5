#include "odb_Frame.h"

#include <utility>

#include "odb_FrameData.h"

const uti_LabelRow<odb_FrameEnm> uti_LabelTable<odb_FrameEnm, 1>::rows[] = {
    {"A field named '%s' already exists.", "odb_Frame_MSGID_00", odb_Frame_FIELD_EXISTS},
    {nullptr, nullptr, {}}};

namespace {

// Frequency-like domains number their frames by mode.
bool IsModal(odb_Enum::odb_DomainEnum domain) {
  return domain == odb_Enum::FREQUENCY || domain == odb_Enum::MODAL;
}

}  // namespace

odb_Frame::odb_Frame(std::shared_ptr<const odb_FrameData> data) : m_data(std::move(data)) {}

const odb_FrameData& odb_Frame::Data() const {
  static const odb_FrameData empty;
  return m_data ? *m_data : empty;
}

int odb_Frame::frameIndex() const {
  return Data().index;
}

int odb_Frame::frameId() const {
  return Data().incrementNumber;
}

int odb_Frame::incrementNumber() const {
  return Data().incrementNumber;
}

double odb_Frame::frameValue() const {
  return static_cast<double>(Data().frameValue);
}

int odb_Frame::mode() const {
  return IsModal(Data().domain) ? Data().incrementNumber : -1;
}

double odb_Frame::frequency() const {
  return IsModal(Data().domain) ? frameValue() : 0.0;
}

odb_String odb_Frame::description() const {
  return Data().description;
}

odb_Enum::odb_DomainEnum odb_Frame::domain() const {
  return Data().domain;
}

const odb_LoadCase& odb_Frame::loadCase() const {
  return Data().loadCase;
}
