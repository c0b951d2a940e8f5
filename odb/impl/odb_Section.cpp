#include "odb_Section.h"

#include <utility>

#include "odb_SectionData.h"

const uti_LabelRow<odb_SectionEnm> uti_LabelTable<odb_SectionEnm, 1>::rows[] = {
    {"Invalid section name.", "odb_Section_MSGID_00", odb_Section_INVALID_NAME},
    {"A section named \"%s\" already exists.", "odb_Section_MSGID_01", odb_Section_ALREADY_EXISTS},
    {"Section \"%s\" needs a material name.", "odb_Section_MSGID_02", odb_Section_NO_MATERIAL},
    {"Invalid thickness %1$s for section \"%2$s\": it must be positive.", "odb_Section_MSGID_03",
     odb_Section_BAD_THICKNESS},
    {"Invalid number of integration points %1$s for section \"%2$s\": at least 1 is needed.",
     "odb_Section_MSGID_04", odb_Section_BAD_POINTS},
    {"Beam section \"%s\" needs a profile name.", "odb_Section_MSGID_05", odb_Section_NO_PROFILE},
    {"Beam section \"%s\" needs the dimensions of its profile.", "odb_Section_MSGID_06",
     odb_Section_NO_DIMENSIONS},
    {"Invalid dimension %1$s for beam section \"%2$s\": it must be a finite number.",
     "odb_Section_MSGID_07", odb_Section_BAD_DIMENSION},
    {"The stored dimensions of section \"%s\" are damaged.", "odb_Section_MSGID_08",
     odb_Section_DAMAGED_DIMENSIONS},
    {nullptr, nullptr, {}}};

namespace {

const odb_SectionData& Data(const std::shared_ptr<const odb_SectionData>& data) {
  static const odb_SectionData empty;
  return data ? *data : empty;
}

}  // namespace

odb_Section::odb_Section() = default;

odb_Section::odb_Section(std::shared_ptr<const odb_SectionData> data) : m_data(std::move(data)) {}

odb_String odb_Section::name() const {
  return Data(m_data).name;
}

odb_Section::Kind odb_Section::kind() const {
  return Data(m_data).kind;
}

odb_String odb_Section::material() const {
  return Data(m_data).material;
}

double odb_Section::thickness() const {
  return Data(m_data).thickness;
}

int odb_Section::integrationPoints() const {
  return Data(m_data).integrationPoints;
}

odb_String odb_Section::profile() const {
  return Data(m_data).profile;
}

odb_SequenceDouble odb_Section::dimensions() const {
  return Data(m_data).dimensions;
}
