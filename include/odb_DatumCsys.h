// odb_DatumCsys: a datum coordinate system of the assembly: a named rectangular, cylindrical or
// spherical system with an origin and three axes, fixed in space or following nodes.
//
// A fixed system is given by its origin and axes or by three points. A dynamic one follows nodes
// of an instance: three nodes (origin, a node on the 1-axis, a node in the 1-2 plane), three
// nodes on a circle (origin at its centre, 3-axis normal to its plane, 1-axis toward the first
// node), or one node with rotational degrees of freedom (origin at the node, axes turning with
// its rotation). Where a dynamic system stands in a frame depends on that frame's displacements
// (and, for the one-node form, rotations), which odb_FieldOutput::getTransformedField takes;
// origin() and the axes describe the system as defined, on the undeformed model.
//
// Cylindrical systems give (r, theta, z): theta turns about the 3-axis from the 1-axis.
// Spherical ones give (r, theta, phi): theta as before, phi the elevation from the 1-2 plane
// toward the 3-axis, so that the local axes at a point (radial, hoop, elevation) are
// right-handed. On the 3-axis, where the radial direction is undefined, the 1-axis stands in
// for it.
//
// A handle over data that never change: copies cost O(1). The assembly creates, holds and
// deletes systems (odb_Assembly::DatumCsys and the other creators), one row of the file each.
// One thread at a time.
#ifndef ODB_DATUMCSYS_H
#define ODB_DATUMCSYS_H

#include "odb_Enum.h"
#include "odb_Export.h"
#include "odb_Repository.h"
#include "odb_Sequence.h"
#include "odb_String.h"
#include "uti_LabelMap.h"
#include "uti_SharedPtr.h"

// The messages of datum coordinate systems and of transformations into them.
enum odb_DatumCsysEnm : int {
  odb_DatumCsys_INVALID_NAME = 0,      //
  odb_DatumCsys_ALREADY_EXISTS = 1,    // %s: the system's name
  odb_DatumCsys_NOT_FOUND = 2,         // %s: the system's name
  odb_DatumCsys_BAD_TYPE = 3,          // %1$s: the type's number, %2$s: the system's name
  odb_DatumCsys_BAD_LENGTH = 4,        // %s: the system's name
  odb_DatumCsys_UNKNOWN_INSTANCE = 5,  // %1$s: the instance, %2$s: the system's name
  odb_DatumCsys_UNKNOWN_NODE = 6,      // %1$s: the node, %2$s: the instance, %3$s: the name
  odb_DatumCsys_COLINEAR = 7,          // %s: the system's name
  odb_DatumCsys_PARALLEL_AXES = 8,     // %s: the system's name
  odb_DatumCsys_NO_MOTION = 9,         // %1$s: the field, %2$s: the node, %3$s: the instance
  odb_DatumCsys_ROTATION_KIND = 10,    //
  odb_DatumCsys_VECTOR_WIDTH = 11      // %s: the width
};

template <>
struct QTVODB_EXPORT uti_LabelTable<odb_DatumCsysEnm, 1> {
  static const uti_LabelRow<odb_DatumCsysEnm> rows[];
};

struct odb_DatumCsysData;

class QTVODB_EXPORT odb_DatumCsys {
 public:
  // What a system is attached to.
  enum Definition {
    FIXED = 0,             // by origin and axes, or by three points
    THREE_NODES = 1,       // origin node, a node on the 1-axis, a node in the 1-2 plane
    THREE_CIRC_NODES = 2,  // three nodes on a circle
    SIX_DOF_NODE = 3       // one node with rotational degrees of freedom
  };

  // An unnamed fixed rectangular system on the global axes.
  odb_DatumCsys();

  odb_String name() const;
  odb_Enum::odb_DatumCsysTypeEnum type() const;
  Definition definition() const;
  // True for the systems that follow nodes.
  bool isDynamic() const { return definition() != FIXED; }

  // The origin and the unit 1-, 2- and 3-axes in global coordinates, 3 values each, as defined.
  odb_SequenceFloat origin() const;
  odb_SequenceFloat xAxis() const;
  odb_SequenceFloat yAxis() const;
  odb_SequenceFloat zAxis() const;
  // The instance and the node labels followed (3, or 1 for a 6-DOF node); empty for fixed ones.
  odb_String instanceName() const;
  odb_SequenceInt nodeLabels() const;

 private:
  friend struct odb_DatumCsysAccess;

  explicit odb_DatumCsys(std::shared_ptr<const odb_DatumCsysData> data);

  std::shared_ptr<const odb_DatumCsysData> m_data;
};

using odb_DatumCsysRepository = odb_Repository<odb_String, odb_DatumCsys>;
using odb_DatumCsysRepositoryIT = odb_RepositoryIterator<odb_String, odb_DatumCsys>;

#endif
