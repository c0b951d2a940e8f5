// odb_SetData: what set handles share: the set's name and kind and, per mesh it spans, the
// positions of its members and the faces of a surface; internal.
#ifndef ODB_SETDATA_H
#define ODB_SETDATA_H

#include <memory>
#include <vector>

#include "odb_MeshData.h"
#include "odb_MeshList.h"
#include "odb_Repository.h"
#include "odb_Set.h"
#include "store_Model.h"

struct odb_SetData {
  struct Member {
    std::shared_ptr<odb_MeshData> mesh;
    std::vector<int> positions;
    std::vector<int> faces;
  };

  odb_String name;
  odb_Set::Type type = odb_Set::NODE_SET;
  bool internal = false;
  odb_MeshList meshes;
  std::vector<Member> members;

  // A member from labels given by a caller: throws "Node LABEL not found in "OWNER"." (or
  // Element) for a label the mesh lacks and, for surfaces, "Face F is not a face of element
  // LABEL of type T." for a face the element type does not have (user elements accept any face).
  static Member MakeMember(const std::shared_ptr<odb_MeshData>& mesh, odb_Set::Type type,
                           const int* labels, int count, const int* faces);
  // A set from its stored record; `meshOf` gives the mesh of each member's instance. Labels the
  // mesh lacks are dropped (the writers refuse them, so only a damaged file has any).
  static std::shared_ptr<odb_SetData> FromRecord(
      const store_SetRecord& record,
      const std::vector<std::shared_ptr<odb_MeshData>>& memberMeshes);
  // The stored record of this set, labels taken from the meshes.
  store_SetRecord ToRecord() const;
};

// Of three set repositories (node sets, element sets, surfaces), the one for sets of `type`.
inline odb_Repository<odb_String, odb_Set>& odb_SetsOfType(
    odb_Set::Type type, odb_Repository<odb_String, odb_Set>& nodeSets,
    odb_Repository<odb_String, odb_Set>& elementSets,
    odb_Repository<odb_String, odb_Set>& surfaces) {
  return type == odb_Set::NODE_SET      ? nodeSets
         : type == odb_Set::ELEMENT_SET ? elementSets
                                        : surfaces;
}

// Reaches the internals of set handles from the implementation.
struct odb_SetAccess {
  static odb_Set Make(std::shared_ptr<odb_SetData> data) { return odb_Set(std::move(data)); }
  static const std::shared_ptr<odb_SetData>& Data(const odb_Set& s) { return s.m_data; }
};

#endif
