#include <fcntl.h>
#include <unistd.h>

#include "bench_Systems.h"

double bench_Model::MeshBytes() const {
  return 4.0 *
         (nodeLabels.size() + coordinates.size() + elementLabels.size() + connectivity.size());
}

double bench_Model::FrameBytes() const {
  return 4.0 * (nodeLabels.size() + u.size() + elementLabels.size() + s.size());
}

bench_Model bench_MakeModel(int nx, int ny, int nz, int frames) {
  bench_Model m;
  m.frames = frames;
  const int px = nx + 1, py = ny + 1, pz = nz + 1;
  for (int i = 0; i < px * py * pz; ++i) {
    m.nodeLabels.push_back(i + 1);
    m.coordinates.insert(m.coordinates.end(),
                         {float(i % px), float(i / px % py), float(i / (px * py))});
  }
  for (int e = 0; e < nx * ny * nz; ++e) {
    m.elementLabels.push_back(e + 1);
    const int x = e % nx, y = e / nx % ny, z = e / (nx * ny);
    const int c = 1 + x + px * y + px * py * z, k = px * py;
    m.connectivity.insert(m.connectivity.end(), {c, c + 1, c + 1 + px, c + px, c + k, c + 1 + k,
                                                 c + 1 + px + k, c + px + k});
  }
  m.u.resize(3 * m.nodeLabels.size());
  for (std::size_t i = 0; i < m.u.size(); ++i) m.u[i] = 1e-3f * static_cast<float>(i % 977);
  m.s.resize(m.elementLabels.size() * 8 * 6);
  for (std::size_t i = 0; i < m.s.size(); ++i)
    m.s[i] = static_cast<float>((i * 7919) % 1000) - 500.0f;
  return m;
}

void bench_ReadBuffers::Add(const float* values, std::size_t n) {
  // A sample a page apart: enough to tell two reads apart, cheap next to the read itself.
  for (std::size_t i = 0; i < n; i += 1024) sum += values[i];
}

void bench_SyncFile(const std::string& path) {
  const int fd = ::open(path.c_str(), O_RDWR | O_CLOEXEC);
  if (fd < 0) return;
  ::fsync(fd);
  ::close(fd);
}
