#include "tool_Progress.h"

#include <unistd.h>

#include <utility>

bool tool_Progress::Wanted(bool quiet) {
  return !quiet && isatty(STDERR_FILENO);
}

tool_Progress::tool_Progress(std::string what, std::string unit, int total, bool quiet)
    : m_what(std::move(what)),
      m_unit(std::move(unit)),
      m_total(total),
      m_enabled(Wanted(quiet)),
      m_start(std::chrono::steady_clock::now()),
      m_last(m_start) {}

void tool_Progress::done(int units) {
  m_done += units;
  if (!m_enabled) return;
  const auto now = std::chrono::steady_clock::now();
  if (m_done < m_total && now - m_last < std::chrono::milliseconds(200)) return;
  m_last = now;
  Draw();
}

void tool_Progress::Draw() {
  const double seconds =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count();
  const double rate = seconds > 0 ? m_bytes / 1e6 / seconds : 0;
  // "\r" goes back to the start of the line, "\033[K" clears what a longer line left.
  std::fprintf(stderr, "\r%s: %s %d of %d, %.1f MB/s\033[K", m_what.c_str(), m_unit.c_str(), m_done,
               m_total, rate);
  std::fflush(stderr);
  m_drawn = true;
}

void tool_Progress::finish() {
  if (m_enabled && m_drawn) {
    std::fputs("\r\033[K", stderr);
    std::fflush(stderr);
  }
  m_enabled = false;
}
