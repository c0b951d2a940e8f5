#include "odb_Exception.h"

#include "odb_Exceptions.h"
#include "odb_Message.h"

namespace {

const char g_odbExceptionType = 0;

}  // namespace

odb_Exception::odb_Exception(int code, const odb_String& fileName, const odb_String& detail,
                             int versionFound, int versionExpected, bool flag)
    : m_code(code),
      m_fileName(fileName),
      m_detail(detail),
      m_versionFound(versionFound),
      m_versionExpected(versionExpected),
      m_flag(flag) {}

odb_Exception::~odb_Exception() = default;

cow_String odb_Exception::UserReport() const {
  return JournalMessage().Cow();
}

void odb_Exception::Propagate() const {
  throw *this;
}

nex_Exception* odb_Exception::Copy() const {
  return new odb_Exception(*this);
}

nex_TypeId odb_Exception::DynTypeId() const {
  return TypeId();
}

nex_TypeId odb_Exception::TypeId() {
  return &g_odbExceptionType;
}

odb_String odb_Exception::JournalMessage() const {
  if (m_code == odb_Exceptions_DETAIL) return m_detail;
  if (m_code > odb_Exceptions_INVALID_VERSION) return odb_String();
  // Any int is a valid value of the enumeration (its underlying type is int); a negative code
  // has no row and reports the label map's assertion.
  const odb_ExceptionsEnm code = static_cast<odb_ExceptionsEnm>(m_code);
  const char* text = uti_LabelMap<odb_ExceptionsEnm, 1>::LabelString(code);
  switch (code) {
    case odb_Exceptions_UPGRADE_CHECK_FAILED:
      return odb_FormatMessage(text, {m_detail});
    case odb_Exceptions_INVALID_VERSION:
      return odb_FormatMessage(text, {m_fileName, odb_String(m_versionFound)});
    default:
      return odb_FormatMessage(text, {m_fileName, m_detail});
  }
}

const char* odb_Exception::PythonType() const {
  return "OdbError";
}

void odb_ThrowMessage(const odb_String& text, const char* source, int line) {
  odb_Exception(odb_Exceptions_DETAIL, odb_String(), text).Throw(source, line);
}
