#include "store_Mesh.h"

#include <algorithm>

#include "store_Database.h"
#include "store_Statement.h"

namespace {

// Appends the stored array `id`, of `count` values of T, to `out`.
template <class T>
void AppendArray(store_Database& db, std::int64_t id, std::vector<T>& out) {
  std::size_t at = out.size();
  out.resize(at + db.ArrayBytes(id) / sizeof(T));
  db.GetArray(id, out.data() + at);
}

template <class T>
std::int64_t PutVector(store_Database& db, const char* kind, const std::vector<T>& values) {
  return db.PutArray(kind, values.data(), values.size() * sizeof(T));
}

}  // namespace

store_Mesh::store_Mesh(std::shared_ptr<store_Database> db, std::int64_t partId)
    : m_db(std::move(db)), m_partId(partId) {}

void store_Mesh::LoadNodeBlocks() {
  if (m_nodeBlocksRead) return;
  store_Statement q =
      m_db->Sql("SELECT labels, coordinates FROM node_block WHERE part_id = ?1 ORDER BY block");
  q.Bind(1, m_partId);
  std::vector<std::int64_t> labels, coordinates;
  while (q.Step()) {
    labels.push_back(q.Int64(0));
    coordinates.push_back(q.Int64(1));
  }
  for (std::int64_t id : labels) AppendArray(*m_db, id, m_nodeLabels);
  m_nodeLabelArrays = std::move(labels);
  m_coordinateArrays = std::move(coordinates);
  m_nodeBlocksRead = true;
}

const std::vector<int>& store_Mesh::NodeLabels() {
  LoadNodeBlocks();
  return m_nodeLabels;
}

const std::vector<double>& store_Mesh::NodeCoordinates() {
  LoadNodeBlocks();
  if (!m_coordinatesRead) {
    m_coordinates.reserve(3 * m_nodeLabels.size());
    for (std::int64_t id : m_coordinateArrays) AppendArray(*m_db, id, m_coordinates);
    m_coordinatesRead = true;
  }
  return m_coordinates;
}

const store_LabelIndex& store_Mesh::NodeIndex() {
  LoadNodeBlocks();
  if (!m_nodeIndexBuilt) {
    int duplicate = 0;
    m_nodeIndex.Build(m_nodeLabels.data(), static_cast<int>(m_nodeLabels.size()), duplicate);
    m_nodeIndexBuilt = true;
  }
  return m_nodeIndex;
}

int store_Mesh::NodePosition(int label) {
  return NodeIndex().Find(label);
}

void store_Mesh::LoadElementBlocks() {
  if (m_elementBlocksRead) return;
  store_Statement q = m_db->Sql(
      "SELECT type, count, nodes_per_element, section_category, labels, connectivity "
      "FROM element_block WHERE part_id = ?1 ORDER BY block");
  q.Bind(1, m_partId);
  std::vector<std::int64_t> labels;
  std::size_t connectivity = 0;
  int first = 0;
  while (q.Step()) {
    store_ElementBlock block;
    block.type = q.Text(0);
    block.count = q.Int(1);
    block.nodesPerElement = q.Int(2);
    block.sectionCategory = q.Text(3);
    block.first = first;
    block.connectivityStart = connectivity;
    first += block.count;
    connectivity += static_cast<std::size_t>(block.count) * block.nodesPerElement;
    m_blocks.push_back(block);
    labels.push_back(q.Int64(4));
    m_connectivityArrays.push_back(q.Int64(5));
  }
  for (std::int64_t id : labels) AppendArray(*m_db, id, m_elementLabels);
  m_elementBlocksRead = true;
}

const std::vector<int>& store_Mesh::ElementLabels() {
  LoadElementBlocks();
  return m_elementLabels;
}

const std::vector<store_ElementBlock>& store_Mesh::ElementBlocks() {
  LoadElementBlocks();
  return m_blocks;
}

const std::vector<int>& store_Mesh::Connectivity() {
  LoadElementBlocks();
  if (!m_connectivityRead) {
    for (std::int64_t id : m_connectivityArrays) AppendArray(*m_db, id, m_connectivity);
    m_connectivityRead = true;
  }
  return m_connectivity;
}

const store_LabelIndex& store_Mesh::ElementIndex() {
  LoadElementBlocks();
  if (!m_elementIndexBuilt) {
    int duplicate = 0;
    m_elementIndex.Build(m_elementLabels.data(), static_cast<int>(m_elementLabels.size()),
                         duplicate);
    m_elementIndexBuilt = true;
  }
  return m_elementIndex;
}

int store_Mesh::ElementPosition(int label) {
  return ElementIndex().Find(label);
}

const store_ElementBlock& store_Mesh::BlockOf(int position) {
  const std::vector<store_ElementBlock>& blocks = ElementBlocks();
  auto after =
      std::upper_bound(blocks.begin(), blocks.end(), position,
                       [](int p, const store_ElementBlock& block) { return p < block.first; });
  return *(after - 1);
}

store_MeshRefusal store_Mesh::AddNodes(const std::vector<int>& labels,
                                       const std::vector<double>& coordinates, int dimension) {
  LoadNodeBlocks();
  std::size_t before = m_nodeLabels.size();
  m_nodeLabels.insert(m_nodeLabels.end(), labels.begin(), labels.end());
  store_MeshRefusal refusal;
  m_nodeIndexBuilt = false;
  if (!m_nodeIndex.Build(m_nodeLabels.data(), static_cast<int>(m_nodeLabels.size()),
                         refusal.label)) {
    refusal.kind = store_MeshRefusal::kDuplicateNode;
    m_nodeLabels.resize(before);
    return refusal;
  }
  try {
    std::vector<double> padded;
    if (dimension != 3) {
      padded.assign(3 * labels.size(), 0.0);
      for (std::size_t i = 0; i < labels.size(); ++i)
        std::copy_n(&coordinates[i * dimension], dimension, &padded[3 * i]);
    }
    const std::vector<double>& xyz = dimension == 3 ? coordinates : padded;
    std::int64_t labelArray = PutVector(*m_db, "node labels", labels);
    std::int64_t coordinateArray = PutVector(*m_db, "node coordinates", xyz);
    m_db->Sql(
            "INSERT INTO node_block(part_id, block, count, labels, coordinates) "
            "VALUES (?1, ?2, ?3, ?4, ?5)")
        .Bind(1, m_partId)
        .Bind(2, static_cast<int>(m_nodeLabelArrays.size()))
        .Bind(3, static_cast<int>(labels.size()))
        .Bind(4, labelArray)
        .Bind(5, coordinateArray)
        .Run();
    m_nodeLabelArrays.push_back(labelArray);
    m_coordinateArrays.push_back(coordinateArray);
    if (m_coordinatesRead) m_coordinates.insert(m_coordinates.end(), xyz.begin(), xyz.end());
  } catch (...) {
    m_nodeLabels.resize(before);
    m_nodeIndexBuilt = false;
    throw;
  }
  m_nodeIndexBuilt = true;
  return refusal;
}

store_MeshRefusal store_Mesh::AddElements(const std::vector<int>& labels,
                                          const std::vector<int>& connectivity, int nodesPerElement,
                                          const std::string& type,
                                          const std::string& sectionCategory) {
  LoadElementBlocks();
  store_MeshRefusal refusal;
  const store_LabelIndex& nodes = NodeIndex();
  for (std::size_t i = 0; i < connectivity.size(); ++i) {
    if (nodes.Find(connectivity[i]) < 0) {
      refusal.kind = store_MeshRefusal::kUnknownNode;
      refusal.label = labels[i / nodesPerElement];
      refusal.node = connectivity[i];
      return refusal;
    }
  }
  std::size_t before = m_elementLabels.size();
  m_elementLabels.insert(m_elementLabels.end(), labels.begin(), labels.end());
  m_elementIndexBuilt = false;
  if (!m_elementIndex.Build(m_elementLabels.data(), static_cast<int>(m_elementLabels.size()),
                            refusal.label)) {
    refusal.kind = store_MeshRefusal::kDuplicateElement;
    m_elementLabels.resize(before);
    return refusal;
  }
  try {
    std::int64_t labelArray = PutVector(*m_db, "element labels", labels);
    std::int64_t connectivityArray = PutVector(*m_db, "element connectivity", connectivity);
    m_db->Sql(
            "INSERT INTO element_block(part_id, block, type, count, nodes_per_element, "
            "section_category, labels, connectivity) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8)")
        .Bind(1, m_partId)
        .Bind(2, static_cast<int>(m_blocks.size()))
        .Bind(3, type)
        .Bind(4, static_cast<int>(labels.size()))
        .Bind(5, nodesPerElement)
        .Bind(6, sectionCategory)
        .Bind(7, labelArray)
        .Bind(8, connectivityArray)
        .Run();
    store_ElementBlock block;
    block.type = type;
    block.nodesPerElement = nodesPerElement;
    block.sectionCategory = sectionCategory;
    block.first = static_cast<int>(before);
    block.count = static_cast<int>(labels.size());
    block.connectivityStart =
        m_blocks.empty()
            ? 0
            : m_blocks.back().connectivityStart +
                  static_cast<std::size_t>(m_blocks.back().count) * m_blocks.back().nodesPerElement;
    m_blocks.push_back(block);
    m_connectivityArrays.push_back(connectivityArray);
    if (m_connectivityRead)
      m_connectivity.insert(m_connectivity.end(), connectivity.begin(), connectivity.end());
  } catch (...) {
    m_elementLabels.resize(before);
    m_elementIndexBuilt = false;
    throw;
  }
  m_elementIndexBuilt = true;
  return refusal;
}
