#include "odb_DiscretePart.h"

#include <vector>

#include "odb_EntityData.h"
#include "odb_Exception.h"
#include "odb_Instance.h"
#include "odb_Message.h"

const uti_LabelRow<odb_DiscretePartEnm> uti_LabelTable<odb_DiscretePartEnm, 1>::rows[] = {
    {"Number of node labels and coordinates does not match.", "odb_DiscretePart_MSGID_00",
     odb_DiscretePart_NODE_COUNT_MISMATCH},
    {"Node location specification does not correspond to part dimension. %1$s floats expected; "
     "%2$s floats received.",
     "odb_DiscretePart_MSGID_01", odb_DiscretePart_NODE_DIMENSION},
    {"Connectivity array must be provided for all elements.", "odb_DiscretePart_MSGID_02",
     odb_DiscretePart_NO_CONNECTIVITY},
    {"Element connectivity arrays should be of same length.", "odb_DiscretePart_MSGID_03",
     odb_DiscretePart_CONNECTIVITY_LENGTHS},
    {"No node labels provided.", "odb_DiscretePart_MSGID_04", odb_DiscretePart_NO_NODE_LABELS},
    {"No element labels provided.", "odb_DiscretePart_MSGID_05",
     odb_DiscretePart_NO_ELEMENT_LABELS},
    {"Duplicate node label %1$s in part \"%2$s\".", "odb_DiscretePart_MSGID_06",
     odb_DiscretePart_DUPLICATE_NODE},
    {"Duplicate element label %1$s in part \"%2$s\".", "odb_DiscretePart_MSGID_07",
     odb_DiscretePart_DUPLICATE_ELEMENT},
    {"Element %1$s of part \"%3$s\" refers to node %2$s, which the part does not have.",
     "odb_DiscretePart_MSGID_08", odb_DiscretePart_UNKNOWN_NODE},
    {"Elements of %1$s nodes are not supported; an element has at most %2$s nodes.",
     "odb_DiscretePart_MSGID_09", odb_DiscretePart_TOO_MANY_NODES},
    {nullptr, nullptr, {}}};

namespace {

const char kSource[] = "odb/impl/odb_DiscretePart";

[[noreturn]] void Throw(odb_DiscretePartEnm code, int site,
                        std::initializer_list<odb_String> args = {}) {
  odb_ThrowMessage(odb_CatalogueMessage(code, args), kSource, site);
}

// Throws the message for what the mesh refused.
void Refused(const store_MeshRefusal& refusal, const odb_String& part) {
  switch (refusal.kind) {
    case store_MeshRefusal::kDuplicateNode:
      Throw(odb_DiscretePart_DUPLICATE_NODE, 49, {odb_String(refusal.label), part});
    case store_MeshRefusal::kDuplicateElement:
      Throw(odb_DiscretePart_DUPLICATE_ELEMENT, 51, {odb_String(refusal.label), part});
    case store_MeshRefusal::kUnknownNode:
      Throw(odb_DiscretePart_UNKNOWN_NODE, 53,
            {odb_String(refusal.label), odb_String(refusal.node), part});
    case store_MeshRefusal::kNone:
      break;
  }
}

// Records the new members of a part's mesh as a set named `setName`, unless it is empty or a
// set of that kind and name exists.
void MakeSetOf(odb_EntityData& part, const odb_String& setName, odb_Set::Type kind,
               const std::vector<int>& labels) {
  if (setName.Empty()) return;
  part.ReadSets();
  if (part.Repository(kind).isMember(setName)) return;
  part.CreateSet(setName, kind, labels, {});
}

}  // namespace

void odb_DiscretePart::addNodes(const odb_SequenceInt& labels,
                                const odb_SequenceSequenceFloat& coordinates,
                                const odb_String& nodeSetName) {
  int d = embeddedSpace() == odb_Enum::THREE_D ? 3 : 2;
  int n = labels.size();
  if (n == 0) Throw(odb_DiscretePart_NO_NODE_LABELS, 79);
  if (coordinates.size() != n) Throw(odb_DiscretePart_NODE_COUNT_MISMATCH, 80);
  for (int i = 0; i < n; ++i)
    if (coordinates[i].size() != d)
      Throw(odb_DiscretePart_NODE_DIMENSION, 85,
            {odb_String(d), odb_String(coordinates[i].size())});
  std::vector<int> labelArray = odb_ToInts(labels);
  std::vector<int> setLabels = nodeSetName.Empty() ? std::vector<int>() : labelArray;
  odb_EntityData& part = *m_data;
  part.Store();
  // The rows go to the store a piece at a time, as float triples with z = 0 in planar parts.
  auto rows = [&coordinates, d](int first, int count, float* out) {
    for (int i = first; i < first + count; ++i, out += 3) {
      const odb_SequenceFloat& row = coordinates[i];
      out[0] = row[0];
      out[1] = row[1];
      out[2] = d == 3 ? row[2] : 0.0f;
    }
  };
  Refused(part.mesh->mesh->AddNodes(std::move(labelArray), rows), part.name);
  MakeSetOf(part, nodeSetName, odb_Set::NODE_SET, setLabels);
}

void odb_DiscretePart::addElements(const odb_SequenceInt& labels,
                                   const odb_SequenceSequenceInt& connectivity,
                                   const odb_String& type, const odb_String& elementSetName,
                                   const odb_SectionCategory& sectionCategory) {
  int n = labels.size();
  if (n == 0) Throw(odb_DiscretePart_NO_ELEMENT_LABELS, 101);
  if (connectivity.size() != n) Throw(odb_DiscretePart_NO_CONNECTIVITY, 102);
  int width = connectivity[0].size();
  for (int i = 1; i < n; ++i)
    if (connectivity[i].size() != width) Throw(odb_DiscretePart_CONNECTIVITY_LENGTHS, 105);
  if (width > odb_Element::kMaxNodes)
    Throw(odb_DiscretePart_TOO_MANY_NODES, 108,
          {odb_String(width), odb_String(odb_Element::kMaxNodes)});
  std::vector<int> labelArray = odb_ToInts(labels);
  std::vector<int> setLabels = elementSetName.Empty() ? std::vector<int>() : labelArray;
  odb_EntityData& part = *m_data;
  part.Store();
  auto rows = [&connectivity, width](int first, int count, int* out) {
    for (int i = first; i < first + count; ++i, out += width) {
      const odb_SequenceInt& row = connectivity[i];
      for (int k = 0; k < width; ++k) out[k] = row[k];
    }
  };
  Refused(part.mesh->mesh->AddElements(std::move(labelArray), width, rows, type.CStr(),
                                       sectionCategory.name().CStr()),
          part.name);
  MakeSetOf(part, elementSetName, odb_Set::ELEMENT_SET, setLabels);
}

odb_Set& odb_DiscretePart::NodeSet(const odb_String& name, const odb_SequenceInt& nodeLabels) {
  return m_data->CreateSet(name, odb_Set::NODE_SET, odb_ToInts(nodeLabels), {});
}

odb_Set& odb_DiscretePart::ElementSet(const odb_String& name,
                                      const odb_SequenceInt& elementLabels) {
  return m_data->CreateSet(name, odb_Set::ELEMENT_SET, odb_ToInts(elementLabels), {});
}

odb_Set& odb_DiscretePart::Surface(const odb_String& name, const odb_SequenceInt& elementLabels,
                                   const odb_SequenceElementFace& faces) {
  if (faces.size() != elementLabels.size())
    odb_ThrowMessage(odb_CatalogueMessage(odb_Instance_FACE_COUNT), kSource, 131);
  return m_data->CreateSet(name, odb_Set::SURFACE_SET, odb_ToInts(elementLabels),
                           odb_ToInts(faces));
}
