#include "odb_SectionPoint.h"

odb_SectionPoint::odb_SectionPoint() : m_number(-1) {}

odb_SectionPoint::odb_SectionPoint(int number, const odb_String& description)
    : m_number(number), m_description(description) {}

bool operator==(const odb_SectionPoint& a, const odb_SectionPoint& b) {
  return a.number() == b.number() && a.description() == b.description();
}
