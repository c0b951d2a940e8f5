// odb_MeshList: the meshes of an entity (one for a part or an instance) or of the assembly (one
// per instance), in the order they were added.
//
// A cow_List of mesh handles: copies share it (O(1)); lookups scan it, the lists being short.
// One thread at a time.
#ifndef ODB_MESHLIST_H
#define ODB_MESHLIST_H

#include "cow_List.h"
#include "odb_Element.h"
#include "odb_Export.h"
#include "odb_Mesh.h"
#include "odb_Sequence.h"
#include "odb_String.h"

// The messages of mesh lists.
enum odb_MeshListEnm : int { odb_MeshList_INVALID_PART_INDEX = 0, odb_MeshList_INVALID_NAME = 1 };

template <>
struct QTVODB_EXPORT uti_LabelTable<odb_MeshListEnm, 1> {
  static const uti_LabelRow<odb_MeshListEnm> rows[];
};

class QTVODB_EXPORT odb_MeshList {
 public:
  int size() const { return m_meshes.Size(); }
  void append(const odb_Mesh& mesh) { m_meshes.Append(mesh); }

  // Mesh i (0-based); throws "Invalid part index." outside the list.
  const odb_Mesh& mesh(int i) const;
  // The mesh seen through the instance `name`; throws "Invalid mesh name." when none is.
  const odb_Mesh& mesh(const odb_String& name) const;
  // The last mesh whose stored index is `meshIndex`; throws "Invalid part index." when none.
  const odb_Mesh& meshFromMeshIndex(int meshIndex) const;
  // The instance names of the meshes, in list order.
  odb_SequenceString instanceNames() const;
  // The positions of an element's nodes in the node list of its mesh; throws "Element not
  // found." when no mesh of the list is the element's, "Element index not found." when that
  // mesh lacks the element's label.
  odb_SequenceInt ConnIndicesForEl(const odb_Element& element) const;

 private:
  cow_List<odb_Mesh> m_meshes;
};

#endif
