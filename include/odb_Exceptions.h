// odb_Exceptions: the message catalogue of odb_Exception.
//
// Each enumerator's value is the exception code that uses it, so the text of an exception with
// code n is uti_LabelMap<odb_ExceptionsEnm, 1>::LabelString(odb_ExceptionsEnm(n)). Code 6 has no
// row, because its message is the exception's detail text itself; the last row of the table
// therefore holds code 7. Keys count from 1 with one digit ("odb_Exceptions_MSGID_1" for code
// 0), unlike the two-digit, zero-based keys of the other catalogues; the code-7 row keeps the
// key "odb_Exceptions_MSGID_7".
//
// The texts are constant and kept word for word, odd blanks and missing full stops included,
// because callers and translations match on them. Threads: read-only.
#ifndef ODB_EXCEPTIONS_H
#define ODB_EXCEPTIONS_H

#include "odb_Export.h"
#include "uti_LabelMap.h"

// The underlying type is fixed so that any exception code converts to it without loss.
enum odb_ExceptionsEnm : int {
  // The file was written by an earlier schema version; no placeholders.
  odb_Exceptions_PREVIOUS_VERSION = 0,
  // The file was written by a newer version; %1$s is the file name.
  odb_Exceptions_NEWER_VERSION = 1,
  // Conversion failed; %1$s is the file name, %2$s the detail.
  odb_Exceptions_CONVERSION_FAILED = 2,
  // The upgrade check failed; %1$s is the detail.
  odb_Exceptions_UPGRADE_CHECK_FAILED = 3,
  // No disk space for the converted file; %1$s is the file name.
  odb_Exceptions_NO_DISK_SPACE = 4,
  // A file of the old format that cannot be read; %1$s is the file name.
  odb_Exceptions_OLD_FORMAT = 5,
  // No row: the detail text is the whole message.
  odb_Exceptions_DETAIL = 6,
  // A version marked invalid; %1$s is the file name, %2$i the version found.
  odb_Exceptions_INVALID_VERSION = 7
};

template <>
struct QTVODB_EXPORT uti_LabelTable<odb_ExceptionsEnm, 1> {
  static const uti_LabelRow<odb_ExceptionsEnm> rows[];
};

#endif
