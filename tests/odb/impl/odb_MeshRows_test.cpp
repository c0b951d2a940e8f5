#include "odb_MeshRows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <thread>
#include <vector>

TEST(MeshRows, LargeRangesAreSplitAcrossTwoThreadsAndTheFirstRefusalWins) {
  const int n = 100000;
  odb_MeshRows rows(n);
  std::vector<int> seen(n, 0);
  std::vector<std::thread::id> threads(n);
  std::vector<int> refused;
  auto work = [&](int from, int to) {
    for (int i = from; i < to; ++i) {
      ++seen[i];
      threads[i] = std::this_thread::get_id();
      for (int r : refused)
        if (r == i) return i;
    }
    return -1;
  };
  EXPECT_EQ(rows.Run(0, n, work), -1);
  EXPECT_EQ(std::count(seen.begin(), seen.end(), 1), n);
  EXPECT_EQ(threads[0], std::this_thread::get_id());
  EXPECT_NE(threads[n - 1], std::this_thread::get_id());

  refused = {70000};
  EXPECT_EQ(rows.Run(0, n, work), 70000);
  refused = {90000, 30000};
  EXPECT_EQ(rows.Run(0, n, work), 30000);
  refused = {};
  EXPECT_EQ(rows.Run(10, 1000, work), -1);  // too small to split: all on the caller
  EXPECT_EQ(threads[1009], std::this_thread::get_id());

  EXPECT_THROW(rows.Run(0, n,
                        [&](int from, int) -> int {
                          if (from > 0) throw std::runtime_error("helper");
                          return -1;
                        }),
               std::runtime_error);
  EXPECT_EQ(rows.Run(0, n, work), -1);  // still serving after a failure
}

TEST(MeshRows, SmallAdditionsRunOnTheCallerAlone) {
  odb_MeshRows rows(1000);
  std::thread::id ran;
  EXPECT_EQ(rows.Run(0, 1000,
                     [&](int from, int to) {
                       ran = std::this_thread::get_id();
                       return to - from == 1000 ? -1 : from;
                     }),
            -1);
  EXPECT_EQ(ran, std::this_thread::get_id());
}
