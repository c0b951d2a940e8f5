// odb_DiscreteEntity: what a part and an instance have in common: a named mesh of nodes and
// elements with its node sets, element sets, surfaces and section assignments.
//
// A handle: copies share the entity (O(1)), so a set or a node added through one copy is seen by
// all. The mesh is read from the file on first use, labels first and coordinates or connectivity
// only when a record needs them; the set repositories are filled on first use. Records are built
// on request: walking nodes() or elements() costs a few tens of nanoseconds per record, and a
// lookup by label is constant time. One thread at a time.
#ifndef ODB_DISCRETEENTITY_H
#define ODB_DISCRETEENTITY_H

#include <cstddef>

#include "odb_ArrayView.h"
#include "odb_Element.h"
#include "odb_Enum.h"
#include "odb_Export.h"
#include "odb_MeshList.h"
#include "odb_Node.h"
#include "odb_Repository.h"
#include "odb_Section.h"
#include "odb_SequenceElement.h"
#include "odb_SequenceNode.h"
#include "odb_Set.h"
#include "odb_String.h"
#include "uti_Array.h"
#include "uti_SharedPtr.h"

struct odb_EntityData;

using odb_SetRepository = odb_Repository<odb_String, odb_Set>;
using odb_SetRepositoryIT = odb_RepositoryIterator<odb_String, odb_Set>;

// A section given to the elements of an element set.
struct QTVODB_EXPORT odb_SectionAssignment {
  odb_String region;   // the element set's name
  odb_String section;  // the section's name
};

class QTVODB_EXPORT odb_DiscreteEntity {
 public:
  odb_String name() const;
  odb_Enum::odb_DimensionEnum embeddedSpace() const;
  odb_Enum::odb_PartTypeEnum type() const;

  // Every node, in the order added; the sequence follows later additions.
  const odb_SequenceNode& nodes() const;
  const odb_SequenceNode& node() const { return nodes(); }
  // Node i (0-based); throws "Node index out of range.".
  odb_Node nodes(int i) const;
  odb_Node node(int i) const { return nodes(i); }
  const odb_SequenceElement& elements() const;
  const odb_SequenceElement& element() const { return elements(); }
  // Element i (0-based); throws "Invalid Element index" (i < 0) or "Element index out of range.".
  odb_Element elements(int i) const;
  odb_Element element(int i) const { return elements(i); }

  // The whole mesh into the caller's arrays, for programs that hold meshes in contiguous arrays
  // and reuse them (std::vector converts to the views; size it first). readNodes gives each
  // node's label and 3 coordinates (z = 0 in planar parts; placed by the instance for an
  // instance), in nodes() order; readElements each element's label and its node labels, one
  // element after the other, connectivityLength() of them in all (the sum of the elements'
  // node counts). An empty view skips its array. Each view must hold exactly what it receives
  // ("readNodes(): the coordinate array holds 29 values; the mesh gives 30."), checked before
  // anything is written. Arrays that the mesh has not read yet go from the file straight into
  // the caller's arrays and are not kept: this costs about what reading a file of them costs.
  void readNodes(odb_MutableArrayView<int> labels, odb_MutableArrayView<float> coordinates) const;
  std::size_t connectivityLength() const;
  void readElements(odb_MutableArrayView<int> labels, odb_MutableArrayView<int> connectivity) const;

  // Throws "Invalid Node label" / "Invalid Element label" for a label the mesh does not have.
  odb_Node getNodeFromLabel(int label) const;
  odb_Element getElementFromLabel(int label) const;

  const odb_MeshList& meshes() const;

  odb_SetRepository& nodeSets();
  odb_SetRepository& elementSets();
  odb_SetRepository& surfaces();
  // The set of that name; throws "Key "NAME" not found in repository" when there is none.
  odb_Set& nodeSet(const odb_String& name) { return nodeSets().get(name); }
  odb_Set& elementSet(const odb_String& name) { return elementSets().get(name); }
  odb_Set& surface(const odb_String& name) { return surfaces().get(name); }

  // Gives `section` to the elements of `region`, which must be an element set of this entity
  // ("Section assignment requires element sets." otherwise); stored at once.
  void assignSection(const odb_Set& region, const odb_Section& section);
  // The assignments in the order made.
  uti_Array<odb_SectionAssignment> sectionAssignments() const;

 protected:
  friend struct odb_DiscreteEntityAccess;

  odb_DiscreteEntity();
  explicit odb_DiscreteEntity(std::shared_ptr<odb_EntityData> data);

  std::shared_ptr<odb_EntityData> m_data;
};

#endif
