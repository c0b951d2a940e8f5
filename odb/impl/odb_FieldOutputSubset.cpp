// odb_FieldOutput: subsets and scalar fields, all orphans.
#include <algorithm>
#include <cstring>
#include <map>
#include <string>
#include <utility>

#include "odb_EntityData.h"
#include "odb_FieldOutput.h"
#include "odb_FieldSubset.h"
#include "odb_Message.h"
#include "store_Tensor.h"

namespace {

const char* const kSource = "odb/impl/odb_FieldOutput";

[[noreturn]] void FailSub(odb_SubFieldEnm code, int site) {
  odb_ThrowMessage(odb_CatalogueMessage(code), "odb/impl/odb_SubField", site);
}

// The labels of the members of `set` in the instance named `instance`; false when the set does
// not span that instance.
bool MembersIn(const odb_Set& set, const odb_String& instance, std::vector<int>& labels) {
  const odb_SequenceString names = set.instanceNames();
  if (!names.isMember(instance)) return false;
  if (set.type() == odb_Set::NODE_SET) {
    const odb_SequenceNode nodes = set.nodes(instance);
    for (int i = 0; i < nodes.size(); ++i) labels.push_back(nodes[i].label());
  } else {
    const odb_SequenceElement elements = set.elements(instance);
    for (int i = 0; i < elements.size(); ++i) labels.push_back(elements[i].label());
  }
  std::sort(labels.begin(), labels.end());
  return true;
}

bool SameOrientation(odb_SubFieldData& sub, std::size_t i, const std::vector<float>& wanted) {
  if (static_cast<int>(wanted.size()) != sub.orientationWidth || wanted.empty()) return false;
  return std::memcmp(sub.orientation.data() + i * sub.orientationWidth, wanted.data(),
                     wanted.size() * sizeof(float)) == 0;
}

// A SCALAR field whose value at each location is `f` of the source value's components.
odb_FieldOutput Reduce(odb_FieldData& source, const std::function<float(const float*, int)>& f) {
  source.ReadBlocks();
  std::shared_ptr<odb_FieldData> out = source.EmptyCopy();
  out->type = odb_Enum::SCALAR;
  out->componentLabels = odb_SequenceString();
  out->validInvariants = odb_SequenceInvariant();
  for (const auto& sub : source.subFields) {
    std::vector<int> all(sub->Locations());
    for (std::size_t i = 0; i < all.size(); ++i) all[i] = static_cast<int>(i);
    std::shared_ptr<odb_SubFieldData> scalar = odb_PickLocations(*sub, all);
    scalar->type = odb_Enum::SCALAR;
    scalar->width = 1;
    scalar->complex = false;
    odb_Run<float> values;
    values.Resize(all.size());
    for (std::size_t i = 0; i < all.size(); ++i)
      values[i] = f(sub->data.data() + i * sub->width, sub->width);
    scalar->data = std::move(values);
    scalar->subsetIndices.clear();
    out->subFields.push_back(scalar);
  }
  return odb_FieldOutputAccess::Make(out);
}

}  // namespace

odb_FieldOutput odb_FieldOutput::getSubset(odb_Enum::odb_ResultPositionEnum position) const {
  switch (position) {
    case odb_Enum::WHOLE_REGION:
      FailSub(odb_SubField_WHOLE_REGION, 70);
    case odb_Enum::WHOLE_PART_INSTANCE:
      FailSub(odb_SubField_WHOLE_PART_INSTANCE, 72);
    case odb_Enum::WHOLE_MODEL:
      FailSub(odb_SubField_WHOLE_MODEL, 74);
    case odb_Enum::GENERAL_PARTICLE:
      FailSub(odb_SubField_GENERAL_PARTICLE, 76);
    default:
      if (!odb_IsFieldPosition(position)) FailSub(odb_SubField_UNKNOWN_LOCATION, 83);
  }
  odb_FieldOutput subset = odb_FilterField(
      *m_data, [position](odb_SubFieldData& sub) { return sub.position == position; }, nullptr);
  const bool derivable = position == odb_Enum::ELEMENT_NODAL || position == odb_Enum::CENTROID;
  if (subset.m_data->subFields.empty() && !IsOrphan() && derivable)
    odb_Extrapolate(*m_data, position, *subset.m_data);
  return subset;
}

odb_FieldOutput odb_FieldOutput::getSubset(const odb_Set& region) const {
  if (region.type() != odb_Set::NODE_SET && region.type() != odb_Set::ELEMENT_SET)
    FailSub(odb_SubField_UNKNOWN_SET_TYPE, __LINE__);
  const bool nodes = region.type() == odb_Set::NODE_SET;
  // Member labels per instance, sorted, found once per instance.
  auto members = std::make_shared<std::map<std::string, std::vector<int>>>();
  auto memberSet = [region, members](odb_SubFieldData& sub) -> const std::vector<int>* {
    const std::string key = sub.instanceName.CStr();
    auto found = members->find(key);
    if (found == members->end()) {
      std::vector<int> labels;
      if (!MembersIn(region, sub.instanceName, labels)) labels.clear();
      found = members->emplace(key, std::move(labels)).first;
    }
    return &found->second;
  };
  return odb_FilterField(
      *m_data, [&region](odb_SubFieldData& sub) { return sub.setName == region.name(); },
      [nodes, memberSet](odb_SubFieldData& sub, std::size_t i) {
        const int label = nodes ? sub.NodeLabels()[i] : sub.ElementLabels()[i];
        if (label < 0) return false;
        const std::vector<int>* labels = memberSet(sub);
        return std::binary_search(labels->begin(), labels->end(), label);
      });
}

odb_FieldOutput odb_FieldOutput::getSubset(const odb_Instance& instance) const {
  const odb_String name = odb_DiscreteEntityAccess::Data(instance) ? instance.name() : odb_String();
  return odb_FilterField(
      *m_data, [name](odb_SubFieldData& sub) { return sub.instanceName == name; }, nullptr);
}

odb_FieldOutput odb_FieldOutput::getSubset(const odb_Element& element) const {
  const int label = element.label(), mesh = element.meshIndex();
  return odb_FilterField(*m_data, nullptr, [label, mesh](odb_SubFieldData& sub, std::size_t i) {
    return odb_DiscreteEntityAccess::Data(sub.instance) &&
           odb_DiscreteEntityAccess::Data(sub.instance)->mesh->MeshIndex() == mesh &&
           sub.position != odb_Enum::NODAL && sub.ElementLabels()[i] == label;
  });
}

odb_FieldOutput odb_FieldOutput::getSubset(const odb_Node& node) const {
  const int label = node.label(), mesh = node.meshIndex();
  return odb_FilterField(*m_data, nullptr, [label, mesh](odb_SubFieldData& sub, std::size_t i) {
    return odb_DiscreteEntityAccess::Data(sub.instance) &&
           odb_DiscreteEntityAccess::Data(sub.instance)->mesh->MeshIndex() == mesh &&
           sub.NodeLabels()[i] == label;
  });
}

odb_FieldOutput odb_FieldOutput::getSubset(const odb_SectionPoint& sectionPoint) const {
  const int number = sectionPoint.number();
  return odb_FilterField(
      *m_data, [number](odb_SubFieldData& sub) { return sub.sectionPoint.number() == number; },
      nullptr);
}

odb_FieldOutput odb_FieldOutput::getSubset(const odb_FieldLocation& location) const {
  return odb_FilterField(
      *m_data,
      [location](odb_SubFieldData& sub) {
        return sub.position == location.position() &&
               (location.sectionPoint().isEmpty() ||
                location.sectionPoint().isMember(sub.sectionPoint));
      },
      nullptr);
}

odb_FieldOutput odb_FieldOutput::getSubset(const odb_String& elementType) const {
  return odb_FilterField(
      *m_data, [elementType](odb_SubFieldData& sub) { return sub.elementType == elementType; },
      nullptr);
}

odb_FieldOutput odb_FieldOutput::getSubset(
    const odb_SequenceSequenceFloat& localCoordSystem) const {
  std::vector<float> wanted;
  if (localCoordSystem.size() == 1)
    for (int c = 0; c < localCoordSystem[0].size(); ++c) wanted.push_back(localCoordSystem[0][c]);
  return odb_FilterField(*m_data, nullptr, [wanted](odb_SubFieldData& sub, std::size_t i) {
    return SameOrientation(sub, i, wanted);
  });
}

odb_FieldOutput odb_FieldOutput::getScalarField(odb_Enum::odb_InvariantEnum invariant,
                                                bool /*orphanOk*/) const {
  if (!m_data->validInvariants.isMember(invariant))
    odb_ThrowMessage(odb_CatalogueMessage(odb_FieldOutput_BAD_INVARIANT), kSource, 171);
  const odb_Enum::odb_DataTypeEnum type = m_data->type;
  return Reduce(*m_data, [invariant, type](const float* c, int n) {
    return store_Invariant(invariant, type, c, n);
  });
}

odb_FieldOutput odb_FieldOutput::getScalarField(const odb_String& componentLabel,
                                                bool /*orphanOk*/) const {
  const int component = m_data->componentLabels.findFirst(componentLabel);
  if (component < 0 || component >= m_data->Width())
    odb_ThrowMessage(odb_CatalogueMessage(odb_FieldOutput_NOT_FOUND), kSource, 182);
  return Reduce(*m_data, [component](const float* c, int) { return c[component]; });
}
