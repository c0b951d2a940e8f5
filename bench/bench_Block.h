// bench_Block: the block of cells x cells x cells C3D8 bricks that the field benchmarks share
// (bench_field's W60 file at 60), with one frame's U at the nodes and S at 8 integration points,
// and the writing of its mesh into a database.
#ifndef BENCH_BLOCK_H
#define BENCH_BLOCK_H

#include <cstddef>
#include <vector>

#include "odb_API.h"

struct bench_Block {
  int cells;
  std::vector<int> nodeLabels, elementLabels;  // 1, 2, 3 ... in x, then y, then z order
  std::vector<float> u, s;                     // one frame's values, distinct and reproducible
  int Nodes() const { return static_cast<int>(nodeLabels.size()); }
  int Elements() const { return static_cast<int>(elementLabels.size()); }
  std::size_t FrameBytes() const { return (u.size() + s.size()) * sizeof(float); }
};

bench_Block bench_MakeBlock(int cells);

// Writes the block's part "BLOCK" (nodes at integer coordinates) through the flat forms, and
// places it once as "BLOCK-1"; returns the instance.
odb_Instance& bench_WriteBlockMesh(odb_Odb& odb, const bench_Block& b);

#endif
