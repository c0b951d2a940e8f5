// odb_ElementAccess: how the implementation builds element records and reaches the stored mesh
// that a record's connectivity refers to; internal.
#ifndef ODB_ELEMENTACCESS_H
#define ODB_ELEMENTACCESS_H

#include <memory>

#include "odb_Element.h"
#include "store_Mesh.h"

struct odb_ElementAccess {
  // An element built from the node positions of its connectivity; stores the labels found at
  // those positions in `nodeList`, which must not be null.
  static odb_Element FromPositions(int label, int index, const int* nodePositions,
                                   int numberOfNodes, const odb_String& type,
                                   const odb_SectionCategory& sectionCategory,
                                   odb_Enum::odb_ElementGeometryClass geometry, int meshIndex,
                                   int integrationPoints, std::shared_ptr<store_Mesh> nodeList);
  // An element built from node labels directly, as the mesh stores them; `nodeList` may be null.
  static odb_Element FromLabels(int label, int index, const int* nodeLabels, int numberOfNodes,
                                const odb_String& type, const odb_SectionCategory& sectionCategory,
                                odb_Enum::odb_ElementGeometryClass geometry, int meshIndex,
                                int integrationPoints, std::shared_ptr<store_Mesh> nodeList);
  // The stored mesh whose node list the element's connectivity refers to; null for an element
  // of no mesh.
  static std::shared_ptr<store_Mesh> NodeList(const odb_Element& element) {
    return std::static_pointer_cast<store_Mesh>(element.m_nodeList);
  }
};

#endif
