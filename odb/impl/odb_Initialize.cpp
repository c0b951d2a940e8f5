#include "odb_Initialize.h"

#include <cstdlib>
#include <iostream>
#include <memory>

#include "dbcS_SchemaConversion.h"
#include "odb_OdbRepository.h"
#include "odb_Startup.h"
#include "odb_WipReporter.h"
#include "oif_Initialize.h"
#include "store_LargeAllocator.h"
#include "store_Startup.h"
#include "thr_ThreadSingleton.h"
#include "wip_WIP.h"

namespace {

// The thread's warning sink exists from start-up; at shut-down it lets go of its reporter.
void ReporterUp() {
  thr_ThreadSingleton<wip_WIP>::Instance();
}
void ReporterDown() {
  thr_ThreadSingleton<wip_WIP>::Instance().Uninstall();
}

// The input-deck generator counts its start-ups on a counter of its own.
int g_inputDeckCount = 0;
void InputDeckUp() {
  oif_initialize(g_inputDeckCount);
}
void InputDeckDown() {
  oif_finalize(g_inputDeckCount);
}

struct Module {
  const char* name;
  void (*up)();
  void (*down)();
};

const Module kModules[] = {
    {"store", store_Startup, store_Shutdown},
    {"reporter", ReporterUp, ReporterDown},
    {"input deck", InputDeckUp, InputDeckDown},
    {"schema conversion", dbcS_initialize, dbcS_finalize},
};

int g_nesting = 0;
int g_apiNesting = 0;
int g_apiCount = 0;
bool g_exitHandlerRegistered = false;
std::unique_ptr<odb_WipReporter> g_reporter;
odb_ModuleObserver g_observer = nullptr;

void FinalizeAtExit() {
  if (g_apiCount != 0) odb_finalizeAPI();
}

}  // namespace

odb_ModuleObserver odb_SetModuleObserver(odb_ModuleObserver observer) {
  odb_ModuleObserver previous = g_observer;
  g_observer = observer;
  return previous;
}

bool odb_isInitialized() {
  return g_nesting > 0;
}

void odb_initialize(int& count) {
  if (g_nesting++ != 0) return;
  ++count;
  for (const Module& m : kModules) {
    m.up();
    if (g_observer) g_observer(m.name, true);
  }
}

void odb_finalize(int& count) {
  if (g_nesting == 0 || --g_nesting != 0) return;
  --count;
  thr_GlobalSingletonBase<odb_OdbRepository>::Finalize();
  for (int i = static_cast<int>(sizeof kModules / sizeof kModules[0]) - 1; i >= 0; --i) {
    kModules[i].down();
    if (g_observer) g_observer(kModules[i].name, false);
  }
  store_ReleaseKeptLarge();
}

void odb_initializeAPI() {
  if (g_apiNesting++ != 0) return;
  ++g_apiCount;
  odb_initialize(g_apiCount);
  if (!g_exitHandlerRegistered) g_exitHandlerRegistered = std::atexit(FinalizeAtExit) == 0;
  g_reporter.reset(new odb_WipReporter(std::cerr));
  thr_ThreadSingleton<wip_WIP>::Instance().Install(g_reporter.get());
}

void odb_finalizeAPI() {
  if (g_apiNesting == 0 || --g_apiNesting != 0) return;
  --g_apiCount;
  odb_finalize(g_apiCount);
  thr_ThreadSingleton<wip_WIP>::Instance().Uninstall();
  g_reporter.reset();
}
