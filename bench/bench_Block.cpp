#include "bench_Block.h"

bench_Block bench_MakeBlock(int cells) {
  bench_Block b{cells, {}, {}, {}, {}};
  const int n = cells + 1;
  for (int i = 0; i < n * n * n; ++i) b.nodeLabels.push_back(i + 1);
  for (int i = 0; i < cells * cells * cells; ++i) b.elementLabels.push_back(i + 1);
  b.u.resize(3 * b.nodeLabels.size());
  for (std::size_t i = 0; i < b.u.size(); ++i) b.u[i] = 1e-3f * static_cast<float>(i % 977);
  b.s.resize(b.elementLabels.size() * 8 * 6);
  for (std::size_t i = 0; i < b.s.size(); ++i)
    b.s[i] = static_cast<float>((i * 7919) % 1000) - 500.0f;
  return b;
}

odb_Instance& bench_WriteBlockMesh(odb_Odb& odb, const bench_Block& b) {
  odb_DiscretePart& part = odb.DiscretePart("BLOCK", odb_Enum::THREE_D, odb_Enum::DEFORMABLE_BODY);
  const int n = b.cells + 1;
  std::vector<float> xyz;
  xyz.reserve(3 * b.nodeLabels.size());
  for (int i = 0; i < b.Nodes(); ++i)
    xyz.insert(xyz.end(), {float(i % n), float(i / n % n), float(i / (n * n))});
  part.addNodes(b.nodeLabels, xyz);
  std::vector<int> connectivity;
  connectivity.reserve(8 * b.elementLabels.size());
  for (int e = 0; e < b.Elements(); ++e) {
    const int x = e % b.cells, y = e / b.cells % b.cells, z = e / (b.cells * b.cells);
    const int c = 1 + x + n * y + n * n * z;
    connectivity.insert(connectivity.end(), {c, c + 1, c + 1 + n, c + n, c + n * n, c + 1 + n * n,
                                             c + 1 + n + n * n, c + n + n * n});
  }
  part.addElements(b.elementLabels, connectivity, "C3D8");
  return odb.rootAssembly().Instance("BLOCK-1", part);
}
