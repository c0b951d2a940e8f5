// The progress line of long work (diff, dump, export): "export: frame 3 of 10, 412.5 MB/s" on
// standard error, rewritten in place at most five times a second, and cleared when the work is
// done. It shows only on a terminal: when standard error is a file or a pipe, or with --quiet,
// nothing is written, so scripts and logs see the output alone.
#ifndef TOOL_PROGRESS_H
#define TOOL_PROGRESS_H

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <string>

class tool_Progress {
 public:
  // `what` names the work ("export"), `unit` what is counted ("frame"), `total` how many there
  // are. `quiet` turns the line off whatever standard error is.
  tool_Progress(std::string what, std::string unit, int total, bool quiet);
  // Clears the line.
  ~tool_Progress() { finish(); }
  tool_Progress(const tool_Progress&) = delete;
  tool_Progress& operator=(const tool_Progress&) = delete;

  // Counts bytes read (or written) for the rate.
  void addBytes(std::uint64_t bytes) { m_bytes += bytes; }
  // One more unit done.
  void done(int units = 1);
  // Removes the line; later calls write nothing.
  void finish();
  bool shown() const { return m_enabled; }

  // Whether a line would show: standard error is a terminal and quiet is off.
  static bool Wanted(bool quiet);

 private:
  void Draw();

  std::string m_what, m_unit;
  int m_total, m_done = 0;
  std::uint64_t m_bytes = 0;
  bool m_enabled, m_drawn = false;
  std::chrono::steady_clock::time_point m_start, m_last;
};

#endif
