// odb_Assembly: the root assembly of a model: the part instances and the sets that span them.
//
// The database object owns it (odb_Odb::rootAssembly); it holds instance and set handles, which
// share their data with copies a caller keeps. Instances and sets are read from the file on first
// use. Placing an instance writes one row: the instance shares its part's mesh. One thread at a
// time.
#ifndef ODB_ASSEMBLY_H
#define ODB_ASSEMBLY_H

#include <memory>

#include "odb_DiscreteEntity.h"
#include "odb_DiscretePart.h"
#include "odb_Instance.h"
#include "odb_MeshList.h"
#include "odb_Sequence.h"
#include "odb_String.h"

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
struct uti_LabelTable<odb_AssemblyEnm, 1> {
  static const uti_LabelRow<odb_AssemblyEnm> rows[];
};

class odb_Assembly {
 public:
  // An assembly of no database: it holds nothing and its creators throw.
  odb_Assembly();
  explicit odb_Assembly(std::shared_ptr<odb_AssemblyData> data);

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

  const std::shared_ptr<odb_AssemblyData>& data() const { return m_data; }

 private:
  odb_Set& CreateSet(const odb_String& name, odb_Set::Type type,
                     const odb_SequenceString& instanceNames, const odb_SequenceSequenceInt& labels,
                     const odb_SequenceSequenceElementFace* faces);

  std::shared_ptr<odb_AssemblyData> m_data;
};

#endif
