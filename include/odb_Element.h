// odb_Element: one element of a part or an instance, as a record: label, type, connectivity in
// node labels, section category and geometry class.
//
// A value built on request from the mesh's arrays. Its connectivity is held inline (at most 30
// nodes, the most any element type has); the type name, the section category and the mesh's
// node list are shared handles, so copying an element costs three reference counts. The record
// keeps the mesh alive, not the database: it stays readable after the database is closed.
#ifndef ODB_ELEMENT_H
#define ODB_ELEMENT_H

#include "odb_Enum.h"
#include "odb_Export.h"
#include "odb_SectionCategory.h"
#include "odb_Sequence.h"
#include "odb_String.h"
#include "uti_SharedPtr.h"

struct odb_ElementAccess;

class QTVODB_EXPORT odb_Element {
 public:
  static constexpr int kMaxNodes = 30;

  // An element of no mesh: label -1, no nodes, empty type.
  odb_Element() = default;

  int label() const { return m_label; }
  // The element's position in its part's element list (0-based).
  int index() const { return m_index; }
  odb_String type() const { return m_type; }
  const odb_SectionCategory& sectionCategory() const { return m_sectionCategory; }
  odb_Enum::odb_ElementGeometryClass geometryClass() const { return m_geometry; }
  // The stored index of the part whose mesh holds the element.
  int meshIndex() const { return m_meshIndex; }
  int integrationPoints() const { return m_integrationPoints; }

  int numberOfNodes() const { return m_numberOfNodes; }
  // The node labels, numberOfNodes() of them, in the element type's node order.
  const unsigned* nodeLabels() const { return m_connectivity; }
  // The same as a sequence (allocates).
  odb_SequenceInt connectivity() const;
  // The positions of its nodes in the mesh's node list.
  odb_SequenceInt connectivityIndices() const;

 private:
  friend struct odb_ElementAccess;

  int m_label = -1;
  int m_index = -1;
  unsigned m_connectivity[kMaxNodes] = {};
  int m_meshIndex = -1;
  int m_numberOfNodes = 0;
  odb_String m_type;
  odb_SectionCategory m_sectionCategory;
  odb_Enum::odb_ElementGeometryClass m_geometry = odb_Enum::GEOMETRY_UNKNOWN;
  int m_integrationPoints = 0;
  // The stored mesh whose node list the connectivity refers to (null for an element of no mesh),
  // kept alive by the record; what it is, only the implementation knows (odb_ElementAccess).
  std::shared_ptr<void> m_nodeList;
};

#endif
