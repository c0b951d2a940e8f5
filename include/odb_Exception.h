// odb_Exception: the exception the library throws for errors that end an operation.
//
// Fields, in order: the code (an odb_ExceptionsEnm value, 0 to 7), a database file name, a
// detail text, the version number found in the file, the version number the library expects,
// and a flag carried for the caller (the read-only request of a failed open). The message is
// built on demand from the exception catalogue: codes 0 to 5 and 7 fill their catalogue text
// with the file name, the detail or the version found; code 6 is the detail text itself (most
// errors of the library are code 6, their text already filled from the class's own catalogue);
// a code of 8 or more has an empty message.
//
// Virtual operations, in slot order: the destructor, DeveloperReport, UserReport, AsString,
// Propagate, Copy, DynTypeId, JournalMessage, PythonType.
//
// Ownership: the strings are shared with copies (copy-on-write), so copying and propagating cost
// a few reference-count increments. Threads: one thread at a time per object.
#ifndef ODB_EXCEPTION_H
#define ODB_EXCEPTION_H

#include "nex_Exception.h"
#include "odb_Export.h"
#include "odb_String.h"

class QTVODB_EXPORT odb_Exception : public nex_CommandException {
 public:
  explicit odb_Exception(int code, const odb_String& fileName = odb_String(),
                         const odb_String& detail = odb_String(), int versionFound = 0,
                         int versionExpected = 0, bool flag = false);
  odb_Exception(const odb_Exception& other) = default;
  odb_Exception& operator=(const odb_Exception& other) = default;
  ~odb_Exception() override;

  // The journal message.
  cow_String UserReport() const override;
  [[noreturn]] void Propagate() const override;
  nex_Exception* Copy() const override;
  nex_TypeId DynTypeId() const override;
  // The final message: the catalogue text of the code, filled; the detail for code 6; empty for
  // a code of 8 or more. A negative code has no row and reports the label map's assertion.
  virtual odb_String JournalMessage() const;
  // "OdbError": the name under which a scripting layer presents this error.
  virtual const char* PythonType() const;

  static nex_TypeId TypeId();

  int Code() const { return m_code; }
  const odb_String& FileName() const { return m_fileName; }
  const odb_String& Detail() const { return m_detail; }
  int VersionFound() const { return m_versionFound; }
  int VersionExpected() const { return m_versionExpected; }
  bool Flag() const { return m_flag; }

 private:
  int m_code;
  odb_String m_fileName;
  odb_String m_detail;
  int m_versionFound;
  int m_versionExpected;
  bool m_flag;
};

// Throws an odb_Exception of code 6 whose message is `text`, raised at `source` ("odb/impl/"
// and the class name) and `line`. The way every class throws its filled catalogue text.
[[noreturn]] QTVODB_EXPORT void odb_ThrowMessage(const odb_String& text, const char* source,
                                                 int line);

#endif
