// Plain files: the arrays one after the other, written with fwrite and synced, read with fread.
#include <unistd.h>

#include <cstdio>

#include "bench_Systems.h"
#include "bench_Timing.h"

namespace {

template <class T>
void Put(std::FILE* f, const std::vector<T>& values) {
  std::fwrite(values.data(), sizeof(T), values.size(), f);
}

template <class T>
void Get(std::FILE* f, std::vector<T>& into, std::size_t n) {
  into.resize(n);
  if (std::fread(into.data(), sizeof(T), n, f) != n) std::fprintf(stderr, "raw: short read\n");
}

bench_WriteTimes Write(const bench_Model& m, const std::string& path, bool savePerFrame) {
  bench_WriteTimes t;
  std::FILE* f = nullptr;
  t.mesh = Seconds([&] {
    f = std::fopen(path.c_str(), "wb");
    Put(f, m.nodeLabels);
    Put(f, m.coordinates);
    Put(f, m.elementLabels);
    Put(f, m.connectivity);
  });
  t.frames = Seconds([&] {
    for (int i = 0; i < m.frames; ++i) {
      Put(f, m.nodeLabels);
      Put(f, m.u);
      Put(f, m.elementLabels);
      Put(f, m.s);
      if (savePerFrame) {
        std::fflush(f);
        ::fsync(fileno(f));
      }
    }
  });
  t.close = Seconds([&] {
    std::fflush(f);
    ::fsync(fileno(f));
    std::fclose(f);
  });
  return t;
}

bench_ReadTimes Read(const bench_Shape& m, const std::string& path, bench_ReadBuffers& b) {
  bench_ReadTimes t;
  std::FILE* f = nullptr;
  t.open = Seconds([&] { f = std::fopen(path.c_str(), "rb"); });
  t.mesh = Seconds([&] {
    Get(f, b.nodeLabels, std::size_t(m.nodes));
    Get(f, b.coordinates, 3 * std::size_t(m.nodes));
    Get(f, b.elementLabels, std::size_t(m.elements));
    Get(f, b.connectivity, 8 * std::size_t(m.elements));
  });
  t.results = Seconds([&] {
    for (int i = 0; i < m.frames; ++i) {
      Get(f, b.uLabels, std::size_t(m.nodes));
      Get(f, b.u, 3 * std::size_t(m.nodes));
      Get(f, b.sLabels, std::size_t(m.elements));
      Get(f, b.s, 48 * std::size_t(m.elements));
      b.Add(b.u.data(), b.u.size());
      b.Add(b.s.data(), b.s.size());
    }
  });
  t.close = Seconds([&] { std::fclose(f); });
  return t;
}

double Open(const std::string& path) {
  return Best(20, [&] { std::fclose(std::fopen(path.c_str(), "rb")); });
}

}  // namespace

const bench_System bench_Raw = {"raw", Write, Read, Open};
