// odb_Set: a named node set, element set or surface of a part, an instance or the assembly.
//
// A handle: copies share the set (O(1)). A set holds, per instance it spans (one for sets of a
// part or an instance, several for assembly sets), the positions of its nodes or elements in that
// instance's mesh and, for surfaces, the face of each element; nodes() and elements() view them
// without copying the mesh. Sets are created through the owner's creators (odb_DiscretePart,
// odb_Instance, odb_Assembly) and are read-only afterwards. One thread at a time.
#ifndef ODB_SET_H
#define ODB_SET_H

#include "odb_Export.h"
#include "odb_MeshList.h"
#include "odb_Sequence.h"
#include "odb_SequenceElement.h"
#include "odb_SequenceNode.h"
#include "odb_String.h"
#include "uti_SharedPtr.h"

struct odb_SetData;

// The messages of sets: members that their mesh does not hold.
enum odb_SetEnm : int {
  odb_Set_NODE_MISSING = 0,     // %1$s: the node label, %2$s: the entity's name
  odb_Set_ELEMENT_MISSING = 1,  // %1$s: the element label, %2$s: the entity's name
  odb_Set_BAD_FACE = 2          // %1$s: the face number, %2$s: the element label, %3$s: its type
};

template <>
struct QTVODB_EXPORT uti_LabelTable<odb_SetEnm, 1> {
  static const uti_LabelRow<odb_SetEnm> rows[];
};

class QTVODB_EXPORT odb_Set {
 public:
  enum Type { NODE_SET = 0, ELEMENT_SET = 1, SURFACE_SET = 2 };

  // An empty node set of no entity.
  odb_Set();

  odb_String name() const;
  Type type() const;
  // Whether the set was made by the library for its own use (surfaces' face sets, for example).
  bool isInternal() const;
  // The meshes the set spans, and their instance names (an empty name for a part's mesh).
  const odb_MeshList& meshes() const;
  odb_SequenceString instanceNames() const;

  // The nodes of a node set (of a surface: none) in its first mesh, or in the mesh of the
  // instance named; throws "Invalid mesh name." for an instance the set does not span.
  odb_SequenceNode nodes() const;
  odb_SequenceNode nodes(const odb_String& instanceName) const;
  // The elements of an element set or a surface, likewise.
  odb_SequenceElement elements() const;
  odb_SequenceElement elements(const odb_String& instanceName) const;
  // The face of each element of a surface, in the order of elements(); empty for other sets.
  odb_SequenceElementFace faces() const;
  odb_SequenceElementFace faces(const odb_String& instanceName) const;

 private:
  friend struct odb_SetAccess;

  explicit odb_Set(std::shared_ptr<odb_SetData> data);

  std::shared_ptr<odb_SetData> m_data;
};

#endif
