#include "odb_ElementAccess.h"
#include "odb_Mesh.h"

#include <cmath>

#include "odb_Exception.h"
#include "odb_MeshData.h"
#include "odb_Message.h"
#include "store_ElementLibrary.h"

const uti_LabelRow<odb_MeshEnm> uti_LabelTable<odb_MeshEnm, 1>::rows[] = {
    {"Node index out of range.", "odb_Mesh_MSGID_00", odb_Mesh_NODE_INDEX_RANGE},
    {"Invalid Node label", "odb_Mesh_MSGID_01", odb_Mesh_INVALID_NODE_LABEL},
    {"Invalid Element index", "odb_Mesh_MSGID_02", odb_Mesh_INVALID_ELEMENT_INDEX},
    {"Element index out of range.", "odb_Mesh_MSGID_03", odb_Mesh_ELEMENT_INDEX_RANGE},
    {"Element index not found.", "odb_Mesh_MSGID_04", odb_Mesh_ELEMENT_INDEX_NOT_FOUND},
    {"Invalid Element label", "odb_Mesh_MSGID_05", odb_Mesh_INVALID_ELEMENT_LABEL},
    {"Element not found.", "odb_Mesh_MSGID_06", odb_Mesh_ELEMENT_NOT_FOUND},
    {nullptr, nullptr, {}}};

namespace {

const char kSource[] = "odb/impl/odb_Mesh";

[[noreturn]] void Throw(odb_MeshEnm code, int site) {
  odb_ThrowMessage(odb_CatalogueMessage(code), kSource, site);
}

}  // namespace

odb_MeshData::odb_MeshData(std::shared_ptr<store_Mesh> storeMesh, const odb_String& part,
                           const odb_String& instance, const store_Placement* placement,
                           odb_CategoryLookup lookup)
    : mesh(std::move(storeMesh)),
      partName(part),
      instanceName(instance),
      categories(std::move(lookup)) {
  if (!placement) return;
  // Rotation about the unit axis by Rodrigues' formula, applied after the translation about a
  // point of the axis: x' = R (x + t - a) + a.
  const store_Placement& p = *placement;
  double n[3] = {p.axisDirection[0], p.axisDirection[1], p.axisDirection[2]};
  double length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
  double angle = length > 0 ? p.angle : 0.0;
  if (length > 0)
    for (double& c : n) c /= length;
  double c = std::cos(angle), s = std::sin(angle), v = 1 - c;
  double r[3][3] = {{c + n[0] * n[0] * v, n[0] * n[1] * v - n[2] * s, n[0] * n[2] * v + n[1] * s},
                    {n[1] * n[0] * v + n[2] * s, c + n[1] * n[1] * v, n[1] * n[2] * v - n[0] * s},
                    {n[2] * n[0] * v - n[1] * s, n[2] * n[1] * v + n[0] * s, c + n[2] * n[2] * v}};
  for (int i = 0; i < 3; ++i) {
    shift[i] = p.axisPoint[i];
    for (int j = 0; j < 3; ++j) {
      rotation[i][j] = r[i][j];
      shift[i] += r[i][j] * (p.translation[j] - p.axisPoint[j]);
    }
  }
  placed = true;
}

void odb_MeshData::PlacedAt(int position, double xyz[3]) {
  const float* x = &mesh->NodeCoordinates()[3 * static_cast<std::size_t>(position)];
  for (int i = 0; i < 3; ++i)
    xyz[i] = placed
                 ? rotation[i][0] * x[0] + rotation[i][1] * x[1] + rotation[i][2] * x[2] + shift[i]
                 : x[i];
}

odb_Node odb_MeshData::NodeAt(int position) {
  return NodeAt(position, mesh->NodeLabels()[position]);
}

odb_Node odb_MeshData::NodeAt(int position, int label) {
  double placedXyz[3];
  PlacedAt(position, placedXyz);
  const float xyz[3] = {static_cast<float>(placedXyz[0]), static_cast<float>(placedXyz[1]),
                        static_cast<float>(placedXyz[2])};
  return odb_Node(label, position, MeshIndex(), xyz);
}

void odb_MeshData::ResolveBlocks() {
  const std::vector<store_ElementBlock>& blocks = mesh->ElementBlocks();
  for (std::size_t b = m_blockTypes.size(); b < blocks.size(); ++b) {
    store_ElementClass cls = store_ElementClassOf(blocks[b].type, blocks[b].nodesPerElement);
    m_blockTypes.push_back(odb_String(blocks[b].type.c_str()));
    m_blockCategories.push_back(categories && !blocks[b].sectionCategory.empty()
                                    ? categories(odb_String(blocks[b].sectionCategory.c_str()))
                                    : odb_SectionCategory());
    m_blockGeometry.push_back(cls.geometry);
    m_blockPoints.push_back(cls.integrationPoints);
  }
}

odb_Element odb_MeshData::ElementAt(int position) {
  return ElementAt(position, mesh->ElementLabels()[position]);
}

odb_Element odb_MeshData::ElementAt(int position, int label) {
  const store_ElementBlock& block = mesh->BlockOf(position);
  std::size_t b = static_cast<std::size_t>(&block - mesh->ElementBlocks().data());
  if (b >= m_blockTypes.size()) ResolveBlocks();
  const int* nodes = &mesh->Connectivity()[block.connectivityStart +
                                           static_cast<std::size_t>(position - block.first) *
                                               block.nodesPerElement];
  return odb_ElementAccess::FromLabels(label, position, nodes, block.nodesPerElement, m_blockTypes[b],
                                 m_blockCategories[b], m_blockGeometry[b], MeshIndex(),
                                 m_blockPoints[b], mesh);
}

odb_Mesh::odb_Mesh(std::shared_ptr<odb_MeshData> data) : m_data(std::move(data)) {}

odb_String odb_Mesh::instanceName() const {
  return m_data ? m_data->instanceName : odb_String();
}
int odb_Mesh::meshIndex() const {
  return m_data ? m_data->MeshIndex() : -1;
}
int odb_Mesh::numberOfNodes() const {
  return m_data ? m_data->NodeCount() : 0;
}
int odb_Mesh::numberOfElements() const {
  return m_data ? m_data->ElementCount() : 0;
}

odb_Node odb_Mesh::node(int i) const {
  if (i < 0 || i >= numberOfNodes()) Throw(odb_Mesh_NODE_INDEX_RANGE, 105);
  return m_data->NodeAt(i);
}

odb_Element odb_Mesh::element(int i) const {
  if (i < 0) Throw(odb_Mesh_INVALID_ELEMENT_INDEX, 110);
  if (i >= numberOfElements()) Throw(odb_Mesh_ELEMENT_INDEX_RANGE, 111);
  return m_data->ElementAt(i);
}

int odb_MeshData::NodePositionOf(int label) {
  const int position = mesh->NodePosition(label);
  if (position < 0) Throw(odb_Mesh_INVALID_NODE_LABEL, 117);
  return position;
}

int odb_MeshData::ElementPositionOf(int label) {
  const int position = mesh->ElementPosition(label);
  if (position < 0) Throw(odb_Mesh_INVALID_ELEMENT_LABEL, 123);
  return position;
}

int odb_Mesh::nodePosition(int label) const {
  if (!m_data) Throw(odb_Mesh_INVALID_NODE_LABEL, 117);
  return m_data->NodePositionOf(label);
}

int odb_Mesh::elementPosition(int label) const {
  if (!m_data) Throw(odb_Mesh_INVALID_ELEMENT_LABEL, 123);
  return m_data->ElementPositionOf(label);
}
