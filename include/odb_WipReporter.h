// odb_WipReporter: the library's reporter, writing error, warning and progress lines to a stream.
//
// Lines are "ERROR: <text>", "Warning: <text>" and "Landmark: <text>", each ended by a newline.
// An error writes its line and then throws an odb_Exception of code 6 carrying the text, so the
// line is out before the exception leaves. Landmarks are written only while the process-wide
// progress switch (GenerateWipMessages) is on; it starts on.
//
// Five switches, all on at construction, say which kinds of output the reporter takes:
//  - ERROR_LINES: the "ERROR: " line is written (an error throws whatever this switch says, since
//    the operation has to end);
//  - WARNING_LINES: warnings are written;
//  - LANDMARK_LINES: landmarks are written (while the progress switch is on as well);
//  - VERBOSE_LINES, PRINT_LINES: verbose and print output are not supported; while on, those
//    calls report their "... is unimplemented" assertion and do nothing else; while off, they
//    are ignored quietly.
// Interrupted, CommandDone and InterruptedThrow are not supported either and always report their
// assertion; Interrupted then answers false.
//
// Ownership: the stream is borrowed and must outlive the reporter. Threads: the reporter takes
// no lock; lines written from several threads at once may interleave. The progress switch is
// process-wide and may be flipped from any thread.
#ifndef ODB_WIPREPORTER_H
#define ODB_WIPREPORTER_H

#include <iosfwd>

#include "odb_Export.h"
#include "wip_WIP.h"

class QTVODB_EXPORT odb_WipReporter : public wip_WipReporter {
 public:
  enum Output { ERROR_LINES, WARNING_LINES, LANDMARK_LINES, VERBOSE_LINES, PRINT_LINES };

  explicit odb_WipReporter(std::ostream& out);
  odb_WipReporter(const odb_WipReporter&) = delete;
  odb_WipReporter& operator=(const odb_WipReporter&) = delete;
  ~odb_WipReporter() override;

  // Switches one kind of output on or off.
  void SetOutput(Output kind, bool on);
  // Whether that kind of output is on.
  bool IsOutputOn(Output kind) const;

  // The process-wide progress switch that lets landmarks through.
  static void GenerateWipMessages(bool on);
  static bool GeneratesWipMessages();

  void Error(const odb_String& text) override;
  void Error(const odb_SequenceString& texts) override;
  void Warning(const odb_String& text) override;
  void Warning(const odb_SequenceString& texts) override;
  void Landmark(const odb_String& text) override;
  void Verbose(const odb_String& text) override;
  void Print(const odb_String& text) override;
  void Print(const odb_SequenceString& texts) override;
  bool Interrupted() override;
  void CommandDone() override;
  void InterruptedThrow() override;

  // Site numbers of the reporter's assertions and of the error throw, fixed so that reports keep
  // their identity.
  enum Site {
    kErrorSite = 52,
    kVerboseSite = 74,
    kPrintSite = 80,
    kPrintListSite = 86,
    kInterruptedSite = 92,
    kCommandDoneSite = 99,
    kInterruptedThrowSite = 105
  };

 private:
  void WriteLine(const char* prefix, const odb_String& text);

  std::ostream& m_out;
  bool m_errorLines = true;
  bool m_warningLines = true;
  bool m_landmarkLines = true;
  bool m_verboseLines = true;
  bool m_printLines = true;
};

#endif
