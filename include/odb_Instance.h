// odb_Instance: a part placed in the assembly: the part's mesh seen through a translation and a
// rotation, with node sets, element sets and surfaces of its own.
//
// A handle (see odb_DiscreteEntity): copies share the instance. An instance shares its part's
// stored mesh, so placing one copies no node or element data; its nodes report placed
// coordinates, computed as they are read. Created by odb_Assembly::Instance. One thread at a time.
#ifndef ODB_INSTANCE_H
#define ODB_INSTANCE_H

#include "odb_DiscreteEntity.h"
#include "odb_Export.h"
#include "odb_Repository.h"
#include "odb_Sequence.h"
#include "odb_SequenceElement.h"
#include "odb_SequenceNode.h"
#include "odb_String.h"
#include "uti_SharedPtr.h"

// The messages of instances.
enum odb_InstanceEnm : int {
  odb_Instance_FACE_COUNT = 0,
  odb_Instance_INSTANCE_FACE_COUNT = 1,
  odb_Instance_UNKNOWN_SET_TYPE = 2,
  odb_Instance_SECTION_NEEDS_ELEMENT_SET = 3,
  odb_Instance_DUPLICATE_NAME = 4,
  odb_Instance_NODES_OF_OTHER_ENTITY = 5,
  odb_Instance_ELEMENTS_OF_OTHER_ENTITY = 6
};

template <>
struct QTVODB_EXPORT uti_LabelTable<odb_InstanceEnm, 1> {
  static const uti_LabelRow<odb_InstanceEnm> rows[];
};

class QTVODB_EXPORT odb_Instance : public odb_DiscreteEntity {
 public:
  // An instance of no database; the creators throw.
  odb_Instance() = default;

  // The name of the part placed.
  odb_String partName() const;
  // The placement: translation, then rotation by rotationAngle() radians about the axis through
  // rotationPoint() along rotationAxis() (all three values each).
  const double* translation() const;
  const double* rotationPoint() const;
  const double* rotationAxis() const;
  double rotationAngle() const;

  // Set creators; each returns the set now held by the instance under `name`. A name already
  // held by a set of the same kind is refused with "Duplicate set or surface name" first; labels
  // the instance lacks are refused next. The forms taking a sequence refuse one of another
  // entity ("SequenceNode is not associated with this entity." / "SequenceElement ...").
  odb_Set& NodeSet(const odb_String& name, const odb_SequenceInt& nodeLabels);
  odb_Set& NodeSet(const odb_String& name, const odb_SequenceNode& nodes);
  odb_Set& ElementSet(const odb_String& name, const odb_SequenceInt& elementLabels);
  odb_Set& ElementSet(const odb_String& name, const odb_SequenceElement& elements);
  // Surfaces pair each element with one face. The counts must agree: "Number of faces and
  // elements should agree for a Surface." (labels) or "Number of faces and elements for
  // instance surface must agree." (sequence). Faces are checked against the element type.
  odb_Set& Surface(const odb_String& name, const odb_SequenceInt& elementLabels,
                   const odb_SequenceElementFace& faces);
  odb_Set& Surface(const odb_String& name, const odb_SequenceElement& elements,
                   const odb_SequenceElementFace& faces);

 private:
  friend struct odb_InstanceAccess;

  explicit odb_Instance(std::shared_ptr<odb_EntityData> data) : odb_DiscreteEntity(data) {}
};

using odb_InstanceRepository = odb_Repository<odb_String, odb_Instance>;
using odb_InstanceRepositoryIT = odb_RepositoryIterator<odb_String, odb_Instance>;

#endif
