#include "odb_SubFieldData.h"

#include <algorithm>

#include "odb_EntityData.h"
#include "odb_Util.h"
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

std::shared_ptr<odb_SubFieldData> odb_SubFieldData::FromBlock(const store_FieldBlockRecord& b,
                                                              odb_Enum::odb_DataTypeEnum type,
                                                              const odb_Instance& instance,
                                                              std::shared_ptr<store_Database> store) {
  auto sub = std::make_shared<odb_SubFieldData>();
  sub->position = static_cast<odb_Enum::odb_ResultPositionEnum>(b.position);
  sub->type = type;
  sub->instance = instance;
  sub->instanceName = odb_FromText(b.instance);
  sub->elementType = odb_FromText(b.elementType);
  sub->sectionCategory = odb_FromText(b.sectionCategory);
  if (b.sectionPoint >= 0)
    sub->sectionPoint = odb_SectionPoint(b.sectionPoint, odb_FromText(b.sectionPointDescription));
  sub->setName = odb_FromText(b.setName);
  sub->width = b.width;
  sub->perLabel = b.perLabel;
  sub->orientationWidth = b.orientationWidth;
  sub->complex = b.conjugate != 0;
  sub->store = std::move(store);
  return sub;
}

std::shared_ptr<odb_SubFieldData> odb_SubFieldData::SameIdentity(const odb_SubFieldData& source) {
  auto sub = std::make_shared<odb_SubFieldData>();
  sub->position = source.position;
  sub->type = source.type;
  sub->instance = source.instance;
  sub->instanceName = source.instanceName;
  sub->elementType = source.elementType;
  sub->sectionCategory = source.sectionCategory;
  sub->sectionPoint = source.sectionPoint;
  sub->setName = source.setName;
  sub->width = source.width;
  sub->perLabel = source.perLabel;
  sub->orientationWidth = source.orientationWidth;
  sub->complex = source.complex;
  return sub;
}

bool odb_SubFieldData::Holds(const store_FieldBlockRecord& b) const {
  return position == b.position && odb_ToText(instanceName) == b.instance &&
         odb_ToText(elementType) == b.elementType &&
         odb_ToText(sectionCategory) == b.sectionCategory &&
         sectionPoint.number() == b.sectionPoint && complex == (b.conjugate != 0) &&
         orientationWidth == b.orientationWidth && width == b.width;
}

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

void odb_SubFieldData::SetLocations(odb_Run<int> nodeLabels, odb_Run<int> integrationPoints) {
  perLabel = 1;
  m_nodeLabels = std::move(nodeLabels);
  m_integrationPoints = std::move(integrationPoints);
  m_nodeLabelsBuilt = m_pointsBuilt = true;
  m_elementLabelsBuilt = m_misesBuilt = false;
}

const odb_Run<int>& odb_SubFieldData::ElementLabels() {
  Load();
  if (!m_elementLabelsBuilt) {
    m_elementLabels.Resize(Locations());
    int* out = m_elementLabels.data();
    if (position == odb_Enum::NODAL) {
      std::fill(out, out + m_elementLabels.size(), -1);
    } else {
      for (std::size_t e = 0; e < labels.size(); ++e, out += perLabel)
        std::fill(out, out + perLabel, labels[e]);
    }
    m_elementLabelsBuilt = true;
  }
  return m_elementLabels;
}

const odb_Run<int>& odb_SubFieldData::NodeLabels() {
  Load();
  if (!m_nodeLabelsBuilt) {
    m_nodeLabels.Resize(Locations());
    if (position == odb_Enum::NODAL)
      m_nodeLabels.Assign(labels.data(), labels.size());
    else
      std::fill(m_nodeLabels.data(), m_nodeLabels.data() + m_nodeLabels.size(), -1);
    if (position == odb_Enum::ELEMENT_NODAL && instance.data()) {
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

const odb_Run<int>& odb_SubFieldData::IntegrationPoints() {
  Load();
  if (!m_pointsBuilt) {
    m_integrationPoints.Resize(Locations());
    int* out = m_integrationPoints.data();
    if (position != odb_Enum::INTEGRATION_POINT) {
      std::fill(out, out + m_integrationPoints.size(), -1);
    } else {
      for (std::size_t e = 0; e < labels.size(); ++e)
        for (int k = 1; k <= perLabel; ++k) *out++ = k;
    }
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
