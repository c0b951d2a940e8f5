#include "odb_FieldLocation.h"

#include "odb_Exception.h"

odb_FieldLocation::odb_FieldLocation(odb_Enum::odb_ResultPositionEnum position,
                                     const odb_SectionPoint& sectionPoint)
    : m_position(position) {
  addSectionPoint(sectionPoint);
}

void odb_FieldLocation::addSectionPoint(const odb_SectionPoint& point) {
  if (point.number() >= 0 && !m_sectionPoints.isMember(point)) m_sectionPoints.append(point);
}

bool operator==(const odb_FieldLocation& a, const odb_FieldLocation& b) {
  return a.position() == b.position() && a.sectionPoint().isEqual(b.sectionPoint());
}

const odb_FieldLocation& odb_SequenceFieldLocation::constGet(int i) const {
  if (i < 0 || i >= size())
    odb_ThrowMessage("Index out of range.", "odb/impl/odb_FieldLocation", 24);
  return m_locations[static_cast<std::size_t>(i)];
}

bool odb_SequenceFieldLocation::isMember(const odb_FieldLocation& location) const {
  for (const odb_FieldLocation& held : m_locations) {
    if (held.position() != location.position()) continue;
    for (int i = 0; i < location.sectionPoint().size(); ++i)
      if (!held.sectionPoint().isMember(location.sectionPoint()[i])) return false;
    return true;
  }
  return false;
}

void odb_SequenceFieldLocation::append(const odb_FieldLocation& location) {
  for (odb_FieldLocation& held : m_locations) {
    if (held.position() != location.position()) continue;
    for (int i = 0; i < location.sectionPoint().size(); ++i)
      held.addSectionPoint(location.sectionPoint()[i]);
    return;
  }
  m_locations.push_back(location);
}

void odb_SequenceFieldLocation::append(const odb_SequenceFieldLocation& locations) {
  for (const odb_FieldLocation& location : locations.m_locations) append(location);
}

void odb_SequenceFieldLocation::append(odb_Enum::odb_ResultPositionEnum position) {
  append(odb_FieldLocation(position));
}

void odb_SequenceFieldLocation::append(odb_Enum::odb_ResultPositionEnum position,
                                       const odb_SectionPoint& point) {
  append(odb_FieldLocation(position, point));
}

void odb_SequenceFieldLocation::append(odb_Enum::odb_ResultPositionEnum position,
                                       const odb_SequenceSectionPoint& points) {
  append(odb_FieldLocation(position, points));
}
