// fault_Figures: what the fault runs found, counted for the summary the suite prints.
#ifndef TESTS_FAULT_FIGURES_H
#define TESTS_FAULT_FIGURES_H

#include <cstdio>
#include <string>

struct fault_Figures {
  int runs = 0;         // runs in which a fault was injected
  int injected = 0;     // calls failed, over those runs
  int silent = 0;       // runs in which no call reported the fault (the save went through)
  int unconfirmed = 0;  // runs whose save reached the file but was not confirmed on disk
  int memoryWrong = 0;  // runs after which the writer did not show its last save
  int lost = 0;         // runs after which the file lacked saved rows
  int visible = 0;      // runs after which the file held unsaved rows
  int stuck = 0;        // runs whose writer could not save again once the fault was gone
  int retried = 0;      // runs whose save after the fault succeeded and read back whole

  void Add(const fault_Figures& o) {
    runs += o.runs;
    injected += o.injected;
    silent += o.silent;
    unconfirmed += o.unconfirmed;
    memoryWrong += o.memoryWrong;
    lost += o.lost;
    visible += o.visible;
    stuck += o.stuck;
    retried += o.retried;
  }
  void Print(const std::string& title) const {
    std::printf(
        "[fault] %s: %d runs, %d faults injected, %d states lost, %d unsaved data visible, %d "
        "writers wrong in memory, %d writers stuck, %d retries succeeded, %d saves got past the "
        "fault, %d saves in the file but unconfirmed\n",
        title.c_str(), runs, injected, lost, visible, memoryWrong, stuck, retried, silent,
        unconfirmed);
    std::fflush(stdout);
  }
  // The sum over the tests this process ran.
  static fault_Figures& Totals() {
    static fault_Figures totals;
    return totals;
  }
};

#endif
