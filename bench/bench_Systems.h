// The end-to-end benchmark's model and the three systems it writes and reads it with: plain
// files (fwrite/fread), HDF5's C API, and this library's public API.
#ifndef BENCH_SYSTEMS_H
#define BENCH_SYSTEMS_H

#include <string>
#include <vector>

// What a reader must know of the model to size its arrays.
struct bench_Shape {
  int nodes = 0, elements = 0, frames = 0;
};

// A block of nx x ny x nz 8-node bricks and one frame's results: U (3 floats) at every node and
// S (6 floats) at 8 integration points of every element. Every frame writes the same values.
struct bench_Model {
  int frames = 0;
  std::vector<int> nodeLabels, elementLabels;
  std::vector<float> coordinates;  // 3 per node
  std::vector<int> connectivity;   // 8 per element
  std::vector<float> u, s;         // one frame
  int Nodes() const { return static_cast<int>(nodeLabels.size()); }
  int Elements() const { return static_cast<int>(elementLabels.size()); }
  double MeshBytes() const;
  double FrameBytes() const;  // labels and values of U and S
  bench_Shape Shape() const { return {Nodes(), Elements(), frames}; }
};

bench_Model bench_MakeModel(int nx, int ny, int nz, int frames);

// What a read brings back, in the caller's arrays; the sums keep the reads from being elided
// and tell the systems' reads apart if one went wrong.
struct bench_ReadBuffers {
  std::vector<int> nodeLabels, elementLabels, connectivity;
  std::vector<float> coordinates;
  std::vector<int> uLabels, sLabels;
  std::vector<float> u, s;
  double sum = 0;
  void Add(const float* values, std::size_t n);
};

// Seconds of the stages of one read in this process: open, mesh, every frame's U and S, close.
struct bench_ReadTimes {
  double open = 0, mesh = 0, results = 0, close = 0;
  double Total() const { return open + mesh + results + close; }
};

// Seconds of one write: the mesh, then every frame, then what makes the file durable and closed.
struct bench_WriteTimes {
  double mesh = 0, frames = 0, close = 0;
  double Total() const { return mesh + frames + close; }
};

// Each system writes the model to `path` (saving after every frame, or once at the end, until
// the file is on disk and closed) and reads all of it back into `into`.
struct bench_System {
  const char* name;
  bench_WriteTimes (*write)(const bench_Model& model, const std::string& path, bool savePerFrame);
  bench_ReadTimes (*read)(const bench_Shape& shape, const std::string& path,
                          bench_ReadBuffers& into);
  // Seconds of opening and closing the file, best of many.
  double (*open)(const std::string& path);
};

extern const bench_System bench_Raw;
extern const bench_System bench_Hdf5;
extern const bench_System bench_Odb;

// Opens `path` for writing, syncs and closes it: what makes a file another library wrote
// durable.
void bench_SyncFile(const std::string& path);

#endif
