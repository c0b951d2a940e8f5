#include "thr_GlobalSingleton.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "AssertRecorder.h"

namespace {

std::atomic<int> g_constructed{0};

class Registry : public thr_GlobalSingleton<Registry> {
 public:
  Registry() {
    ++g_constructed;
    // Widens the window in which a second creator, or a reader of an unfinished object, could
    // slip in.
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    finished = true;
  }
  bool finished = false;
};

}  // namespace

TEST(ThrGlobalSingleton, CreatedOnceWhenEightThreadsRace) {
  g_constructed = 0;
  std::atomic<bool> go{false};
  std::vector<Registry*> seen(8, nullptr);
  std::atomic<int> sawUnfinished{0};
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([&, i] {
      while (!go) std::this_thread::yield();
      seen[i] = &Registry::Instance();
      if (!seen[i]->finished) ++sawUnfinished;
    });
  }
  go = true;
  for (auto& t : threads) t.join();
  EXPECT_EQ(g_constructed, 1);
  EXPECT_EQ(sawUnfinished, 0);
  for (Registry* r : seen) EXPECT_EQ(r, thr_GlobalSingletonBase<Registry>::Instance());
  Registry::Destroy();
  EXPECT_EQ(thr_GlobalSingletonBase<Registry>::Instance(), nullptr);
  Registry::Destroy();  // nothing left to destroy
  // After a Destroy the next Instance() makes a fresh one.
  Registry::Instance();
  EXPECT_EQ(g_constructed, 2);
  Registry::Destroy();
}

TEST(ThrGlobalSingleton, SecondObjectIsReportedAndNeverRegistered) {
  AssertRecorder recorder;
  Registry& first = Registry::Instance();
  {
    Registry second;
    ASSERT_EQ(recorder.fired().size(), 1u);
    EXPECT_EQ(recorder.fired()[0].condition, "instance == 0");
    EXPECT_EQ(recorder.fired()[0].source, "include/thr_GlobalSingleton");
    EXPECT_EQ(recorder.fired()[0].line, 62);
    EXPECT_EQ(&Registry::Instance(), &first);
  }
  // Destroying the unregistered one is reported too, and leaves the first in place.
  ASSERT_EQ(recorder.fired().size(), 2u);
  EXPECT_EQ(recorder.fired()[1].condition,
            "instance == thr_GlobalSingletonBase<Class>::Instance()");
  EXPECT_EQ(recorder.fired()[1].line, 71);
  EXPECT_EQ(thr_GlobalSingletonBase<Registry>::Instance(), &first);
  Registry::Destroy();
}
