// odb_DiscretePart: a part of the model: a named mesh that instances place in the assembly.
//
// A handle (see odb_DiscreteEntity): copies share the part. Created by odb_Odb::DiscretePart and
// kept in the database's part repository. addNodes and addElements check the caller's arrays,
// write one block each to the file at once (the database's save commits it), and keep only the
// labels in memory; a million nodes and elements write at disk speed. One thread at a time.
#ifndef ODB_DISCRETEPART_H
#define ODB_DISCRETEPART_H

#include "odb_ArrayView.h"
#include "odb_DiscreteEntity.h"
#include "odb_Export.h"
#include "odb_SectionCategory.h"
#include "odb_Sequence.h"
#include "odb_String.h"
#include "uti_SharedPtr.h"

// The messages of parts.
enum odb_DiscretePartEnm : int {
  odb_DiscretePart_NODE_COUNT_MISMATCH = 0,
  odb_DiscretePart_NODE_DIMENSION = 1,  // %1$s: floats expected, %2$s: floats received
  odb_DiscretePart_NO_CONNECTIVITY = 2,
  odb_DiscretePart_CONNECTIVITY_LENGTHS = 3,
  odb_DiscretePart_NO_NODE_LABELS = 4,
  odb_DiscretePart_NO_ELEMENT_LABELS = 5,
  odb_DiscretePart_DUPLICATE_NODE = 6,      // %1$s: the label, %2$s: the part's name
  odb_DiscretePart_DUPLICATE_ELEMENT = 7,   // %1$s: the label, %2$s: the part's name
  odb_DiscretePart_UNKNOWN_NODE = 8,        // %1$s: element, %2$s: node, %3$s: the part's name
  odb_DiscretePart_TOO_MANY_NODES = 9,      // %1$s: nodes per element, %2$s: the most allowed
  odb_DiscretePart_WRONG_NODE_COUNT = 10,   // %1$s: element, %2$s: type, %3$s: given, %4$s: wanted
  odb_DiscretePart_UNKNOWN_TYPE = 11,       // warning; %1$s: the type
  odb_DiscretePart_UNKNOWN_TYPE_CASE = 12,  // warning; %1$s: the type, %2$s: the known upper case
  // %1$s labels, %2$s coordinates, %3$s per node, %4$s expected
  odb_DiscretePart_FLAT_COORDINATES = 13,
  // %1$s labels, %2$s connectivity entries, %3$s type, %4$s per element, %5$s expected
  odb_DiscretePart_FLAT_CONNECTIVITY = 14,
  odb_DiscretePart_FLAT_USER_CONNECTIVITY = 15,  // %1$s labels, %2$s connectivity entries
  odb_DiscretePart_PART_EXISTS = 16              // %s: the part's name
};

template <>
struct QTVODB_EXPORT uti_LabelTable<odb_DiscretePartEnm, 1> {
  static const uti_LabelRow<odb_DiscretePartEnm> rows[];
};

class QTVODB_EXPORT odb_DiscretePart : public odb_DiscreteEntity {
 public:
  // A part of no database; the creators throw.
  odb_DiscretePart() = default;

  // Adds nodes: one row of coordinates per label, 3 floats in a three-dimensional part, 2 in a
  // planar or axisymmetric one. Checks, in order: "No node labels provided.", "Number of node
  // labels and coordinates does not match.", each row's length (a message naming the floats
  // expected and the floats received), then labels
  // already used in the part or repeated ("Duplicate node label L in part "P"."). Nothing is
  // written when a check fails. A non-empty set name also makes a node set of the new nodes
  // (an existing set of that name is kept as it is).
  void addNodes(const odb_SequenceInt& labels, const odb_SequenceSequenceFloat& coordinates,
                const odb_String& nodeSetName = odb_String());

  // Adds elements of one type. Checks, in order: "No element labels provided.", "Connectivity
  // array must be provided for all elements.", for a type the element library knows (names are
  // matched exactly, upper case) every row against the type's node count ("Element E of type T
  // has N nodes; the type has M.", E the first element of another count), then "Element
  // connectivity arrays should be of same length.", at most 30 nodes per element, node labels
  // the part does not have ("Element E of part "P" refers to node N, which the part does not
  // have."), then repeated labels. Nothing is written when a check fails. A type name that the
  // element library does not know is taken as a user element of the rows' node count, and the
  // first addition of that name to an open database warns that it is (once per name for as
  // long as the database stays open). A non-empty set name also makes an element set of the
  // new elements.
  void addElements(const odb_SequenceInt& labels, const odb_SequenceSequenceInt& connectivity,
                   const odb_String& type, const odb_String& elementSetName = odb_String(),
                   const odb_SectionCategory& sectionCategory = odb_SectionCategory());

  // The flat forms, for programs that hold their mesh in contiguous arrays (std::vector and C
  // arrays convert to the views): `coordinates` holds the nodes' coordinates one node after the
  // other, 3 per node in a three-dimensional part and 2 in a planar or axisymmetric one;
  // `connectivity` the elements' node labels one element after the other, as many per element
  // as the type has (for a type the element library does not know, connectivity.size() /
  // labels.size(), which must be whole). The sizes are checked before anything is read
  // ("addNodes() was given 10 node labels and 29 coordinates; a part of this dimension takes 3
  // coordinates per node (30).", "addElements() was given 10 element labels and 79
  // connectivity entries; elements of type C3D8 take 8 nodes each (80)."); then the same checks
  // and messages as the nested forms. The arrays are copied into the file a piece at a time
  // and need to live only until the call returns; this costs about what writing them to a file
  // costs, where the nested forms first fetch every row from memory.
  void addNodes(odb_ArrayView<int> labels, odb_ArrayView<float> coordinates,
                const odb_String& nodeSetName = odb_String());
  void addElements(odb_ArrayView<int> labels, odb_ArrayView<int> connectivity,
                   const odb_String& type, const odb_String& elementSetName = odb_String(),
                   const odb_SectionCategory& sectionCategory = odb_SectionCategory());

  // Makes a node set, element set or surface of the part, as odb_Instance does for instances.
  odb_Set& NodeSet(const odb_String& name, const odb_SequenceInt& nodeLabels);
  odb_Set& ElementSet(const odb_String& name, const odb_SequenceInt& elementLabels);
  odb_Set& Surface(const odb_String& name, const odb_SequenceInt& elementLabels,
                   const odb_SequenceElementFace& faces);

 private:
  friend struct odb_DiscretePartAccess;

  explicit odb_DiscretePart(std::shared_ptr<odb_EntityData> data) : odb_DiscreteEntity(data) {}
};

// The part under its model name: the same handle.
using odb_Part = odb_DiscretePart;

#endif
