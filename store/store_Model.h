// store_Model: the model's small tables: parts, instances and their placement, node sets, element
// sets and surfaces, and section assignments.
//
// Free functions over an open store_Database; each is one or two statements inside the
// database's open transaction. Bulk lists (the labels and faces of a set) are stored as arrays
// (store_Database::PutArray); the meshes themselves are store_Mesh's. One thread at a time.
#ifndef STORE_MODEL_H
#define STORE_MODEL_H

#include <cstdint>
#include <string>
#include <vector>

class store_Database;

struct store_PartRecord {
  std::int64_t id = 0;
  std::string name;
  int dimension = 0;  // odb_Enum::odb_DimensionEnum
  int type = 0;       // odb_Enum::odb_PartTypeEnum
};

// Where an instance sits: its part translated, then rotated by `angle` radians about the axis
// through `axisPoint` along `axisDirection` (the rotation follows the translation, as decks
// write it).
struct store_Placement {
  double translation[3] = {0, 0, 0};
  double axisPoint[3] = {0, 0, 0};
  double axisDirection[3] = {0, 0, 1};
  double angle = 0;
};

struct store_InstanceRecord {
  std::int64_t id = 0;
  std::string name;
  std::int64_t partId = 0;
  store_Placement placement;
};

// Who owns a set: a part or an instance (by name), or the assembly (owner "").
enum store_OwnerKind : int {
  store_kPartOwner = 0,
  store_kInstanceOwner = 1,
  store_kAssemblyOwner = 2
};
enum store_SetKind : int { store_kNodeSet = 0, store_kElementSet = 1, store_kSurface = 2 };

// The labels of a set within one instance ("" for sets of a part or an instance itself);
// surfaces pair each element label with a face (odb_Enum::odb_ElementFaceEnum).
struct store_SetMember {
  std::string instance;
  std::vector<int> labels;
  std::vector<int> faces;
};

struct store_SetRecord {
  std::string name;
  int kind = store_kNodeSet;
  bool internal = false;
  std::vector<store_SetMember> members;
};

struct store_SectionAssignment {
  std::string setName;
  std::string section;
};

std::vector<store_PartRecord> store_Parts(store_Database& db);
std::int64_t store_AddPart(store_Database& db, const std::string& name, int dimension, int type);

std::vector<store_InstanceRecord> store_Instances(store_Database& db);
std::int64_t store_AddInstance(store_Database& db, const std::string& name, std::int64_t partId,
                               const store_Placement& placement);

// The sets of one owner, in creation order, with their labels.
std::vector<store_SetRecord> store_Sets(store_Database& db, store_OwnerKind ownerKind,
                                        const std::string& owner);
void store_AddSet(store_Database& db, store_OwnerKind ownerKind, const std::string& owner,
                  const store_SetRecord& set);

// The kinds (store_SetKind) of the sets that a region name names: "NAME" for a set or surface of
// the assembly, "INSTANCE.NAME" for one of an instance (the instance's name is everything before
// the last dot). Loads, boundary conditions, interactions and constraints name their regions so;
// internal sets are not regions. Empty when nothing has that name; a node set and an element set
// may share one.
std::vector<int> store_RegionKinds(store_Database& db, const std::string& region);

std::vector<store_SectionAssignment> store_SectionAssignments(store_Database& db,
                                                              store_OwnerKind ownerKind,
                                                              const std::string& owner);
void store_AddSectionAssignment(store_Database& db, store_OwnerKind ownerKind,
                                const std::string& owner, const store_SectionAssignment& a);

#endif
