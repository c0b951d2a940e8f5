#include "wip_WIP.h"

#include "odb_Exception.h"

namespace {

const char kSource[] = "uti/impl/wip_WIP";

const odb_String& FirstOf(const odb_SequenceString& texts) {
  static const odb_String none;
  return texts.isEmpty() ? none : texts[0];
}

}  // namespace

wip_WipReporter* wip_WIP::Install(wip_WipReporter* reporter) {
  wip_WipReporter* previous = m_reporter;
  m_reporter = reporter;
  return previous;
}

void wip_WIP::Warning(const odb_String& text) {
  if (m_reporter) m_reporter->Warning(text);
}

void wip_WIP::Warning(const odb_SequenceString& texts) {
  if (m_reporter) m_reporter->Warning(texts);
}

// An error ends the operation whoever listens: a reporter that only writes it down, or no
// reporter at all, must not let the caller carry on as if nothing happened.
void wip_WIP::Error(const odb_String& text) {
  if (m_reporter) m_reporter->Error(text);
  odb_ThrowMessage(text, kSource, __LINE__);
}

void wip_WIP::Error(const odb_SequenceString& texts) {
  if (m_reporter) m_reporter->Error(texts);
  odb_ThrowMessage(FirstOf(texts), kSource, __LINE__);
}

void wip_WIP::Landmark(const odb_String& text) {
  if (m_reporter) m_reporter->Landmark(text);
}
