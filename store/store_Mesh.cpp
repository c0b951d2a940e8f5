#include "store_Mesh.h"

#include <algorithm>
#include <limits>

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

// Rows are converted and written in pieces of about this many bytes: small enough to stay in
// the processor's cache between being filled, checked and copied into the file.
const std::size_t kPieceBytes = 256u << 10;

int PieceRows(std::size_t rowBytes) {
  return static_cast<int>(
      std::max<std::size_t>(1, kPieceBytes / std::max<std::size_t>(1, rowBytes)));
}

// Writes `count` rows of `width` values of T, which `fill` produces a piece at a time, as a new
// array of `kind`. `accept(piece, first, n)` sees each piece before it is written and stops the
// write by returning false; the partial array is then the caller's to roll back. Returns whether
// the whole array was written, its id in `id`.
template <class T, class Fill, class Accept>
bool WriteRows(store_Database& db, const char* kind, int count, int width, const Fill& fill,
               const Accept& accept, std::int64_t& id) {
  std::size_t rowBytes = sizeof(T) * static_cast<std::size_t>(width);
  int rows = PieceRows(rowBytes);
  std::vector<T> piece(static_cast<std::size_t>(std::min(rows, count)) * width);
  store_ArrayWriter writer(db, kind, rowBytes * static_cast<std::size_t>(count));
  for (int first = 0; first < count; first += rows) {
    int n = std::min(rows, count - first);
    fill(first, n, piece.data());
    if (!accept(piece.data(), first, n)) return false;
    writer.Write(piece.data(), rowBytes * static_cast<std::size_t>(n));
  }
  id = writer.Finish();
  return true;
}

// Appends `from` to `to`, taking its storage when `to` is empty.
void Append(std::vector<int>& to, std::vector<int>&& from) {
  if (to.empty())
    to = std::move(from);
  else
    to.insert(to.end(), from.begin(), from.end());
}

// Everything written while it lives is rolled back unless Release() is called.
class Savepoint {
 public:
  explicit Savepoint(store_Database& db) : m_db(db) { m_db.Sql("SAVEPOINT mesh_addition").Run(); }
  ~Savepoint() {
    if (m_released) return;
    try {
      m_db.Sql("ROLLBACK TO mesh_addition").Run();
      m_db.Sql("RELEASE mesh_addition").Run();
    } catch (const store_Error&) {
      // The transaction is already broken; its next use reports why.
    }
  }
  Savepoint(const Savepoint&) = delete;
  Savepoint& operator=(const Savepoint&) = delete;
  void Release() {
    m_db.Sql("RELEASE mesh_addition").Run();
    m_released = true;
  }

 private:
  store_Database& m_db;
  bool m_released = false;
};

}  // namespace

store_Mesh::store_Mesh(std::shared_ptr<store_Database> db, std::int64_t partId)
    : m_db(std::move(db)), m_partId(partId) {}

template <class Read>
void store_Mesh::Reading(const char* what, Read&& read) {
  try {
    read();
  } catch (const store_Damaged& damage) {
    if (m_partName.empty()) throw;
    store_ThrowDamagedSubject(damage, std::string("the ") + what + " of part '" + m_partName + "'");
  }
}

void store_Mesh::LoadNodeBlocks() {
  if (m_nodeBlocksRead) return;
  // Read into locals: a read that fails half way leaves nothing behind, and the next call
  // fails the same way instead of returning half a mesh.
  std::vector<std::int64_t> labels, coordinates;
  std::vector<int> nodeLabels;
  Reading("nodes", [&] {
    {
      store_Statement q = m_db->Sql(
          "SELECT block, count, labels, coordinates FROM node_block WHERE part_id = ?1 "
          "ORDER BY block");
      q.Bind(1, m_partId);
      std::vector<std::int64_t> counts;
      while (q.Step()) {
        q.RequireNotNull("node_block", {"block", "count", "labels", "coordinates"});
        if (q.Int64(0) != static_cast<std::int64_t>(labels.size()))
          store_ThrowBadValue(*m_db, "node_block", "block",
                              std::to_string(q.Int64(0)) + " at " + std::to_string(labels.size()));
        counts.push_back(q.Int64(1));
        labels.push_back(q.Int64(2));
        coordinates.push_back(q.Int64(3));
      }
      for (std::size_t b = 0; b < labels.size(); ++b) {
        std::size_t at = nodeLabels.size();
        AppendArray(*m_db, labels[b], nodeLabels);
        const std::size_t n = nodeLabels.size() - at;
        if (counts[b] < 0 || static_cast<std::size_t>(counts[b]) != n ||
            m_db->ArrayBytes(coordinates[b]) != 3 * sizeof(float) * n)
          store_ThrowBadValue(*m_db, "node_block", "count",
                              std::to_string(counts[b]) + " for arrays of another length");
      }
    }
  });
  m_nodeLabels = std::move(nodeLabels);
  m_nodeLabelArrays = std::move(labels);
  m_coordinateArrays = std::move(coordinates);
  m_nodeBlocksRead = true;
}

const std::vector<int>& store_Mesh::NodeLabels() {
  LoadNodeBlocks();
  return m_nodeLabels;
}

const std::vector<float>& store_Mesh::NodeCoordinates() {
  LoadNodeBlocks();
  if (!m_coordinatesRead) {
    std::vector<float> coordinates;
    coordinates.reserve(3 * m_nodeLabels.size());
    Reading("nodes", [&] {
      for (std::int64_t id : m_coordinateArrays) AppendArray(*m_db, id, coordinates);
    });
    m_coordinates = std::move(coordinates);
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
  std::vector<store_ElementBlock> blocks;
  std::vector<std::int64_t> labels, connectivityArrays;
  std::vector<int> elementLabels;
  Reading("elements", [&] {
    store_Statement q = m_db->Sql(
        "SELECT block, type, count, nodes_per_element, section_category, labels, connectivity "
        "FROM element_block WHERE part_id = ?1 ORDER BY block");
    q.Bind(1, m_partId);
    std::size_t connectivity = 0;
    int first = 0;
    while (q.Step()) {
      q.RequireNotNull("element_block", {"block", "type", "count", "nodes_per_element",
                                         "section_category", "labels", "connectivity"});
      if (q.Int64(0) != static_cast<std::int64_t>(blocks.size()))
        store_ThrowBadValue(*m_db, "element_block", "block", std::to_string(q.Int64(0)));
      store_ElementBlock block;
      block.type = q.Text(1);
      const std::int64_t count = q.Int64(2), nodes = q.Int64(3);
      if (count < 0 || count > std::numeric_limits<int>::max() - first)
        store_ThrowBadValue(*m_db, "element_block", "count", std::to_string(count));
      if (nodes < 1 || nodes > store_kMaxNodesPerElement)
        store_ThrowBadValue(*m_db, "element_block", "nodes_per_element", std::to_string(nodes));
      block.count = static_cast<int>(count);
      block.nodesPerElement = static_cast<int>(nodes);
      block.sectionCategory = q.Text(4);
      block.first = first;
      block.connectivityStart = connectivity;
      first += block.count;
      connectivity += static_cast<std::size_t>(block.count) * block.nodesPerElement;
      blocks.push_back(block);
      labels.push_back(q.Int64(5));
      connectivityArrays.push_back(q.Int64(6));
    }
    for (std::size_t b = 0; b < blocks.size(); ++b) {
      const std::size_t n = static_cast<std::size_t>(blocks[b].count);
      if (m_db->ArrayBytes(labels[b]) != sizeof(int) * n ||
          m_db->ArrayBytes(connectivityArrays[b]) != sizeof(int) * n * blocks[b].nodesPerElement)
        store_ThrowBadValue(*m_db, "element_block", "count",
                            std::to_string(n) + " for arrays of another length");
      AppendArray(*m_db, labels[b], elementLabels);
    }
  });
  m_blocks = std::move(blocks);
  m_connectivityArrays = std::move(connectivityArrays);
  m_elementLabels = std::move(elementLabels);
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
    std::vector<int> connectivity;
    Reading("elements", [&] {
      for (std::int64_t id : m_connectivityArrays) AppendArray(*m_db, id, connectivity);
    });
    m_connectivity = std::move(connectivity);
    m_connectivityRead = true;
  }
  return m_connectivity;
}

std::size_t store_Mesh::ConnectivityLength() {
  const std::vector<store_ElementBlock>& blocks = ElementBlocks();
  return blocks.empty()
             ? 0
             : blocks.back().connectivityStart +
                   static_cast<std::size_t>(blocks.back().count) * blocks.back().nodesPerElement;
}

namespace {

// Reads the stored arrays `ids` one after the other into `out`, which has room for `values`
// values of T; a file whose arrays hold another number is refused before anything is read.
template <class T>
void ReadArrays(store_Database& db, const std::vector<std::int64_t>& ids, std::size_t values,
                T* out, const char* what) {
  std::size_t bytes = 0;
  for (std::int64_t id : ids) bytes += db.ArrayBytes(id);
  if (bytes != values * sizeof(T))
    throw store_Error(std::string("The ") + what +
                      " of the mesh do not match its element and "
                      "node counts: the file is damaged.");
  for (std::int64_t id : ids) {
    const std::size_t n = db.ArrayBytes(id) / sizeof(T);
    db.GetArray(id, out);
    out += n;
  }
}

}  // namespace

void store_Mesh::ReadCoordinates(float* out) {
  LoadNodeBlocks();
  if (m_coordinatesRead)
    std::copy(m_coordinates.begin(), m_coordinates.end(), out);
  else
    ReadArrays(*m_db, m_coordinateArrays, 3 * m_nodeLabels.size(), out, "node coordinates");
}

void store_Mesh::ReadConnectivity(int* out) {
  LoadElementBlocks();
  if (m_connectivityRead)
    std::copy(m_connectivity.begin(), m_connectivity.end(), out);
  else
    ReadArrays(*m_db, m_connectivityArrays, ConnectivityLength(), out, "connectivity arrays");
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

store_MeshRefusal store_Mesh::AddNodes(std::vector<int> labels, const store_NodeRows& coordinates) {
  LoadNodeBlocks();
  int count = static_cast<int>(labels.size());
  std::size_t before = m_nodeLabels.size(), coordinatesBefore = m_coordinates.size();
  Append(m_nodeLabels, std::move(labels));
  store_MeshRefusal refusal;
  m_nodeIndexBuilt = false;
  if (!m_nodeIndex.Build(m_nodeLabels.data(), static_cast<int>(m_nodeLabels.size()),
                         refusal.label)) {
    refusal.kind = store_MeshRefusal::kDuplicateNode;
    m_nodeLabels.resize(before);
    return refusal;
  }
  try {
    Savepoint savepoint(*m_db);
    std::int64_t labelArray =
        m_db->PutArray("node labels", m_nodeLabels.data() + before, sizeof(int) * count);
    std::int64_t coordinateArray = 0;
    WriteRows<float>(
        *m_db, "node coordinates", count, 3, coordinates,
        [&](const float* piece, int, int n) {
          if (m_coordinatesRead) m_coordinates.insert(m_coordinates.end(), piece, piece + 3 * n);
          return true;
        },
        coordinateArray);
    m_db->Sql(
            "INSERT INTO node_block(part_id, block, count, labels, coordinates) "
            "VALUES (?1, ?2, ?3, ?4, ?5)")
        .Bind(1, m_partId)
        .Bind(2, static_cast<int>(m_nodeLabelArrays.size()))
        .Bind(3, count)
        .Bind(4, labelArray)
        .Bind(5, coordinateArray)
        .Run();
    savepoint.Release();
    m_nodeLabelArrays.push_back(labelArray);
    m_coordinateArrays.push_back(coordinateArray);
  } catch (...) {
    m_nodeLabels.resize(before);
    if (m_coordinatesRead) m_coordinates.resize(coordinatesBefore);
    throw;
  }
  m_nodeIndexBuilt = true;
  return refusal;
}

store_MeshRefusal store_Mesh::AddElements(std::vector<int> labels, int nodesPerElement,
                                          const store_ElementRows& connectivity,
                                          const std::string& type,
                                          const std::string& sectionCategory) {
  LoadElementBlocks();
  const store_LabelIndex& nodes = NodeIndex();
  int count = static_cast<int>(labels.size());
  std::size_t before = m_elementLabels.size(), connectivityBefore = m_connectivity.size();
  Append(m_elementLabels, std::move(labels));
  store_MeshRefusal refusal;
  // Refuses a piece naming a node the part does not have.
  auto known = [&](const int* piece, int first, int n) {
    std::ptrdiff_t at = nodes.FirstMissing(piece, static_cast<std::size_t>(n) * nodesPerElement);
    if (at < 0) return true;
    refusal.kind = store_MeshRefusal::kUnknownNode;
    refusal.label = m_elementLabels[before + first + at / nodesPerElement];
    refusal.node = piece[at];
    return false;
  };
  auto undo = [&] {
    m_elementLabels.resize(before);
    m_elementIndexBuilt = false;
    if (m_connectivityRead) m_connectivity.resize(connectivityBefore);
  };
  m_elementIndexBuilt = false;
  int duplicate = 0;
  if (!m_elementIndex.Build(m_elementLabels.data(), static_cast<int>(m_elementLabels.size()),
                            duplicate)) {
    // An unknown node outranks a duplicate label: look for one first, writing nothing.
    std::vector<int> piece;
    int rows = PieceRows(sizeof(int) * static_cast<std::size_t>(nodesPerElement));
    try {
      for (int first = 0; first < count && !refusal; first += rows) {
        int n = std::min(rows, count - first);
        piece.resize(static_cast<std::size_t>(n) * nodesPerElement);
        connectivity(first, n, piece.data());
        known(piece.data(), first, n);
      }
    } catch (...) {
      undo();
      throw;
    }
    if (!refusal) {
      refusal.kind = store_MeshRefusal::kDuplicateElement;
      refusal.label = duplicate;
    }
    undo();
    return refusal;
  }
  try {
    Savepoint savepoint(*m_db);
    std::int64_t labelArray =
        m_db->PutArray("element labels", m_elementLabels.data() + before, sizeof(int) * count);
    std::int64_t connectivityArray = 0;
    bool written = WriteRows<int>(
        *m_db, "element connectivity", count, nodesPerElement, connectivity,
        [&](const int* piece, int first, int n) {
          if (!known(piece, first, n)) return false;
          if (m_connectivityRead)
            m_connectivity.insert(m_connectivity.end(), piece,
                                  piece + static_cast<std::size_t>(n) * nodesPerElement);
          return true;
        },
        connectivityArray);
    if (!written) {
      undo();
      return refusal;
    }
    m_db->Sql(
            "INSERT INTO element_block(part_id, block, type, count, nodes_per_element, "
            "section_category, labels, connectivity) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8)")
        .Bind(1, m_partId)
        .Bind(2, static_cast<int>(m_blocks.size()))
        .Bind(3, type)
        .Bind(4, count)
        .Bind(5, nodesPerElement)
        .Bind(6, sectionCategory)
        .Bind(7, labelArray)
        .Bind(8, connectivityArray)
        .Run();
    savepoint.Release();
    store_ElementBlock block;
    block.type = type;
    block.nodesPerElement = nodesPerElement;
    block.sectionCategory = sectionCategory;
    block.first = static_cast<int>(before);
    block.count = count;
    block.connectivityStart =
        m_blocks.empty()
            ? 0
            : m_blocks.back().connectivityStart +
                  static_cast<std::size_t>(m_blocks.back().count) * m_blocks.back().nodesPerElement;
    m_blocks.push_back(block);
    m_connectivityArrays.push_back(connectivityArray);
  } catch (...) {
    undo();
    throw;
  }
  m_elementIndexBuilt = true;
  return refusal;
}
