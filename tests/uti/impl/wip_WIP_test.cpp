#include "wip_WIP.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <sstream>
#include <thread>
#include <vector>

#include "odb_Exception.h"
#include "odb_WipReporter.h"
#include "thr_ThreadSingleton.h"

namespace {

odb_SequenceString Texts(std::initializer_list<const char*> texts) {
  odb_SequenceString list;
  for (const char* t : texts) list.append(t);
  return list;
}

// A program's own reporter that writes errors down and returns: the error must still end the
// operation.
class ListeningReporter : public wip_WipReporter {
 public:
  void Error(const odb_String& text) override { errors.push_back(text); }
  void Error(const odb_SequenceString& texts) override { Error(texts[0]); }
  void Warning(const odb_String&) override {}
  void Warning(const odb_SequenceString&) override {}
  void Landmark(const odb_String&) override {}
  void Verbose(const odb_String&) override {}
  void Print(const odb_String&) override {}
  void Print(const odb_SequenceString&) override {}
  bool Interrupted() override { return false; }
  void CommandDone() override {}
  void InterruptedThrow() override {}

  std::vector<odb_String> errors;
};

}  // namespace

TEST(WipWIP, ForwardsToTheReporterOfItsOwnThreadOnly) {
  std::ostringstream out;
  odb_WipReporter reporter(out);
  wip_WIP& wip = thr_ThreadSingleton<wip_WIP>::Instance();
  ASSERT_EQ(wip.Install(&reporter), nullptr);
  wip.Warning("here");
  std::thread other([] {
    // This thread has no reporter: its warnings are dropped, but an error still throws.
    wip_WIP& own = thr_ThreadSingleton<wip_WIP>::Instance();
    EXPECT_EQ(own.Reporter(), nullptr);
    own.Warning("elsewhere");
    try {
      own.Error("unheard");
      ADD_FAILURE() << "an error without a reporter returned";
    } catch (const odb_Exception& e) {
      EXPECT_STREQ(e.JournalMessage().CStr(), "unheard");
    }
  });
  other.join();
  EXPECT_THROW(wip.Error("stop"), odb_Exception);
  EXPECT_EQ(wip.Uninstall(), &reporter);
  wip.Warning("after");
  EXPECT_EQ(out.str(), "Warning: here\nERROR: stop\n");
}

TEST(WipWIP, ErrorThrowsWhenTheInstalledReporterReturns) {
  ListeningReporter reporter;
  wip_WIP& wip = thr_ThreadSingleton<wip_WIP>::Instance();
  wip_WipReporter* previous = wip.Install(&reporter);
  EXPECT_THROW(wip.Error(Texts({"first", "second"})), odb_Exception);
  wip.Install(previous);
  ASSERT_EQ(reporter.errors.size(), 1u);
  EXPECT_STREQ(reporter.errors[0].CStr(), "first");
}
