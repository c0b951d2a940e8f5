#include "odb_Initialize.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "odb_Startup.h"
#include "thr_ThreadSingleton.h"
#include "wip_WIP.h"

namespace {

std::vector<std::string>& Events() {
  static std::vector<std::string> events;
  return events;
}

void Record(const char* module, bool up) {
  Events().push_back(std::string(up ? "+" : "-") + module);
}

TEST(Initialize, NestedCallsStartOnceAndStopInReverseOrder) {
  Events().clear();
  odb_ModuleObserver previous = odb_SetModuleObserver(Record);
  int count = 0;
  odb_initialize(count);
  odb_initialize(count);
  EXPECT_EQ(count, 1);
  odb_finalize(count);
  EXPECT_TRUE(odb_isInitialized());
  EXPECT_EQ(Events(), (std::vector<std::string>{"+store", "+reporter", "+input deck", "+schema conversion"}));
  odb_finalize(count);
  EXPECT_FALSE(odb_isInitialized());
  EXPECT_EQ(count, 0);
  EXPECT_EQ(Events(), (std::vector<std::string>{"+store", "+reporter", "+input deck", "+schema conversion",
                                                "-schema conversion", "-input deck", "-reporter", "-store"}));
  odb_finalize(count);
  EXPECT_EQ(count, 0) << "an unmatched finalize does nothing";
  odb_SetModuleObserver(previous);
}

TEST(Initialize, ApiPairInstallsTheStandardErrorReporterWhileUp) {
  odb_initializeAPI();
  odb_initializeAPI();
  EXPECT_NE(thr_ThreadSingleton<wip_WIP>::Instance().Reporter(), nullptr);
  odb_finalizeAPI();
  EXPECT_TRUE(odb_isInitialized());
  odb_finalizeAPI();
  EXPECT_FALSE(odb_isInitialized());
  EXPECT_EQ(thr_ThreadSingleton<wip_WIP>::Instance().Reporter(), nullptr);
}

}  // namespace
