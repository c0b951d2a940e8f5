#include "nex_Exception.h"

namespace {

const char g_exceptionType = 0;
const char g_commandExceptionType = 0;

}  // namespace

nex_Exception::~nex_Exception() = default;

cow_String nex_Exception::DeveloperReport() const {
  cow_String report = UserReport();
  if (m_sourceFile.Empty()) return report;
  static const char kRaised[] = " (raised in ";
  static const char kLine[] = ", line ";
  cow_String line(m_sourceLine);
  report.append(kRaised, sizeof kRaised - 1);
  report.append(m_sourceFile.CStr(), m_sourceFile.Length());
  report.append(kLine, sizeof kLine - 1);
  report.append(line.CStr(), line.Length());
  report.append(")", 1);
  return report;
}

cow_String nex_Exception::UserReport() const {
  return m_message;
}

cow_String nex_Exception::AsString() const {
  return UserReport();
}

void nex_Exception::Propagate() const {
  throw *this;
}

nex_Exception* nex_Exception::Copy() const {
  return new nex_Exception(*this);
}

nex_TypeId nex_Exception::DynTypeId() const {
  return TypeId();
}

nex_TypeId nex_Exception::TypeId() {
  return &g_exceptionType;
}

const char* nex_Exception::what() const noexcept {
  if (!m_whatFilled) {
    m_what = UserReport();
    m_whatFilled = true;
  }
  return m_what.CStr();
}

void nex_Exception::Throw(const char* file, int line) {
  m_sourceFile = file ? file : "";
  m_sourceLine = line;
  Propagate();
  // Every Propagate throws; this only keeps the [[noreturn]] promise where the compiler cannot
  // see through the virtual call.
  std::terminate();
}

nex_CommandException::~nex_CommandException() = default;

void nex_CommandException::Propagate() const {
  throw *this;
}

nex_Exception* nex_CommandException::Copy() const {
  return new nex_CommandException(*this);
}

nex_TypeId nex_CommandException::DynTypeId() const {
  return TypeId();
}

nex_TypeId nex_CommandException::TypeId() {
  return &g_commandExceptionType;
}
