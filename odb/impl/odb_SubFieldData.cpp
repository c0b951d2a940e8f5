#include "odb_SubFieldData.h"

#include <algorithm>
#include <string>

#include "odb_Damage.h"
#include "odb_EntityData.h"
#include "odb_Message.h"
#include "odb_Util.h"
#include "store_Database.h"
#include "store_ElementLibrary.h"
#include "store_Mesh.h"
#include "store_Tensor.h"

namespace {

const char* const kSource = "odb/impl/odb_SubField";

odb_String Number(long long n) {
  return odb_String(std::to_string(n).c_str());
}

// The number of items of `itemBytes` that `bytes` hold where `wanted` bytes were expected,
// rounded away from the expected count so that a partial item never reads as that count.
long long Items(std::size_t bytes, std::size_t itemBytes, std::size_t wanted) {
  const std::size_t items = bytes / itemBytes;
  return static_cast<long long>(bytes > wanted && bytes % itemBytes ? items + 1 : items);
}

// Whether `width` is the component count of one of the tensor kinds.
bool IsTensorWidth(int width) {
  for (odb_Enum::odb_DataTypeEnum kind :
       {odb_Enum::TENSOR_3D_FULL, odb_Enum::TENSOR_3D_PLANAR, odb_Enum::TENSOR_3D_SURFACE,
        odb_Enum::TENSOR_2D_PLANAR, odb_Enum::TENSOR_2D_SURFACE})
    if (store_TensorComponentCount(kind) == width) return true;
  return false;
}

}  // namespace

std::shared_ptr<odb_SubFieldData> odb_SubFieldData::FromBlock(
    const store_FieldBlockRecord& b, odb_Enum::odb_DataTypeEnum type, const odb_Instance& instance,
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
  sub->m_perElement = b.perLabel;  // the writer's own blocks; Check settles it for stored ones
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
  sub->derived = source.derived;
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

std::size_t odb_SubFieldData::LabelCount() const {
  std::size_t n = labels.size();
  for (const store_FieldBlockRecord& b : unread) n += static_cast<std::size_t>(b.count);
  return n;
}

void odb_SubFieldData::ReadInto(Part part, void* out) {
  Refuse(odb_SubFieldView::BULK_DATA);
  if (pendingSource) ComputePending();
  for (const store_FieldBlockRecord& b : unread) CheckArrays(b);
  // Values per location of each part, and where the held ones are.
  const std::size_t per = part == Part::LABELS        ? 1
                          : part == Part::ORIENTATION ? static_cast<std::size_t>(orientationWidth)
                                                      : static_cast<std::size_t>(width);
  const std::size_t heldItems = part == Part::LABELS ? labels.size() : labels.size() * perLabel;
  char* at = static_cast<char*>(out);
  if (part == Part::LABELS) {
    std::copy_n(labels.data(), heldItems, reinterpret_cast<int*>(at));
    at += heldItems * sizeof(int);
  } else {
    const odb_Run<float>& held = part == Part::DATA        ? data
                                 : part == Part::CONJUGATE ? conjugate
                                                           : orientation;
    std::copy_n(held.data(), heldItems * per, reinterpret_cast<float*>(at));
    at += heldItems * per * sizeof(float);
  }
  for (const store_FieldBlockRecord& b : unread) {
    const std::int64_t array = part == Part::LABELS      ? b.labels
                               : part == Part::DATA      ? b.data
                               : part == Part::CONJUGATE ? b.conjugate
                                                         : b.orientation;
    const std::size_t items = part == Part::LABELS
                                  ? static_cast<std::size_t>(b.count)
                                  : static_cast<std::size_t>(b.count) * perLabel * per;
    store->GetArray(array, at);
    at += items * (part == Part::LABELS ? sizeof(int) : sizeof(float));
  }
}

void odb_SubFieldData::ComputePending() {
  std::shared_ptr<odb_SubFieldData> source = std::move(pendingSource);
  std::vector<store_MathOp> ops = std::move(pendingOps);
  pendingSource.reset();
  pendingOps.clear();
  odb_Run<float> scratch;
  const float* from = source->Floats(Part::DATA, scratch);
  const std::size_t n = Locations() * width;
  data.Resize(n);
  // Only operations that cannot fail wait, so there is no fault to report.
  store_MathChain(from, data.data(), n, ops.data(), ops.size());
}

const float* odb_SubFieldData::Floats(Part part, odb_Run<float>& scratch) {
  if (pendingSource) ComputePending();
  if (unread.empty()) return part == Part::DATA ? data.data() : conjugate.data();
  scratch.Resize(Locations() * width);
  ReadInto(part, scratch.data());
  return scratch.data();
}

void odb_SubFieldData::CopyLabels(odb_Run<int>& into) {
  if (unread.empty()) return into.Assign(labels.data(), labels.size());
  into.Resize(LabelCount());
  ReadInto(Part::LABELS, into.data());
}

std::shared_ptr<odb_SubFieldData> odb_SubFieldData::SameLocations(int dataWidth,
                                                                  bool orientations, bool room) {
  auto out = SameIdentity(*this);
  CopyLabels(out->labels);
  if (ownLocations) {
    odb_Run<int> nodes, points;
    nodes.Assign(NodeLabels().data(), NodeLabels().size());
    points.Assign(IntegrationPoints().data(), IntegrationPoints().size());
    out->SetLocations(std::move(nodes), std::move(points));
  }
  if (!orientations) out->orientationWidth = 0;
  if (orientations && orientationWidth) {
    out->orientation.Resize(Locations() * orientationWidth);
    if (unread.empty())
      out->orientation.Assign(orientation.data(), out->orientation.size());
    else
      ReadInto(Part::ORIENTATION, out->orientation.data());
  }
  out->subsetIndices = subsetIndices;
  out->width = dataWidth;
  if (room) out->data.Resize(Locations() * dataWidth);
  return out;
}

void odb_SubFieldData::Check(const odb_String& field, int fieldWidth, bool instanceKnown) {
  auto fault = [this](odb_SubFieldEnm code, const odb_String& argument) {
    m_faulty = true;
    m_fault = code;
    m_faultArgument = argument;
  };
  // Element-nodal data of a user element have as many locations as the row says: only the mesh,
  // which the reader does not load for this, knows its nodes.
  const std::string typeName = odb_ToText(elementType);
  const store_ElementClass* cls = store_FindElementClass(typeName);
  if (position == odb_Enum::INTEGRATION_POINT)
    m_perElement = store_ElementClassOf(typeName, 0).integrationPoints;
  else if (position == odb_Enum::ELEMENT_NODAL)
    m_perElement = cls ? cls->nodesPerElement : perLabel;
  else
    m_perElement = 1;

  if (instanceName.Empty()) return fault(odb_SubField_NO_PART_INSTANCE, field);
  if (!instanceKnown) return fault(odb_SubField_MESH_INDEX_NAMED, field);
  switch (type) {
    case odb_Enum::SCALAR:
      if (width != 1) return fault(odb_SubField_SCALAR_LENGTH, odb_String());
      break;
    case odb_Enum::VECTOR:
    case odb_Enum::MATRIX: {
      const int wanted = fieldWidth > 0 ? fieldWidth : std::max(width, 1);
      if (width != wanted) return fault(odb_SubField_ITEM_LENGTH, Number(wanted));
      break;
    }
    case odb_Enum::TENSOR_3D_FULL:
    case odb_Enum::TENSOR_3D_PLANAR:
    case odb_Enum::TENSOR_3D_SURFACE:
    case odb_Enum::TENSOR_2D_PLANAR:
    case odb_Enum::TENSOR_2D_SURFACE:
      // A width of another kind holds a tensor the field's kind cannot read; a width of no kind
      // holds a tensor of a kind the reader does not implement.
      if (width != store_TensorComponentCount(type))
        return fault(
            IsTensorWidth(width) ? odb_SubField_FLOAT_TENSOR : odb_SubField_TENSOR_NOT_IMPLEMENTED,
            odb_String());
      break;
    case odb_Enum::QUATERNION_3D:
    case odb_Enum::QUATERNION_2D:
      return fault(odb_SubField_QUATERNIONS_NOT_PROCESSED, odb_String());
    case odb_Enum::BOOLEAN:
    case odb_Enum::INTEGER:
      return fault(odb_SubField_BAD_TYPE, odb_String());
    default:
      return fault(odb_SubField_UNKNOWN_DATATYPE, odb_String());
  }

  // Only tensors carry orientations, as a planar rotation (2 floats) or a quaternion (4): a
  // tensor oriented otherwise is one the reader does not implement.
  if (orientationWidth != 0 && store_TensorComponentCount(type) == 0)
    return fault(odb_SubField_TRANSFORM_NOT_ALLOWED, odb_String());
  if (orientationWidth != 0 && orientationWidth != 2 && orientationWidth != 4)
    return fault(odb_SubField_TENSOR_NOT_IMPLEMENTED, odb_String());

  const int number = sectionPoint.number();
  if (number < 0 || position == odb_Enum::NODAL) return;
  odb_MeshData& mesh = *odb_DiscreteEntityAccess::Data(instance)->mesh;
  auto defines = [&mesh, number](const odb_String& category) {
    if (!mesh.categories || category.Empty()) return false;
    const odb_SectionCategory found = mesh.categories(category);
    return !found.isEmpty() && found.hasSectionPoint(number);
  };
  if (defines(sectionCategory)) return;
  // The block's category lacks the point: it is "not valid for elements" when other elements
  // of the same type define it, and defined for none otherwise.
  bool elsewhere = false;
  for (const store_ElementBlock& block : mesh.mesh->ElementBlocks())
    elsewhere =
        elsewhere || (block.type == typeName && defines(odb_FromText(block.sectionCategory)));
  fault(elsewhere ? odb_SubField_SECTION_POINT_INVALID : odb_SubField_SECTION_POINT_NUMBER,
        Number(number));
}

void odb_SubFieldData::Refuse(odb_SubFieldView view) const {
  if (!m_faulty) return;
  const bool bulk = view == odb_SubFieldView::BULK_DATA;
  odb_SubFieldEnm code = m_fault;
  if (code == odb_SubField_NO_PART_INSTANCE && bulk)
    code = odb_SubField_NO_MESH_INDEX_NAMED;
  else if (code == odb_SubField_QUATERNIONS_NOT_PROCESSED && bulk)
    code = odb_SubField_QUATERNIONS_NOT_READ;
  odb_ThrowMessage(odb_CatalogueMessage(code, {m_faultArgument}), kSource, __LINE__);
}

void odb_SubFieldData::FailLength(long long expected, long long given) const {
  odb_String text = odb_CatalogueMessage(odb_SubField_LENGTH, {Number(expected), Number(given)});
  text += " ";
  if (position == odb_Enum::NODAL) {
    text += odb_CatalogueMessage(odb_SubField_NODAL_FAILED);
  } else {
    text += odb_CatalogueMessage(odb_SubField_ELEMENT_FAILED, {elementType});
    if (position == odb_Enum::INTEGRATION_POINT)
      text += odb_CatalogueMessage(odb_SubField_PER_POINT, {Number(m_perElement)});
    else if (position == odb_Enum::ELEMENT_NODAL)
      text += odb_CatalogueMessage(odb_SubField_PER_NODE, {Number(m_perElement)});
    else
      text += odb_CatalogueMessage(odb_SubField_PER_ELEMENT);
  }
  odb_ThrowMessage(text, kSource, __LINE__);
}

void odb_SubFieldData::CheckArrays(const store_FieldBlockRecord& b) const {
  const long long count = b.count, expected = count * m_perElement;
  if (count < 0 || b.perLabel != m_perElement) FailLength(expected, count * b.perLabel);
  store_Database& db = *store;
  const std::size_t labelBytes = db.ArrayBytes(b.labels);
  const std::size_t labelsWanted = static_cast<std::size_t>(count) * sizeof(int);
  if (labelBytes != labelsWanted)
    FailLength(expected, Items(labelBytes, sizeof(int), labelsWanted) * m_perElement);
  const std::size_t row = static_cast<std::size_t>(width) * sizeof(float);
  const std::size_t wanted = static_cast<std::size_t>(expected) * row;
  const std::size_t dataBytes = db.ArrayBytes(b.data);
  const std::size_t conjugateBytes = complex ? db.ArrayBytes(b.conjugate) : wanted;
  // Tensors written in double precision: as many components, twice the bytes. Complex parts
  // written in two precisions are refused as such: the imaginary parts of double data must be
  // double too.
  const bool tensor = store_TensorComponentCount(type) > 0;
  if (tensor && wanted > 0 && complex && dataBytes == 2 * wanted && conjugateBytes == wanted)
    odb_ThrowMessage(odb_CatalogueMessage(odb_SubField_DOUBLE_TENSOR), kSource, __LINE__);
  if (tensor && wanted > 0 && (dataBytes == 2 * wanted || conjugateBytes == 2 * wanted))
    odb_ThrowMessage(odb_CatalogueMessage(odb_SubField_FLOAT_TENSOR), kSource, __LINE__);
  if (dataBytes != wanted || conjugateBytes != wanted) {
    const int factor = complex ? 2 : 1;
    FailLength(factor * expected,
               Items(dataBytes, row, wanted) + (complex ? Items(conjugateBytes, row, wanted) : 0));
  }
  if (orientationWidth) {
    const std::size_t orientationRow = static_cast<std::size_t>(orientationWidth) * sizeof(float);
    const std::size_t orientationBytes = db.ArrayBytes(b.orientation);
    const std::size_t orientationWanted = static_cast<std::size_t>(expected) * orientationRow;
    if (orientationBytes != orientationWanted)
      FailLength(expected, Items(orientationBytes, orientationRow, orientationWanted));
  }
}

void odb_SubFieldData::Load() {
  if (pendingSource) ComputePending();
  if (unread.empty()) return;
  Refuse(odb_SubFieldView::VALUES);
  odb_Reading(subject, [&] {
    for (const store_FieldBlockRecord& b : unread) CheckArrays(b);
  });
  std::size_t labelCount = labels.size();
  for (const store_FieldBlockRecord& b : unread) labelCount += b.count;
  const std::size_t locations = labelCount * perLabel;
  std::size_t label = labels.size(), location = labels.size() * perLabel;
  labels.Resize(labelCount);
  data.Resize(locations * width);
  if (complex) conjugate.Resize(locations * width);
  if (orientationWidth) orientation.Resize(locations * orientationWidth);
  const std::size_t labelsBefore = label, locationsBefore = location;
  try {
    odb_Reading(subject, [&] {
      for (const store_FieldBlockRecord& b : unread) {
        const std::size_t n = static_cast<std::size_t>(b.count) * perLabel;
        store->GetArray(b.labels, labels.data() + label);
        store->GetArray(b.data, data.data() + location * width);
        if (complex) store->GetArray(b.conjugate, conjugate.data() + location * width);
        if (orientationWidth)
          store->GetArray(b.orientation, orientation.data() + location * orientationWidth);
        label += b.count;
        location += n;
      }
    });
  } catch (...) {
    // Back to what was read before: the blocks stay unread, and the next use fails again.
    labels.Resize(labelsBefore);
    data.Resize(locationsBefore * width);
    if (complex) conjugate.Resize(locationsBefore * width);
    if (orientationWidth) orientation.Resize(locationsBefore * orientationWidth);
    throw;
  }
  unread.clear();
  m_unreadLocations = 0;
}

void odb_SubFieldData::SetLocations(odb_Run<int> nodeLabels, odb_Run<int> integrationPoints) {
  perLabel = 1;
  ownLocations = true;
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
    if (position == odb_Enum::ELEMENT_NODAL && odb_DiscreteEntityAccess::Data(instance)) {
      store_Mesh& mesh = *odb_DiscreteEntityAccess::Data(instance)->mesh->mesh;
      const std::vector<int>& connectivity = mesh.Connectivity();
      for (std::size_t e = 0; e < labels.size(); ++e) {
        const int at = mesh.ElementPosition(labels[e]);
        if (at < 0) continue;
        const store_ElementBlock& block = mesh.BlockOf(at);
        const std::size_t first =
            block.connectivityStart +
            static_cast<std::size_t>(at - block.first) * block.nodesPerElement;
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
