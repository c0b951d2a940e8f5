// odb_EntityData: what the handles of one part or instance share; internal.
//
// The entity's identity, its one mesh view, the cached whole-mesh sequences, and its set
// repositories and section assignments, each filled from the file on first use.
#ifndef ODB_ENTITYDATA_H
#define ODB_ENTITYDATA_H

#include <memory>
#include <string>
#include <vector>

#include "odb_DiscreteEntity.h"
#include "odb_DiscretePart.h"
#include "odb_Instance.h"
#include "odb_MeshData.h"
#include "odb_Sequence.h"
#include "odb_SetData.h"
#include "store_Database.h"
#include "store_Model.h"

// The values of a sequence as a plain array.
template <class T>
std::vector<int> odb_ToInts(const odb_Sequence<T>& values) {
  std::vector<int> out(static_cast<std::size_t>(values.size()));
  for (int i = 0; i < values.size(); ++i) out[i] = static_cast<int>(values[i]);
  return out;
}

struct odb_EntityData {
  odb_String name;
  odb_Enum::odb_DimensionEnum dimension = odb_Enum::THREE_D;
  odb_Enum::odb_PartTypeEnum type = odb_Enum::DEFORMABLE_BODY;
  store_OwnerKind ownerKind = store_kPartOwner;
  // Instances: the part placed and where.
  odb_String partName;
  store_Placement placement;
  std::shared_ptr<odb_MeshData> mesh;
  odb_MeshList meshes;

  odb_SequenceNode nodes;
  odb_SequenceElement elements;

  bool setsRead = false;
  odb_SetRepository nodeSets, elementSets, surfaces;
  bool assignmentsRead = false;
  std::vector<odb_SectionAssignment> assignments;

  // The entity's file; throws for an entity of no database (a default-constructed handle).
  store_Database& Store() const;
  // Fills the set repositories from the file once. Throws "Unknown set type." for a stored set
  // of a kind this library does not write.
  // "the WHAT of part 'NAME'" (or instance), for damage found while reading them.
  std::string Subject(const char* what) const;
  void ReadSets();
  // The repository that holds sets of `type`.
  odb_SetRepository& Repository(odb_Set::Type type);
  // Stores a new set and records it under its name; returns the recorded set.
  odb_Set& AddSet(const std::shared_ptr<odb_SetData>& set);
  void ReadAssignments();
  // Makes a set of this entity's own mesh from labels (and, for surfaces, one face per label):
  // refuses a name already held by a set of the same kind ("Duplicate set or surface name"),
  // then labels the mesh lacks; stores the set and records it under its name.
  odb_Set& CreateSet(const odb_String& setName, odb_Set::Type kind, const std::vector<int>& labels,
                     const std::vector<int>& faces);
};

// Reach the internals of parts and instances from the implementation.
struct odb_DiscreteEntityAccess {
  static const std::shared_ptr<odb_EntityData>& Data(const odb_DiscreteEntity& e) {
    return e.m_data;
  }
};
struct odb_DiscretePartAccess {
  static odb_DiscretePart Make(std::shared_ptr<odb_EntityData> data) {
    return odb_DiscretePart(std::move(data));
  }
};
struct odb_InstanceAccess {
  static odb_Instance Make(std::shared_ptr<odb_EntityData> data) {
    return odb_Instance(std::move(data));
  }
};

#endif
