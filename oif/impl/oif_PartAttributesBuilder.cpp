// Section assignments: a comment naming the section, then the section keyword with the
// assigned set and the section's material, and its data line. Assignments of a part go inside
// the part, those of an instance inside the instance.
//   solid:  "*Solid Section, elset=SET, material=MAT" and the empty data line ","
//   shell:  "*Shell Section, elset=SET, material=MAT" and "thickness, section points"
//   beam:   "*Beam Section, elset=SET, material=MAT, section=PROFILE" and the dimensions
#include <map>
#include <string>
#include <vector>

#include "cow_Assert.h"
#include "odb_Section.h"
#include "oif_Components.h"
#include "oif_DeckText.h"
#include "store_Model.h"
#include "store_Section.h"

namespace {

const char* const kSource = "oif/impl/oif_PartAttributesBuilder";

// The items of one assignment; none (and an assertion) for a section the model lacks or of a
// kind this release does not know.
template <class Add>
void AddAssignment(const store_SectionAssignment& a,
                   const std::map<std::string, store_SectionRecord>& sections, Add&& add) {
  const auto found = sections.find(a.section);
  if (found == sections.end()) {
    cow_AssertFailed("Unknown section in section assignment", kSource, 35);
    return;
  }
  const store_SectionRecord& s = found->second;
  const std::string where = ", elset=" + oif_Name(a.setName) + ", material=" + oif_Name(s.material);
  std::string text;
  switch (s.kind) {
    case odb_Section::HOMOGENEOUS_SOLID:
      text = "*Solid Section" + where + "\n,";
      break;
    case odb_Section::HOMOGENEOUS_SHELL:
      text = oif_Format([&](utl_Stream& out) {
        out << "*Shell Section" << where << "\n"
            << s.thickness.value_or(0.0) << ", " << s.integrationPoints.value_or(1);
      });
      break;
    case odb_Section::BEAM:
      text = oif_Format([&](utl_Stream& out) {
        out << "*Beam Section" << where << ", section=" << s.profile << "\n";
        const std::vector<double> dimensions = s.dimensions.value_or(std::vector<double>());
        for (std::size_t i = 0; i < dimensions.size(); ++i) out << (i ? ", " : "") << dimensions[i];
      });
      break;
    default:
      cow_AssertFailed("Unimplemented section type", kSource, 55);
      return;
  }
  add(oif_Comment("Section: " + s.name));
  add(oif_Keyword(text));
}

}  // namespace

void oif_PartAttributesBuilder::Prepare() {
  Clear();
  const oif_ModelData& model = Model();
  store_Database& store = *model.store;
  std::map<std::string, store_SectionRecord> sections;
  for (store_SectionRecord& s : store_Sections(store)) sections[s.name] = s;
  for (const store_PartRecord& part : model.parts)
    for (const store_SectionAssignment& a :
         store_SectionAssignments(store, store_kPartOwner, part.name))
      AddAssignment(a, sections, [&](const oif_Item& item) { AddPart(part.name, item); });
  for (const oif_InstanceInfo& instance : model.instances)
    for (const store_SectionAssignment& a :
         store_SectionAssignments(store, store_kInstanceOwner, instance.name))
      AddAssignment(a, sections, [&](const oif_Item& item) { AddInstance(instance.name, item); });
}
