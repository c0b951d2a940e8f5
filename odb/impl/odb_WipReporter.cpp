#include "odb_WipReporter.h"

#include <atomic>
#include <ostream>

#include "cow_Assert.h"
#include "odb_Exception.h"

namespace {

const char kSource[] = "odb/impl/odb_WipReporter";

// Atomic only so that flipping it from one thread while another reports is not a data race; the
// switch orders nothing else.
std::atomic<bool> g_generateWipMessages{true};

const odb_String& FirstOf(const odb_SequenceString& texts) {
  static const odb_String empty;
  return texts.isEmpty() ? empty : texts[0];
}

}  // namespace

odb_WipReporter::odb_WipReporter(std::ostream& out) : m_out(out) {}

odb_WipReporter::~odb_WipReporter() = default;

void odb_WipReporter::SetOutput(Output kind, bool on) {
  switch (kind) {
    case ERROR_LINES:
      m_errorLines = on;
      break;
    case WARNING_LINES:
      m_warningLines = on;
      break;
    case LANDMARK_LINES:
      m_landmarkLines = on;
      break;
    case VERBOSE_LINES:
      m_verboseLines = on;
      break;
    case PRINT_LINES:
      m_printLines = on;
      break;
  }
}

bool odb_WipReporter::IsOutputOn(Output kind) const {
  switch (kind) {
    case ERROR_LINES:
      return m_errorLines;
    case WARNING_LINES:
      return m_warningLines;
    case LANDMARK_LINES:
      return m_landmarkLines;
    case VERBOSE_LINES:
      return m_verboseLines;
    case PRINT_LINES:
      return m_printLines;
  }
  return false;
}

void odb_WipReporter::GenerateWipMessages(bool on) {
  g_generateWipMessages.store(on, std::memory_order_relaxed);
}

bool odb_WipReporter::GeneratesWipMessages() {
  return g_generateWipMessages.load(std::memory_order_relaxed);
}

void odb_WipReporter::WriteLine(const char* prefix, const odb_String& text) {
  m_out << prefix;
  m_out.write(text.CStr(), static_cast<std::streamsize>(text.Length()));
  m_out << '\n';
}

void odb_WipReporter::Error(const odb_String& text) {
  if (m_errorLines) {
    WriteLine("ERROR: ", text);
    // The exception may end the program; the line must not stay in a buffer.
    m_out.flush();
  }
  odb_ThrowMessage(text, kSource, kErrorSite);
}

void odb_WipReporter::Error(const odb_SequenceString& texts) {
  Error(FirstOf(texts));
}

void odb_WipReporter::Warning(const odb_String& text) {
  if (m_warningLines) WriteLine("Warning: ", text);
}

void odb_WipReporter::Warning(const odb_SequenceString& texts) {
  Warning(FirstOf(texts));
}

void odb_WipReporter::Landmark(const odb_String& text) {
  if (m_landmarkLines && GeneratesWipMessages()) WriteLine("Landmark: ", text);
}

void odb_WipReporter::Verbose(const odb_String&) {
  if (m_verboseLines) cow_AssertFailed("\"Verbose is unimplemented\" == 0", kSource, kVerboseSite);
}

void odb_WipReporter::Print(const odb_String&) {
  if (m_printLines) cow_AssertFailed("\"Print is unimplemented\" == 0", kSource, kPrintSite);
}

void odb_WipReporter::Print(const odb_SequenceString&) {
  if (m_printLines) cow_AssertFailed("\"Print is unimplemented\" == 0", kSource, kPrintListSite);
}

bool odb_WipReporter::Interrupted() {
  cow_AssertFailed("\"Interrupted is unimplemented\" == 0", kSource, kInterruptedSite);
  return false;
}

void odb_WipReporter::CommandDone() {
  cow_AssertFailed("\"CommandDone is unimplemented\" == 0", kSource, kCommandDoneSite);
}

void odb_WipReporter::InterruptedThrow() {
  cow_AssertFailed("\"InterruptedThrow is unimplemented\" == 0", kSource, kInterruptedThrowSite);
}
