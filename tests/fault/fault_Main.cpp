// The fault suite's program: the tests, then the sum of what their runs found.
#include <gtest/gtest.h>

#include "fault_Figures.h"

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  const int failed = RUN_ALL_TESTS();
  const fault_Figures& totals = fault_Figures::Totals();
  if (totals.runs > 0) totals.Print("all faults of this run");
  return failed;
}
