// The model half of odb diff: parts (node and element labels, coordinates, connectivity,
// element types), instances (their part and placed coordinates) and the user's sets of parts,
// instances and the assembly.
#include <algorithm>
#include <vector>

#include "tool_Common.h"
#include "tool_DiffReport.h"

namespace {

// Compares two label lists: their counts, then the first position where they part.
bool SameLabels(const std::vector<int>& a, const std::vector<int>& b, const std::string& what,
                tool_DiffReport& report) {
  if (a.size() != b.size()) {
    report.structural(what + ": " + std::to_string(a.size()) + " in A, " +
                      std::to_string(b.size()) + " in B");
    return false;
  }
  const auto parted = std::mismatch(a.begin(), a.end(), b.begin());
  if (parted.first == a.end()) return true;
  report.structural(what + " differ from position " + std::to_string(parted.first - a.begin()) +
                    ": " + std::to_string(*parted.first) + " in A, " +
                    std::to_string(*parted.second) + " in B");
  return false;
}

// Nodes: labels, then coordinates within the tolerance of "coordinates".
void DiffNodes(const odb_DiscreteEntity& a, const odb_DiscreteEntity& b, const std::string& owner,
               tool_DiffReport& report) {
  const std::size_t na = a.nodes().size(), nb = b.nodes().size();
  std::vector<int> la(na), lb(nb);
  std::vector<float> xa(3 * na), xb(3 * nb);
  a.readNodes(la, xa);
  b.readNodes(lb, xb);
  if (!SameLabels(la, lb, owner + ": node labels", report)) return;
  report.values("model", "coordinates", xa.data(), xb.data(), xa.size(), [&](std::size_t i) {
    return owner + ", node " + std::to_string(la[i / 3]) + ", coordinate " +
           std::to_string(i % 3 + 1);
  });
}

// Elements: labels, connectivity and types, all exact.
void DiffElements(const odb_DiscreteEntity& a, const odb_DiscreteEntity& b,
                  const std::string& owner, tool_DiffReport& report) {
  const odb_SequenceElement &ea = a.elements(), &eb = b.elements();
  std::vector<int> la(static_cast<std::size_t>(ea.size())), lb(static_cast<std::size_t>(eb.size()));
  std::vector<int> ca(a.connectivityLength()), cb(b.connectivityLength());
  a.readElements(la, ca);
  b.readElements(lb, cb);
  if (!SameLabels(la, lb, owner + ": element labels", report)) return;
  if (ca != cb) {
    // The first element whose nodes differ.
    for (int i = 0; i < ea.size(); ++i) {
      const odb_Element x = ea.element(i), y = eb.element(i);
      const int n = x.numberOfNodes();
      if (n != y.numberOfNodes() ||
          !std::equal(x.nodeLabels(), x.nodeLabels() + n, y.nodeLabels())) {
        report.structural(owner + ": the connectivity differs from element " +
                          std::to_string(x.label()));
        break;
      }
    }
    return;
  }
  odb_String previousA, previousB;
  for (int i = 0; i < ea.size(); ++i) {
    const odb_String ta = ea.element(i).type(), tb = eb.element(i).type();
    if (ta == previousA && tb == previousB) continue;  // runs of one type cost one comparison
    if (ta != tb) {
      report.structural(owner + ": element " + std::to_string(la[static_cast<std::size_t>(i)]) +
                        " is " + tool_Str(ta) + " in A, " + tool_Str(tb) + " in B");
      return;
    }
    previousA = ta;
    previousB = tb;
  }
}

std::vector<std::string> UserSetNames(odb_SetRepository& sets) {
  std::vector<std::string> names;
  for (odb_SetRepositoryIT it(sets); !it.isDone(); it.next())
    if (!it.currentValue().isInternal()) names.push_back(tool_Str(it.currentKey()));
  return names;
}

// A set's members per instance it spans: node labels, element labels and faces.
std::vector<int> Members(const odb_Set& set, const odb_String& instance) {
  std::vector<int> members;
  if (set.type() == odb_Set::NODE_SET) {
    const odb_SequenceNode nodes = instance.Empty() ? set.nodes() : set.nodes(instance);
    for (int i = 0; i < nodes.size(); ++i) members.push_back(nodes.node(i).label());
  } else {
    const odb_SequenceElement elements = instance.Empty() ? set.elements() : set.elements(instance);
    for (int i = 0; i < elements.size(); ++i) members.push_back(elements.element(i).label());
    if (set.type() == odb_Set::SURFACE_SET) {
      const odb_SequenceElementFace faces = instance.Empty() ? set.faces() : set.faces(instance);
      for (int i = 0; i < faces.size(); ++i) members.push_back(static_cast<int>(faces[i]));
    }
  }
  return members;
}

void DiffSets(odb_SetRepository& a, odb_SetRepository& b, const std::string& what,
              tool_DiffReport& report) {
  for (const std::string& name : report.common(UserSetNames(a), UserSetNames(b), what)) {
    const odb_Set &sa = a[name.c_str()], &sb = b[name.c_str()];
    const std::string owner = what + " \"" + name + "\"";
    const odb_SequenceString ia = sa.instanceNames(), ib = sb.instanceNames();
    if (!ia.isEqual(ib)) {
      report.structural(owner + ": spans other instances");
      continue;
    }
    for (int i = 0; i < std::max(ia.size(), 1); ++i) {
      const odb_String instance = ia.size() > 1 ? ia[i] : odb_String();
      if (Members(sa, instance) != Members(sb, instance)) {
        report.structural(owner + ": members differ" +
                          (instance.Empty() ? "" : " in instance " + tool_Str(instance)));
        break;
      }
    }
  }
}

void DiffEntitySets(odb_DiscreteEntity& a, odb_DiscreteEntity& b, const std::string& owner,
                    tool_DiffReport& report) {
  DiffSets(a.nodeSets(), b.nodeSets(), owner + ", node set", report);
  DiffSets(a.elementSets(), b.elementSets(), owner + ", element set", report);
  DiffSets(a.surfaces(), b.surfaces(), owner + ", surface", report);
}

template <class It, class Repository>
std::vector<std::string> Keys(Repository& repository) {
  std::vector<std::string> names;
  for (It it(repository); !it.isDone(); it.next()) names.push_back(tool_Str(it.currentKey()));
  return names;
}

}  // namespace

void tool_DiffModel(odb_Odb& a, odb_Odb& b, tool_DiffReport& report) {
  for (const std::string& name :
       report.common(Keys<odb_DiscretePartRepositoryIT>(a.parts()),
                     Keys<odb_DiscretePartRepositoryIT>(b.parts()), "part")) {
    odb_DiscretePart pa = a.parts()[name.c_str()], pb = b.parts()[name.c_str()];
    const std::string owner = "part " + name;
    DiffNodes(pa, pb, owner, report);
    DiffElements(pa, pb, owner, report);
    DiffEntitySets(pa, pb, owner, report);
  }
  odb_InstanceRepository &ia = a.rootAssembly().instances(), &ib = b.rootAssembly().instances();
  for (const std::string& name : report.common(Keys<odb_InstanceRepositoryIT>(ia),
                                               Keys<odb_InstanceRepositoryIT>(ib), "instance")) {
    odb_Instance xa = ia[name.c_str()], xb = ib[name.c_str()];
    const std::string owner = "instance " + name;
    if (xa.partName() != xb.partName()) {
      report.structural(owner + ": places part " + tool_Str(xa.partName()) + " in A, " +
                        tool_Str(xb.partName()) + " in B");
      continue;
    }
    DiffNodes(xa, xb, owner, report);  // placed coordinates: the placement is compared too
    DiffEntitySets(xa, xb, owner, report);
  }
  odb_Assembly &sa = a.rootAssembly(), &sb = b.rootAssembly();
  DiffSets(sa.nodeSets(), sb.nodeSets(), "assembly node set", report);
  DiffSets(sa.elementSets(), sb.elementSets(), "assembly element set", report);
  DiffSets(sa.surfaces(), sb.surfaces(), "assembly surface", report);
}
