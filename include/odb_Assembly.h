// odb_Assembly: the root assembly of a model: the part instances, the sets that span them, and
// the datum coordinate systems.
//
// The database object owns it (odb_Odb::rootAssembly); it holds instance, set and system
// handles, which share their data with copies a caller keeps. Instances, sets and systems are
// read from the file on first use. Placing an instance writes one row: the instance shares its
// part's mesh; a system is one row too. One thread at a time.
#ifndef ODB_ASSEMBLY_H
#define ODB_ASSEMBLY_H

#include "odb_DatumCsys.h"
#include "odb_DiscreteEntity.h"
#include "odb_DiscretePart.h"
#include "odb_Export.h"
#include "odb_Instance.h"
#include "odb_MeshList.h"
#include "odb_Sequence.h"
#include "odb_String.h"
#include "uti_SharedPtr.h"

struct odb_AssemblyData;

// The messages of the assembly.
enum odb_AssemblyEnm : int {
  odb_Assembly_INSTANCE_NOT_SUPPORTED = 0,
  odb_Assembly_NODES_NOT_USABLE = 1,     // %s: the instance's name
  odb_Assembly_ELEMENTS_NOT_USABLE = 2,  // %s: the instance's name
  odb_Assembly_UNKNOWN_SET_TYPE = 3,
  odb_Assembly_DUPLICATE_NAME = 4,
  odb_Assembly_INSTANCE_EXISTS = 5,  // %s: the instance's name
  odb_Assembly_BAD_PLACEMENT = 6,    // %s: the instance's name
  odb_Assembly_ROW_COUNT = 7         //
};

template <>
struct QTVODB_EXPORT uti_LabelTable<odb_AssemblyEnm, 1> {
  static const uti_LabelRow<odb_AssemblyEnm> rows[];
};

class QTVODB_EXPORT odb_Assembly {
 public:
  // An assembly of no database: it holds nothing and its creators throw.
  odb_Assembly();

  odb_String name() const;

  odb_InstanceRepository& instances();
  // The instance of that name; throws "Key "NAME" not found in repository" when none.
  odb_Instance& instance(const odb_String& name) { return instances().get(name); }
  // One mesh per instance, in the order the instances were placed.
  const odb_MeshList& meshes();

  // Places `part` as the instance `name`. The local coordinate system is empty (the part as it
  // is), or one row of 3 values (a translation), or that row followed by a row of 7 values: two
  // points of the rotation axis and the angle in degrees, the rotation following the translation
  // (the form an input deck uses). Throws "A part instance named "NAME" already exists.",
  // "Assembly Instance not supported." for a part of no database or of another database, and
  // "The local coordinate system of instance "NAME" must be a row of 3 values, optionally
  // followed by a row of 7." for other shapes.
  odb_Instance& Instance(
      const odb_String& name, const odb_DiscretePart& part,
      const odb_SequenceSequenceFloat& localCoordinateSystem = odb_SequenceSequenceFloat());

  // Sets across instances: row i of the labels belongs to instance i of the names. Checks, in
  // order: "Duplicate set or surface name" for a name among the assembly's sets of that kind;
  // "The number of instance names and label rows must agree." ; "The nodes (elements)
  // associated with entity named 'NAME' cannot be used to construct a set." for a name that is
  // not an instance; labels an instance lacks.
  odb_Set& NodeSet(const odb_String& name, const odb_SequenceString& instanceNames,
                   const odb_SequenceSequenceInt& nodeLabels);
  odb_Set& ElementSet(const odb_String& name, const odb_SequenceString& instanceNames,
                      const odb_SequenceSequenceInt& elementLabels);
  // A surface across instances: row i of the labels and of the faces belongs to instance i.
  odb_Set& Surface(const odb_String& name, const odb_SequenceString& instanceNames,
                   const odb_SequenceSequenceInt& elementLabels,
                   const odb_SequenceSequenceElementFace& faces);

  odb_SetRepository& nodeSets();
  odb_SetRepository& elementSets();
  odb_SetRepository& surfaces();
  // The set of that name; throws "Key "NAME" not found in repository" when there is none.
  odb_Set& nodeSet(const odb_String& name) { return nodeSets().get(name); }
  odb_Set& elementSet(const odb_String& name) { return elementSets().get(name); }
  odb_Set& surface(const odb_String& name) { return surfaces().get(name); }

  // Datum coordinate systems. Each creator stores a new system under `name` and returns it.
  // Points and directions are 3 values each, in global coordinates; nodes are labels of the
  // instance named `instanceName`, taken at their placed coordinates. Checks, in order: "The
  // assembly belongs to no database."; an empty name; "A datum coordinate system named "NAME"
  // already exists."; a type that is not one of odb_DatumCsysTypeEnum; points or directions not
  // of 3 values; "No instance named ..."; "Instance "I" has no node N ..."; coincident or
  // colinear points, zero or parallel directions; then the store's refusal when the database is
  // read-only.
  //
  // Fixed, at `origin`: the 1-axis along `xDirection`, the 2-axis the part of `yDirection`
  // normal to it, the 3-axis completing a right-handed set.
  odb_DatumCsys& DatumCsys(const odb_String& name, odb_Enum::odb_DatumCsysTypeEnum type,
                           const odb_SequenceFloat& origin, const odb_SequenceFloat& xDirection,
                           const odb_SequenceFloat& yDirection);
  // Fixed, from three points: the origin, a point on the 1-axis, a point in the 1-2 plane.
  odb_DatumCsys& DatumCsysByThreePoints(const odb_String& name,
                                        odb_Enum::odb_DatumCsysTypeEnum type,
                                        const odb_SequenceFloat& origin,
                                        const odb_SequenceFloat& point1,
                                        const odb_SequenceFloat& point2);
  // Following three nodes: the origin node, a node on the 1-axis, a node in the 1-2 plane.
  odb_DatumCsys& DatumCsysByThreeNodes(const odb_String& name, odb_Enum::odb_DatumCsysTypeEnum type,
                                       const odb_String& instanceName, int originNode,
                                       int point1Node, int point2Node);
  // Following three nodes on a circle: the origin at its centre, the 3-axis normal to its plane
  // (right-handed over the nodes in order), the 1-axis toward the first node.
  odb_DatumCsys& DatumCsysByThreeCircNodes(const odb_String& name,
                                           odb_Enum::odb_DatumCsysTypeEnum type,
                                           const odb_String& instanceName, int node1, int node2,
                                           int node3);
  // Following one node with rotational degrees of freedom: the origin at the node, the axes from
  // the two directions as in DatumCsys (the global axes when both are empty), turning with the
  // node's rotation.
  odb_DatumCsys& DatumCsysBy(const odb_String& name, odb_Enum::odb_DatumCsysTypeEnum type,
                             const odb_String& instanceName, int node,
                             const odb_SequenceFloat& xDirection = odb_SequenceFloat(),
                             const odb_SequenceFloat& yDirection = odb_SequenceFloat());
  // Removes a system from the assembly and the file; throws "No datum coordinate system named
  // "NAME" in the assembly." when there is none. Handles a caller holds stay usable.
  void DeleteDatumCsys(const odb_String& name);
  odb_DatumCsysRepository& datumCsyses();
  // The system of that name; throws "Key "NAME" not found in repository" when none.
  odb_DatumCsys& datumCsys(const odb_String& name) { return datumCsyses().get(name); }

 private:
  friend struct odb_AssemblyAccess;

  explicit odb_Assembly(std::shared_ptr<odb_AssemblyData> data);

  odb_Set& CreateSet(const odb_String& name, odb_Set::Type type,
                     const odb_SequenceString& instanceNames, const odb_SequenceSequenceInt& labels,
                     const odb_SequenceSequenceElementFace* faces);

  std::shared_ptr<odb_AssemblyData> m_data;
};

#endif
