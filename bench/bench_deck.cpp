// Writing the input deck of a 1,000,000-element model, against the same node and element lines
// written by a plain fprintf loop from arrays in memory. Both are timed in this run; the figure
// is their ratio. The deck's time includes reading the mesh from the database file.
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "bench_Timing.h"
#include "odb_API.h"

namespace {

int Cells(int argc, char** argv) {
  for (int i = 1; i + 1 < argc; ++i)
    if (std::string(argv[i]) == "--cells") return std::stoi(argv[i + 1]);
  return 100;
}

}  // namespace

int main(int argc, char** argv) {
  const int n = Cells(argc, argv);  // n^3 bricks
  // A folder of its own in the temporary folder, removed at the end (the files take ~260 MB).
  const std::filesystem::path where =
      std::filesystem::temp_directory_path() / ("bench_deck_" + std::to_string(getpid()));
  std::filesystem::create_directories(where);
  const std::string folder = where.string();
  const std::string odbPath = folder + "/model.odb", deckPath = folder + "/model.inp",
                    plainPath = folder + "/plain.inp";

  const auto node = [&](int i, int j, int k) { return 1 + i + (n + 1) * (j + (n + 1) * k); };
  std::vector<int> nodeLabels, elementLabels, connectivity;
  std::vector<float> xyz;
  for (int k = 0; k <= n; ++k)
    for (int j = 0; j <= n; ++j)
      for (int i = 0; i <= n; ++i) {
        nodeLabels.push_back(node(i, j, k));
        xyz.insert(xyz.end(), {0.1f * i, 0.37f * j, 1.3f * k + 0.01f});
      }
  for (int k = 0; k < n; ++k)
    for (int j = 0; j < n; ++j)
      for (int i = 0; i < n; ++i) {
        elementLabels.push_back(static_cast<int>(elementLabels.size()) + 1);
        connectivity.insert(connectivity.end(),
                            {node(i, j, k), node(i + 1, j, k), node(i + 1, j + 1, k),
                             node(i, j + 1, k), node(i, j, k + 1), node(i + 1, j, k + 1),
                             node(i + 1, j + 1, k + 1), node(i, j + 1, k + 1)});
      }

  odb_initializeAPI();
  {
    odb_Odb& odb = Odb("bench", "", "", odbPath.c_str());
    odb_DiscretePart& part =
        odb.DiscretePart("Block", odb_Enum::THREE_D, odb_Enum::DEFORMABLE_BODY);
    part.addNodes(nodeLabels, xyz);
    part.addElements(elementLabels, connectivity, "C3D8");
    odb.rootAssembly().Instance("Block-1", part);
    odb.steps().StaticStep("Load", "", "");
    saveOdb(odb);
    closeOdb(odb);
  }

  const int runs = 3;
  const double plain = Best(runs, [&] {
    std::FILE* f = std::fopen(plainPath.c_str(), "w");
    std::fprintf(f, "*Node\n");
    for (std::size_t i = 0; i < nodeLabels.size(); ++i)
      std::fprintf(f, "%d, %.9g, %.9g, %.9g\n", nodeLabels[i], xyz[3 * i], xyz[3 * i + 1],
                   xyz[3 * i + 2]);
    std::fprintf(f, "*Element, type=C3D8\n");
    for (std::size_t e = 0; e < elementLabels.size(); ++e) {
      const int* c = &connectivity[8 * e];
      std::fprintf(f, "%d, %d, %d, %d, %d, %d, %d, %d, %d\n", elementLabels[e], c[0], c[1], c[2],
                   c[3], c[4], c[5], c[6], c[7]);
    }
    std::fclose(f);
  });
  // Each run opens the database afresh, so the deck reads the mesh from the file every time.
  const double deck = Best(runs, [&] {
    odb_Odb& odb = openOdb(odbPath.c_str(), true);
    odb.writeInput(deckPath.c_str());
    closeOdb(odb);
  });

  std::printf("%d elements, %zu nodes\n", n * n * n, nodeLabels.size());
  std::printf("plain fprintf loop (nodes and elements)   %.3f s\n", plain);
  std::printf("odb_Odb::writeInput (whole deck, from file) %.3f s\n", deck);
  std::printf("ratio deck / fprintf                      %.2f (target <= 2)\n", deck / plain);
  odb_finalizeAPI();
  std::filesystem::remove_all(where);
  return 0;
}
