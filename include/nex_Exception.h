// nex_Exception, nex_CommandException: the base classes of the exceptions this library throws.
//
// A throw site builds the exception and calls Throw(file, line), which records where it was
// raised and calls the virtual Propagate(); each class overrides Propagate to throw a copy of
// itself by value, so the object that leaves is of the dynamic type even when Throw is reached
// through a base reference. Copy() makes a heap copy of the dynamic type, for keeping an
// exception past its handler.
//
// Virtual operations, in declaration order: the destructor, DeveloperReport, UserReport,
// AsString, Propagate, Copy, DynTypeId. Derived classes append theirs after these.
//
// Ownership: an exception owns its texts (shared with copies, copy-on-write); the caller of
// Copy() owns and deletes the copy. Copying costs a few reference-count increments.
// Threads: an exception object belongs to one thread at a time; what() fills a cache on first use.
#ifndef NEX_EXCEPTION_H
#define NEX_EXCEPTION_H

#include <exception>

#include "cow_String.h"
#include "odb_Export.h"

// Identifies an exception class: the address of one static object per class, compared as is.
using nex_TypeId = const void*;

class QTVODB_EXPORT nex_Exception : public std::exception {
 public:
  nex_Exception() = default;
  // An exception whose user report is `message`.
  explicit nex_Exception(const cow_String& message) : m_message(message) {}
  nex_Exception(const nex_Exception& other) = default;
  nex_Exception& operator=(const nex_Exception& other) = default;
  ~nex_Exception() override;

  // The user report followed by the place of the throw, " (raised in <file>, line <n>)", when
  // one was recorded.
  virtual cow_String DeveloperReport() const;
  // The message for the person running the program.
  virtual cow_String UserReport() const;
  // The exception as one text; the user report unless a class says otherwise.
  virtual cow_String AsString() const;
  // Throws a copy of this object by value, as its dynamic type.
  [[noreturn]] virtual void Propagate() const;
  // A heap copy of the dynamic type; the caller deletes it.
  virtual nex_Exception* Copy() const;
  // The TypeId of the dynamic type.
  virtual nex_TypeId DynTypeId() const;

  static nex_TypeId TypeId();

  // The user report, computed on first call and kept with the object.
  const char* what() const noexcept override;

  // Records `file` and `line` as the place of the throw, then Propagate().
  [[noreturn]] void Throw(const char* file, int line);

  // The place recorded by Throw: source name ("" before Throw) and line (0 before Throw).
  const cow_String& SourceFile() const { return m_sourceFile; }
  int SourceLine() const { return m_sourceLine; }

 private:
  cow_String m_message;
  cow_String m_sourceFile;
  int m_sourceLine = 0;
  mutable cow_String m_what;
  mutable bool m_whatFilled = false;
};

// An error that ends the command being run: the kind of exception the library's operations throw.
class QTVODB_EXPORT nex_CommandException : public nex_Exception {
 public:
  nex_CommandException() = default;
  explicit nex_CommandException(const cow_String& message) : nex_Exception(message) {}
  ~nex_CommandException() override;

  [[noreturn]] void Propagate() const override;
  nex_Exception* Copy() const override;
  nex_TypeId DynTypeId() const override;

  static nex_TypeId TypeId();
};

#endif
