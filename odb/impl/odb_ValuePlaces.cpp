#include "odb_ValuePlaces.h"

#include <algorithm>
#include <climits>
#include <utility>

#include "odb_DatumCsys.h"
#include "odb_EntityData.h"
#include "odb_Message.h"
#include "store_ElementLibrary.h"
#include "store_Extrapolation.h"

odb_NodeMotion::odb_NodeMotion(std::shared_ptr<odb_FieldData> field, const char* what)
    : m_field(std::move(field)), m_what(what) {}

const odb_NodeMotion::Values& odb_NodeMotion::Of(const odb_String& instance) {
  const std::string key = instance.CStr();
  auto found = m_byInstance.find(key);
  if (found != m_byInstance.end()) return found->second;
  Values& values = m_byInstance[key];
  if (!m_field) return values;
  m_field->ReadBlocks();
  for (const auto& sub : m_field->subFields) {
    if (sub->instanceName != instance || sub->position != odb_Enum::NODAL) continue;
    const odb_Run<int>& labels = sub->NodeLabels();
    const int width = std::min(sub->width, 3);
    for (std::size_t i = 0; i < labels.size(); ++i) {
      std::array<double, 3> v = {0, 0, 0};
      for (int c = 0; c < width; ++c) v[c] = sub->data[i * sub->width + c];
      values[labels[i]] = v;
    }
  }
  return values;
}

void odb_NodeMotion::At(const odb_String& instance, int label, double out[3]) {
  const Values& values = Of(instance);
  auto found = values.find(label);
  if (found == values.end())
    odb_ThrowMessage(
        odb_CatalogueMessage(odb_DatumCsys_NO_MOTION, {m_what, odb_String(label), instance}),
        "odb/impl/odb_FieldOutput", 42);
  std::copy(found->second.begin(), found->second.end(), out);
}

namespace {

// The element's node coordinates and, where its shape is known, how to place its points.
struct ElementPlace {
  int label = INT_MIN;
  std::vector<double> nodes;  // 3 per node
  const store_Extrapolator* shape = nullptr;
};

}  // namespace

void odb_ValuePlaces(odb_SubFieldData& sub, odb_NodeMotion& motion, std::vector<double>& xyz) {
  const std::size_t n = sub.Locations();
  xyz.assign(3 * n, 0.0);
  if (!odb_DiscreteEntityAccess::Data(sub.instance)) return;
  odb_MeshData& mesh = *odb_DiscreteEntityAccess::Data(sub.instance)->mesh;
  store_Mesh& stored = *mesh.mesh;
  auto place = [&](int label, double* out) {
    const int at = stored.NodePosition(label);
    if (at < 0) return;
    mesh.PlacedAt(at, out);
    if (!motion.Given()) return;
    double u[3];
    motion.At(sub.instanceName, label, u);
    for (int k = 0; k < 3; ++k) out[k] += u[k];
  };
  if (sub.position == odb_Enum::NODAL || sub.position == odb_Enum::ELEMENT_NODAL) {
    const odb_Run<int>& labels = sub.NodeLabels();
    for (std::size_t i = 0; i < n; ++i) place(labels[i], &xyz[3 * i]);
    return;
  }
  const odb_Run<int>& elements = sub.ElementLabels();
  const odb_Run<int>& points = sub.IntegrationPoints();
  std::unordered_map<int, const store_Extrapolator*> shapes;  // by the block's first position
  ElementPlace element;
  for (std::size_t i = 0; i < n; ++i) {
    if (elements[i] != element.label) {
      element = ElementPlace();
      element.label = elements[i];
      const int at = stored.ElementPosition(element.label);
      if (at < 0) continue;
      const store_ElementBlock& block = stored.BlockOf(at);
      auto shape = shapes.find(block.first);
      if (shape == shapes.end())
        shape = shapes
                    .emplace(block.first, store_FindExtrapolator(store_ElementClassOf(
                                              block.type, block.nodesPerElement)))
                    .first;
      element.shape = shape->second;
      const int* connectivity = stored.Connectivity().data() + block.connectivityStart +
                                static_cast<std::size_t>(at - block.first) * block.nodesPerElement;
      element.nodes.assign(3 * block.nodesPerElement, 0.0);
      for (int k = 0; k < block.nodesPerElement; ++k) place(connectivity[k], &element.nodes[3 * k]);
    }
    double* out = &xyz[3 * i];
    const int nodes = static_cast<int>(element.nodes.size() / 3);
    const store_Extrapolator* shape = element.shape;
    const int point = points[i];
    if (sub.position == odb_Enum::INTEGRATION_POINT && shape && point >= 1 &&
        point <= shape->points) {
      const double* weights =
          &shape->atPoints[static_cast<std::size_t>(point - 1) * shape->corners];
      for (int c = 0; c < shape->corners; ++c)
        for (int k = 0; k < 3; ++k) out[k] += weights[c] * element.nodes[3 * c + k];
    } else if (nodes > 0) {
      for (int c = 0; c < nodes; ++c)
        for (int k = 0; k < 3; ++k) out[k] += element.nodes[3 * c + k] / nodes;
    }
  }
}
