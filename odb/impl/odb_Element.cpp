#include "odb_Element.h"

#include "odb_ElementAccess.h"
#include "store_Mesh.h"

odb_Element odb_ElementAccess::FromPositions(int label, int index, const int* nodePositions,
                                             int numberOfNodes, const odb_String& type,
                                             const odb_SectionCategory& sectionCategory,
                                             odb_Enum::odb_ElementGeometryClass geometry,
                                             int meshIndex, int integrationPoints,
                                             std::shared_ptr<store_Mesh> nodeList) {
  const std::vector<int>& labels = nodeList->NodeLabels();
  int connectivity[odb_Element::kMaxNodes];
  for (int k = 0; k < numberOfNodes; ++k) connectivity[k] = labels[nodePositions[k]];
  return FromLabels(label, index, connectivity, numberOfNodes, type, sectionCategory, geometry,
                    meshIndex, integrationPoints, std::move(nodeList));
}

odb_Element odb_ElementAccess::FromLabels(int label, int index, const int* nodeLabels,
                                          int numberOfNodes, const odb_String& type,
                                          const odb_SectionCategory& sectionCategory,
                                          odb_Enum::odb_ElementGeometryClass geometry,
                                          int meshIndex, int integrationPoints,
                                          std::shared_ptr<store_Mesh> nodeList) {
  odb_Element element;
  element.m_label = label;
  element.m_index = index;
  element.m_meshIndex = meshIndex;
  element.m_numberOfNodes = numberOfNodes;
  element.m_type = type;
  element.m_sectionCategory = sectionCategory;
  element.m_geometry = geometry;
  element.m_integrationPoints = integrationPoints;
  element.m_nodeList = std::move(nodeList);
  for (int k = 0; k < numberOfNodes; ++k)
    element.m_connectivity[k] = static_cast<unsigned>(nodeLabels[k]);
  return element;
}

odb_SequenceInt odb_Element::connectivity() const {
  return odb_SequenceInt(reinterpret_cast<const int*>(m_connectivity), m_numberOfNodes);
}

odb_SequenceInt odb_Element::connectivityIndices() const {
  odb_SequenceInt positions(m_numberOfNodes);
  for (int k = 0; k < m_numberOfNodes; ++k)
    positions.append(m_nodeList ? odb_ElementAccess::NodeList(*this)->NodePosition(
                                      static_cast<int>(m_connectivity[k]))
                                : -1);
  return positions;
}
