#include "odb_DiscretePart.h"

#include <algorithm>
#include <cctype>
#include <climits>
#include <string>
#include <vector>

#include "odb_EntityData.h"
#include "odb_Exception.h"
#include "odb_Instance.h"
#include "odb_MeshRows.h"
#include "odb_Message.h"
#include "odb_Util.h"
#include "store_ElementLibrary.h"
#include "thr_ThreadSingleton.h"
#include "wip_WIP.h"

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
    {"Element %1$s of type %2$s has %3$s nodes; the type has %4$s.", "odb_DiscretePart_MSGID_10",
     odb_DiscretePart_WRONG_NODE_COUNT},
    {"Element type \"%1$s\" is not known to the library; its elements are stored as user "
     "elements.",
     "odb_DiscretePart_MSGID_11", odb_DiscretePart_UNKNOWN_TYPE},
    {"Element type \"%1$s\" is not known to the library (type names are matched exactly, and "
     "\"%2$s\" is known); its elements are stored as user elements.",
     "odb_DiscretePart_MSGID_12", odb_DiscretePart_UNKNOWN_TYPE_CASE},
    {"addNodes() was given %1$s node labels and %2$s coordinates; a part of this dimension "
     "takes %3$s coordinates per node (%4$s).",
     "odb_DiscretePart_MSGID_13", odb_DiscretePart_FLAT_COORDINATES},
    {"addElements() was given %1$s element labels and %2$s connectivity entries; elements of "
     "type %3$s take %4$s nodes each (%5$s).",
     "odb_DiscretePart_MSGID_14", odb_DiscretePart_FLAT_CONNECTIVITY},
    {"addElements() was given %1$s element labels and %2$s connectivity entries, which is not a "
     "whole number of nodes per element.",
     "odb_DiscretePart_MSGID_15", odb_DiscretePart_FLAT_USER_CONNECTIVITY},
    {"A part named \"%s\" already exists.", "odb_DiscretePart_MSGID_16",
     odb_DiscretePart_PART_EXISTS},
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

// Copies the first `n` values of a sequence into `out` a block of its storage at a time: the
// values of a block sit side by side, and a block never written reads as zeros, as it does
// value by value. Converting a million short rows is bound by fetching them from memory; this
// keeps it to that.
template <class T>
void CopyValues(const odb_Sequence<T>& values, int n, T* out) {
  const auto& array = values.list().Array();
  int shift = array.BlockShift(), size = 1 << shift;
  for (int pos = array.HeadIndex(), end = pos + n; pos < end;) {
    int offset = pos & (size - 1), run = std::min(size - offset, end - pos);
    const auto* block = array.BlockAt(pos >> shift);
    if (block)
      std::copy_n(block->elements + offset, run, out);
    else
      std::fill_n(out, run, T());
    out += run;
    pos += run;
  }
}

// Starts fetching the storage of the rows a conversion reaches soon. A row's values sit behind
// two pointers, its block table and then its block: row i + 8's table entry is asked for now,
// and row i + 4's block, whose table entry was asked for four rows ago.
template <class T>
void FetchAhead(const odb_Sequence<odb_Sequence<T>>& rows, int i, int end) {
  if (i + 8 < end) {
    const auto& array = rows[i + 8].list().Array();
    array.PrefetchSlot(array.HeadIndex() >> array.BlockShift());
  }
  if (i + 4 < end) {
    const auto& array = rows[i + 4].list().Array();
    const int head = array.HeadIndex(), shift = array.BlockShift();
    if (const auto* block = array.BlockAt(head >> shift))
      __builtin_prefetch(block->elements + (head & ((1 << shift) - 1)));
  }
}

template <class T>
std::vector<int> Values(const odb_Sequence<T>& values) {
  std::vector<int> out(static_cast<std::size_t>(values.size()));
  CopyValues(values, values.size(), out.data());
  return out;
}

// The row-length checks of an addition. The rows are checked as they are copied into the
// store; when the store refuses an addition before reaching every row, or there is no store,
// these run first, so a bad row is still reported ahead of any later refusal.
void CheckDimensions(const odb_SequenceSequenceFloat& coordinates, int d) {
  for (int i = 0; i < coordinates.size(); ++i)
    if (coordinates[i].size() != d)
      Throw(odb_DiscretePart_NODE_DIMENSION, 85,
            {odb_String(d), odb_String(coordinates[i].size())});
}

// The length every connectivity row of an addition must have: the node count of a type the
// element library knows, else (a user element) the first row's.
struct RowLength {
  const odb_SequenceInt& labels;
  const odb_SequenceSequenceInt& connectivity;
  const odb_String& type;
  bool known;
  int width;

  // Refuses row i, whose length is not `width`.
  [[noreturn]] void Refuse(int i) const {
    if (!known) Throw(odb_DiscretePart_CONNECTIVITY_LENGTHS, 105);
    Throw(odb_DiscretePart_WRONG_NODE_COUNT, 106,
          {odb_String(labels[i]), type, odb_String(connectivity[i].size()), odb_String(width)});
  }
  void CheckAll() const {
    for (int i = 0; i < connectivity.size(); ++i)
      if (connectivity[i].size() != width) Refuse(i);
  }
};

// Tells the user, once per type name and open database, that elements of a type the element
// library does not know are stored as user elements: a misspelt or lower-case name of a known
// type would otherwise lose its integration points and faces without a word.
void WarnUserElements(store_Database& db, const odb_String& type) {
  const std::string name = odb_ToText(type);
  if (!db.FirstNotice("user element type " + name)) return;
  std::string upper = name;
  for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  const odb_String text =
      upper != name && store_FindElementClass(upper)
          ? odb_CatalogueMessage(odb_DiscretePart_UNKNOWN_TYPE_CASE, {type, odb_FromText(upper)})
          : odb_CatalogueMessage(odb_DiscretePart_UNKNOWN_TYPE, {type});
  thr_ThreadSingleton<wip_WIP>::Instance().Warning(text);
}

// A count for a message.
odb_String Count(std::size_t n) {
  return odb_FromText(std::to_string(n));
}

}  // namespace

void odb_DiscretePart::addNodes(const odb_SequenceInt& labels,
                                const odb_SequenceSequenceFloat& coordinates,
                                const odb_String& nodeSetName) {
  int d = embeddedSpace() == odb_Enum::THREE_D ? 3 : 2;
  int n = labels.size();
  if (n == 0) Throw(odb_DiscretePart_NO_NODE_LABELS, 79);
  if (coordinates.size() != n) Throw(odb_DiscretePart_NODE_COUNT_MISMATCH, 80);
  std::vector<int> labelArray = Values(labels);
  std::vector<int> setLabels = nodeSetName.Empty() ? std::vector<int>() : labelArray;
  odb_EntityData& part = *m_data;
  if (!part.mesh) CheckDimensions(coordinates, d);
  part.Store();
  // The rows go to the store a piece at a time, as float triples with z = 0 in planar parts.
  odb_MeshRows split(n);
  auto rows = [&](int first, int count, float* out) {
    int bad = split.Run(first, count, [&](int from, int to) {
      float* at = out + 3 * static_cast<std::size_t>(from - first);
      for (int i = from; i < to; ++i, at += 3) {
        FetchAhead(coordinates, i, to);
        const odb_SequenceFloat& row = coordinates[i];
        if (row.size() != d) return i;
        CopyValues(row, d, at);
        if (d == 2) at[2] = 0.0f;
      }
      return -1;
    });
    if (bad >= 0)
      Throw(odb_DiscretePart_NODE_DIMENSION, 85,
            {odb_String(d), odb_String(coordinates[bad].size())});
  };
  store_MeshRefusal refusal = part.mesh->mesh->AddNodes(std::move(labelArray), rows);
  if (refusal) CheckDimensions(coordinates, d);
  Refused(refusal, part.name);
  MakeSetOf(part, nodeSetName, odb_Set::NODE_SET, setLabels);
}

void odb_DiscretePart::addElements(const odb_SequenceInt& labels,
                                   const odb_SequenceSequenceInt& connectivity,
                                   const odb_String& type, const odb_String& elementSetName,
                                   const odb_SectionCategory& sectionCategory) {
  int n = labels.size();
  if (n == 0) Throw(odb_DiscretePart_NO_ELEMENT_LABELS, 101);
  if (connectivity.size() != n) Throw(odb_DiscretePart_NO_CONNECTIVITY, 102);
  const store_ElementClass* known = store_FindElementClass(odb_ToText(type));
  const RowLength length{labels, connectivity, type, known != nullptr,
                         known ? known->nodesPerElement : connectivity[0].size()};
  const int width = length.width;
  if (connectivity[0].size() != width) length.Refuse(0);
  if (width > odb_Element::kMaxNodes) {
    length.CheckAll();
    Throw(odb_DiscretePart_TOO_MANY_NODES, 108,
          {odb_String(width), odb_String(odb_Element::kMaxNodes)});
  }
  std::vector<int> labelArray = Values(labels);
  std::vector<int> setLabels = elementSetName.Empty() ? std::vector<int>() : labelArray;
  odb_EntityData& part = *m_data;
  if (!part.mesh) length.CheckAll();
  part.Store();
  odb_MeshRows split(n);
  auto rows = [&](int first, int count, int* out) {
    int bad = split.Run(first, count, [&](int from, int to) {
      int* at = out + static_cast<std::size_t>(from - first) * width;
      for (int i = from; i < to; ++i, at += width) {
        FetchAhead(connectivity, i, to);
        const odb_SequenceInt& row = connectivity[i];
        if (row.size() != width) return i;
        CopyValues(row, width, at);
      }
      return -1;
    });
    if (bad >= 0) length.Refuse(bad);
  };
  store_MeshRefusal refusal = part.mesh->mesh->AddElements(
      std::move(labelArray), width, rows, type.CStr(), sectionCategory.name().CStr());
  if (refusal) length.CheckAll();
  Refused(refusal, part.name);
  if (!known) WarnUserElements(part.Store(), type);
  MakeSetOf(part, elementSetName, odb_Set::ELEMENT_SET, setLabels);
}

void odb_DiscretePart::addNodes(odb_ArrayView<int> labels, odb_ArrayView<float> coordinates,
                                const odb_String& nodeSetName) {
  const std::size_t d = embeddedSpace() == odb_Enum::THREE_D ? 3 : 2, n = labels.size();
  if (n == 0) Throw(odb_DiscretePart_NO_NODE_LABELS, __LINE__);
  if (coordinates.size() != n * d || n > static_cast<std::size_t>(INT_MAX))
    Throw(odb_DiscretePart_FLAT_COORDINATES, __LINE__,
          {Count(n), Count(coordinates.size()), Count(d), Count(n * d)});
  std::vector<int> labelArray(labels.begin(), labels.end());
  std::vector<int> setLabels = nodeSetName.Empty() ? std::vector<int>() : labelArray;
  odb_EntityData& part = *m_data;
  part.Store();
  // The store takes x y z per node: planar coordinates get z = 0.
  auto rows = [&](int first, int count, float* out) {
    const float* from = coordinates.data() + static_cast<std::size_t>(first) * d;
    if (d == 3) {
      std::copy_n(from, static_cast<std::size_t>(count) * 3, out);
      return;
    }
    for (int i = 0; i < count; ++i, from += 2, out += 3) {
      out[0] = from[0];
      out[1] = from[1];
      out[2] = 0.0f;
    }
  };
  Refused(part.mesh->mesh->AddNodes(std::move(labelArray), rows), part.name);
  MakeSetOf(part, nodeSetName, odb_Set::NODE_SET, setLabels);
}

void odb_DiscretePart::addElements(odb_ArrayView<int> labels, odb_ArrayView<int> connectivity,
                                   const odb_String& type, const odb_String& elementSetName,
                                   const odb_SectionCategory& sectionCategory) {
  const std::size_t n = labels.size();
  if (n == 0) Throw(odb_DiscretePart_NO_ELEMENT_LABELS, __LINE__);
  if (connectivity.empty()) Throw(odb_DiscretePart_NO_CONNECTIVITY, __LINE__);
  const store_ElementClass* known = store_FindElementClass(odb_ToText(type));
  const std::size_t width =
      known ? static_cast<std::size_t>(known->nodesPerElement) : connectivity.size() / n;
  if (known && (connectivity.size() != n * width || n > static_cast<std::size_t>(INT_MAX)))
    Throw(odb_DiscretePart_FLAT_CONNECTIVITY, __LINE__,
          {Count(n), Count(connectivity.size()), type, Count(width), Count(n * width)});
  if (connectivity.size() != n * width || n > static_cast<std::size_t>(INT_MAX))
    Throw(odb_DiscretePart_FLAT_USER_CONNECTIVITY, __LINE__,
          {Count(n), Count(connectivity.size())});
  if (width > static_cast<std::size_t>(odb_Element::kMaxNodes))
    Throw(odb_DiscretePart_TOO_MANY_NODES, __LINE__,
          {Count(width), odb_String(odb_Element::kMaxNodes)});
  std::vector<int> labelArray(labels.begin(), labels.end());
  std::vector<int> setLabels = elementSetName.Empty() ? std::vector<int>() : labelArray;
  odb_EntityData& part = *m_data;
  part.Store();
  auto rows = [&](int first, int count, int* out) {
    std::copy_n(connectivity.data() + static_cast<std::size_t>(first) * width,
                static_cast<std::size_t>(count) * width, out);
  };
  Refused(part.mesh->mesh->AddElements(std::move(labelArray), static_cast<int>(width), rows,
                                       type.CStr(), sectionCategory.name().CStr()),
          part.name);
  if (!known) WarnUserElements(part.Store(), type);
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
