// odb_SequenceElement: elements of one mesh, all of them or a selection, built on request.
//
// A view: it holds the mesh and, for a selection, the shared list of element positions; copying
// is O(1) and slicing shares the list. Elements are built by value from the mesh's arrays at each
// access (tens of nanoseconds: the record holds its connectivity inline), so nothing is cached
// per element. isMember is constant time on a whole mesh and a scan on a selection. One thread at
// a time.
#ifndef ODB_SEQUENCEELEMENT_H
#define ODB_SEQUENCEELEMENT_H

#include "odb_Element.h"
#include "odb_Export.h"
#include "odb_String.h"
#include "uti_LabelMap.h"
#include "uti_SharedPtr.h"

struct odb_MeshData;
class odb_MeshSelection;
struct odb_SequenceElementAccess;

// The messages of element sequences.
enum odb_SequenceElementEnm : int { odb_SequenceElement_OTHER_PART = 0 };

template <>
struct QTVODB_EXPORT uti_LabelTable<odb_SequenceElementEnm, 1> {
  static const uti_LabelRow<odb_SequenceElementEnm> rows[];
};

class QTVODB_EXPORT odb_SequenceElement {
 public:
  // No elements, of no mesh.
  odb_SequenceElement() = default;

  int size() const;
  int numElements() const { return size(); }
  // Element i (0-based); throws "Element index out of range.".
  odb_Element element(int i) const;
  odb_Element operator[](int i) const { return element(i); }
  odb_Element get(int i) const { return element(i); }
  odb_Element constGet(int i) const { return element(i); }
  // The first element; throws "Element not found." for an empty sequence.
  odb_Element anyElement() const;

  // Appends an element or the elements of another sequence of the same mesh; throws "Cannot Append.
  // Sequence belongs to different part." for another mesh. An empty sequence of no mesh takes
  // the mesh of what it is given.
  void append(const odb_Element& element);
  void append(const odb_SequenceElement& other);
  // Elements from..to-1, sharing this sequence's list; the range is clipped to the sequence.
  odb_SequenceElement slice(int from, int to) const;
  // Whether an element of this mesh with the element's label is in the sequence.
  bool isMember(const odb_Element& element) const;
  // Same mesh and the same element positions in the same order.
  bool isEqual(const odb_SequenceElement& other) const;
  // The instance whose mesh this is; empty for a part.
  odb_String instanceName() const;

 private:
  friend struct odb_SequenceElementAccess;

  explicit odb_SequenceElement(std::shared_ptr<const odb_MeshSelection> selection);
  // The selection; an empty one of no mesh when there is none.
  const odb_MeshSelection& Selection() const;
  // The mesh of the elements; null for none of no mesh.
  const std::shared_ptr<odb_MeshData>& mesh() const;
  // The position in the mesh of entry i (no check).
  int PositionAt(int i) const;

  // The elements' mesh and their positions in it; null for none of no mesh.
  std::shared_ptr<const odb_MeshSelection> m_selection;
};

#endif
