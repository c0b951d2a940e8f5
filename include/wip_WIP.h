// wip_WipReporter, wip_WIP: where warnings, errors and progress lines of a thread go.
//
// wip_WipReporter is the interface of a sink; the library supplies odb_WipReporter. wip_WIP is
// the per-thread front end, reached as thr_ThreadSingleton<wip_WIP>::Instance(): code anywhere
// in the library reports through it without knowing who listens. It holds a non-owning pointer
// to the reporter installed on its thread and forwards to it. With no reporter installed,
// warnings and progress lines are dropped; an error always ends in an odb_Exception (code 6,
// its text as the message), thrown by the reporter or, when the reporter returns or there is
// none, by wip_WIP itself.
//
// Ownership: whoever installs a reporter keeps it alive until it is uninstalled. Threads: each
// thread has its own wip_WIP; a reporter installed on one thread does not serve the others, and
// one reporter installed on several threads must tolerate calls from all of them.
#ifndef WIP_WIP_H
#define WIP_WIP_H

#include "odb_Export.h"
#include "odb_Sequence.h"
#include "odb_String.h"

class QTVODB_EXPORT wip_WipReporter {
 public:
  virtual ~wip_WipReporter() = default;

  // An error that ends the operation; the list forms report their first text (an empty list
  // reports the empty text).
  virtual void Error(const odb_String& text) = 0;
  virtual void Error(const odb_SequenceString& texts) = 0;
  // A warning: processing goes on.
  virtual void Warning(const odb_String& text) = 0;
  virtual void Warning(const odb_SequenceString& texts) = 0;
  // A progress line.
  virtual void Landmark(const odb_String& text) = 0;
  // Extra detail for those who ask for it.
  virtual void Verbose(const odb_String& text) = 0;
  // Plain output: one text, or several texts one after the other.
  virtual void Print(const odb_String& text) = 0;
  virtual void Print(const odb_SequenceString& texts) = 0;
  // True when the user asked to stop the running command.
  virtual bool Interrupted() = 0;
  // The running command has finished.
  virtual void CommandDone() = 0;
  // Throws when the user asked to stop the running command.
  virtual void InterruptedThrow() = 0;
};

class QTVODB_EXPORT wip_WIP {
 public:
  // Installs `reporter` (null uninstalls) and returns the one installed before.
  wip_WipReporter* Install(wip_WipReporter* reporter);
  // Uninstalls the reporter, if any, and returns it.
  wip_WipReporter* Uninstall() { return Install(nullptr); }
  // The installed reporter, or null.
  wip_WipReporter* Reporter() const { return m_reporter; }

  // Forwarded to the installed reporter; warnings and landmarks are dropped when there is none.
  // Error never returns: it throws odb_Exception with the (first) text.
  void Warning(const odb_String& text);
  void Warning(const odb_SequenceString& texts);
  [[noreturn]] void Error(const odb_String& text);
  [[noreturn]] void Error(const odb_SequenceString& texts);
  void Landmark(const odb_String& text);

 private:
  wip_WipReporter* m_reporter = nullptr;
};

#endif
