#include "wip_WIP.h"

wip_WipReporter* wip_WIP::Install(wip_WipReporter* reporter) {
  wip_WipReporter* previous = m_reporter;
  m_reporter = reporter;
  return previous;
}

void wip_WIP::Warning(const odb_String& text) {
  if (m_reporter) m_reporter->Warning(text);
}

void wip_WIP::Warning(const std::vector<odb_String>& texts) {
  if (m_reporter) m_reporter->Warning(texts);
}

void wip_WIP::Error(const odb_String& text) {
  if (m_reporter) m_reporter->Error(text);
}

void wip_WIP::Error(const std::vector<odb_String>& texts) {
  if (m_reporter) m_reporter->Error(texts);
}

void wip_WIP::Landmark(const odb_String& text) {
  if (m_reporter) m_reporter->Landmark(text);
}
