// Timing and memory helpers shared by the benchmark programs.
#ifndef BENCH_TIMING_H
#define BENCH_TIMING_H

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

using bench_Clock = std::chrono::steady_clock;

// Wall-clock seconds that `f` takes.
template <class F>
double Seconds(F&& f) {
  auto start = bench_Clock::now();
  f();
  return std::chrono::duration<double>(bench_Clock::now() - start).count();
}

// The best of `runs` timings, so that one noisy run does not decide a figure.
template <class F>
double Best(int runs, F&& f) {
  double best = 1e30;
  for (int i = 0; i < runs; ++i) best = std::min(best, Seconds(f));
  return best;
}

// A line of /proc/self/status in KiB ("VmHWM:", "VmRSS:" ...), or 0 when it is missing.
inline long StatusKb(const char* key) {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line))
    if (line.rfind(key, 0) == 0) return std::atol(line.c_str() + std::strlen(key));
  return 0;
}

#endif
