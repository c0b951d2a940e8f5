// Node sets, element sets and surfaces. Sets of a part go inside the part; sets of an instance
// and of the assembly go at assembly level, one keyword block per instance they reach (blocks of
// one name add up). An element-based surface is written as one internal element set per face,
// named "_" + surface + "_" + face label, and a "*Surface, type=ELEMENT" whose data lines pair
// each of those sets with its face label.
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "cow_Assert.h"
#include "odb_Enum.h"
#include "oif_Components.h"
#include "oif_DeckText.h"
#include "store_Model.h"

namespace {

const char* const kSource = "oif/impl/oif_RegionBuilder";

// The face label an element-based surface writes for a stored face code.
std::string FaceLabel(int face) {
  if (face >= odb_Enum::FACE1 && face <= odb_Enum::FACE6) return "S" + std::to_string(face);
  if (face == odb_Enum::SIDE1) return "SPOS";
  if (face == odb_Enum::SIDE2) return "SNEG";
  if (face >= odb_Enum::END1 && face <= odb_Enum::END3)
    return "END" + std::to_string(face - odb_Enum::END1 + 1);
  cow_AssertFailed("Unknown face of an element-based surface", kSource, 38);
  return "S" + std::to_string(face);
}

std::shared_ptr<const std::vector<int>> Labels(std::vector<int> labels) {
  return std::make_shared<const std::vector<int>>(std::move(labels));
}

// The items of one set or surface, each member's instance given by `instanceOf`.
template <class Add, class InstanceOf>
void AddSet(const store_SetRecord& set, Add&& add, InstanceOf&& instanceOf) {
  if (set.kind != store_kSurface) {
    const oif_SetItem::Kind kind =
        set.kind == store_kNodeSet ? oif_SetItem::NODE : oif_SetItem::ELEMENT;
    if (set.members.empty())
      add(oif_Item(new oif_SetItem(kind, set.name, "", set.internal, Labels({}))));
    for (const store_SetMember& member : set.members)
      add(oif_Item(new oif_SetItem(kind, set.name, instanceOf(member), set.internal,
                                   Labels(member.labels))));
    return;
  }
  // By face code, in code order; within a face, by member.
  std::map<int, std::vector<std::pair<std::string, std::vector<int>>>> byFace;
  for (const store_SetMember& member : set.members) {
    std::map<int, std::vector<int>> faces;
    for (std::size_t i = 0; i < member.labels.size() && i < member.faces.size(); ++i)
      faces[member.faces[i]].push_back(member.labels[i]);
    for (auto& face : faces)
      byFace[face.first].emplace_back(instanceOf(member), std::move(face.second));
  }
  std::string surface = "*Surface, type=ELEMENT, name=" + oif_Name(set.name);
  if (set.internal) surface += ", internal";
  for (auto& face : byFace) {
    const std::string label = FaceLabel(face.first);
    const std::string elset = "_" + set.name + "_" + label;
    for (auto& member : face.second)
      add(oif_Item(new oif_SetItem(oif_SetItem::ELEMENT, elset, member.first, true,
                                   Labels(std::move(member.second)))));
    surface += "\n" + oif_Name(elset) + ", " + label;
  }
  add(oif_Keyword(surface));
}

}  // namespace

void oif_RegionBuilder::Prepare() {
  Clear();
  const oif_ModelData& model = Model();
  store_Database& store = *model.store;
  const auto none = [](const store_SetMember&) { return std::string(); };
  for (const store_PartRecord& part : model.parts)
    for (const store_SetRecord& set : store_Sets(store, store_kPartOwner, part.name))
      AddSet(
          set, [&](const oif_Item& item) { AddPart(part.name, item); }, none);
  for (const oif_InstanceInfo& instance : model.instances)
    for (const store_SetRecord& set : store_Sets(store, store_kInstanceOwner, instance.name))
      AddSet(
          set, [&](const oif_Item& item) { AddAssembly(item); },
          [&](const store_SetMember&) { return instance.name; });
  for (const store_SetRecord& set : store_Sets(store, store_kAssemblyOwner, ""))
    AddSet(
        set, [&](const oif_Item& item) { AddAssembly(item); },
        [](const store_SetMember& member) { return member.instance; });
}
