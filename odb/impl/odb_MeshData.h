// odb_MeshData: one mesh as the public records see it: a part's stored mesh, the instance it is
// viewed through (none for the part itself) and that instance's placement; internal.
//
// Shared by the mesh handle, the entity and every node and element sequence over it. Builds
// odb_Node and odb_Element records from the stored arrays, placing instance nodes on the way.
#ifndef ODB_MESHDATA_H
#define ODB_MESHDATA_H

#include <memory>
#include <string>
#include <vector>

#include "odb_Element.h"
#include "odb_Mesh.h"
#include "odb_Node.h"
#include "odb_SectionCategoryData.h"
#include "odb_String.h"
#include "store_Mesh.h"
#include "store_Model.h"

struct odb_MeshData {
  odb_MeshData(std::shared_ptr<store_Mesh> mesh, const odb_String& partName,
               const odb_String& instanceName, const store_Placement* placement,
               odb_CategoryLookup categories);

  std::shared_ptr<store_Mesh> mesh;
  odb_String partName;
  odb_String instanceName;
  bool placed = false;
  double rotation[3][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
  double shift[3] = {0, 0, 0};  // x' = rotation * x + shift
  odb_CategoryLookup categories;

  int MeshIndex() const { return static_cast<int>(mesh->PartId()); }
  int NodeCount() { return mesh->NodeCount(); }
  int ElementCount() { return mesh->ElementCount(); }
  // Positions by label; throw the mesh's "invalid label" messages for labels it lacks.
  int NodePositionOf(int label);
  int ElementPositionOf(int label);
  // Records by position (and label, when the caller knows it: one memory access less); the
  // caller checks the position.
  odb_Node NodeAt(int position);
  odb_Node NodeAt(int position, int label);
  // The placed coordinates of the node at `position`, in double; the caller checks the position.
  void PlacedAt(int position, double xyz[3]);
  odb_Element ElementAt(int position);
  odb_Element ElementAt(int position, int label);

 private:
  // Resolves the blocks not yet resolved (elements added since are new blocks at the end).
  void ResolveBlocks();
  // Per element block: its type name, category, geometry class and integration points.
  std::vector<odb_String> m_blockTypes;
  std::vector<odb_SectionCategory> m_blockCategories;
  std::vector<odb_Enum::odb_ElementGeometryClass> m_blockGeometry;
  std::vector<int> m_blockPoints;
};

// Reaches the internals of mesh handles from the implementation.
struct odb_MeshAccess {
  static odb_Mesh Make(std::shared_ptr<odb_MeshData> data) { return odb_Mesh(std::move(data)); }
  static const std::shared_ptr<odb_MeshData>& Data(const odb_Mesh& m) { return m.m_data; }
};

#endif
