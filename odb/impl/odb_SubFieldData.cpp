#include "odb_SubFieldData.h"


#include "odb_EntityData.h"
#include "store_Database.h"
#include "store_Mesh.h"
#include "store_Tensor.h"

namespace {

// Reads array `id` into `out` at `offset` values, checking that it holds `count` of them.
template <class T>
void ReadInto(store_Database& db, std::int64_t id, odb_Run<T>& out, std::size_t offset,
              std::size_t count) {
  if (db.ArrayBytes(id) != count * sizeof(T))
    throw store_Error("Field array " + std::to_string(id) + " does not match its block.");
  db.GetArray(id, out.data() + offset);
}

}  // namespace

void odb_SubFieldData::AddBlock(const store_FieldBlockRecord& block) {
  unread.push_back(block);
  m_unreadLocations += static_cast<std::size_t>(block.count) * block.perLabel;
  m_elementLabelsBuilt = m_nodeLabelsBuilt = m_pointsBuilt = m_misesBuilt = false;
}

std::size_t odb_SubFieldData::Locations() const {
  return labels.size() * perLabel + m_unreadLocations;
}

void odb_SubFieldData::Load() {
  if (unread.empty()) return;
  std::size_t labelCount = labels.size();
  for (const store_FieldBlockRecord& b : unread) labelCount += b.count;
  const std::size_t locations = labelCount * perLabel;
  std::size_t label = labels.size(), location = labels.size() * perLabel;
  labels.Resize(labelCount);
  data.Resize(locations * width);
  if (complex) conjugate.Resize(locations * width);
  if (orientationWidth) orientation.Resize(locations * orientationWidth);
  for (const store_FieldBlockRecord& b : unread) {
    const std::size_t n = static_cast<std::size_t>(b.count) * perLabel;
    ReadInto(*store, b.labels, labels, label, b.count);
    ReadInto(*store, b.data, data, location * width, n * width);
    if (complex) ReadInto(*store, b.conjugate, conjugate, location * width, n * width);
    if (orientationWidth)
      ReadInto(*store, b.orientation, orientation, location * orientationWidth,
               n * orientationWidth);
    label += b.count;
    location += n;
  }
  unread.clear();
  m_unreadLocations = 0;
}

void odb_SubFieldData::SetLocations(std::vector<int> nodeLabels,
                                    std::vector<int> integrationPoints) {
  perLabel = 1;
  m_nodeLabels = std::move(nodeLabels);
  m_integrationPoints = std::move(integrationPoints);
  m_nodeLabelsBuilt = m_pointsBuilt = true;
  m_elementLabelsBuilt = m_misesBuilt = false;
}

const std::vector<int>& odb_SubFieldData::ElementLabels() {
  Load();
  if (!m_elementLabelsBuilt) {
    m_elementLabels.assign(Locations(), -1);
    if (position != odb_Enum::NODAL)
      for (std::size_t i = 0; i < m_elementLabels.size(); ++i)
        m_elementLabels[i] = labels[i / perLabel];
    m_elementLabelsBuilt = true;
  }
  return m_elementLabels;
}

const std::vector<int>& odb_SubFieldData::NodeLabels() {
  Load();
  if (!m_nodeLabelsBuilt) {
    m_nodeLabels.assign(Locations(), -1);
    if (position == odb_Enum::NODAL) {
      for (std::size_t i = 0; i < m_nodeLabels.size(); ++i) m_nodeLabels[i] = labels[i];
    } else if (position == odb_Enum::ELEMENT_NODAL && instance.data()) {
      store_Mesh& mesh = *instance.data()->mesh->mesh;
      const std::vector<int>& connectivity = mesh.Connectivity();
      for (std::size_t e = 0; e < labels.size(); ++e) {
        const int at = mesh.ElementPosition(labels[e]);
        if (at < 0) continue;
        const store_ElementBlock& block = mesh.BlockOf(at);
        const std::size_t first =
            block.connectivityStart + static_cast<std::size_t>(at - block.first) * block.nodesPerElement;
        for (int k = 0; k < perLabel && k < block.nodesPerElement; ++k)
          m_nodeLabels[e * perLabel + k] = connectivity[first + k];
      }
    }
    m_nodeLabelsBuilt = true;
  }
  return m_nodeLabels;
}

const std::vector<int>& odb_SubFieldData::IntegrationPoints() {
  Load();
  if (!m_pointsBuilt) {
    m_integrationPoints.assign(Locations(), -1);
    if (position == odb_Enum::INTEGRATION_POINT)
      for (std::size_t i = 0; i < m_integrationPoints.size(); ++i)
        m_integrationPoints[i] = static_cast<int>(i % perLabel) + 1;
    m_pointsBuilt = true;
  }
  return m_integrationPoints;
}

const odb_Run<float>& odb_SubFieldData::Mises() {
  Load();
  if (!m_misesBuilt) {
    m_mises.Resize(Locations());  // store_MisesBlock sets every value, 0 for non-tensors
    store_MisesBlock(type, data.data(), static_cast<long>(m_mises.size()), m_mises.data());
    m_misesBuilt = true;
  }
  return m_mises;
}
