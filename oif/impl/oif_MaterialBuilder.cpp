// The materials: the comment header "MATERIALS" at model level when the model has any, then per
// material "*Material, name=" and the properties it was given:
//   "*Density" and "density,"
//   "*Elastic" and "Young's modulus, Poisson's ratio"
#include <string>

#include "oif_Components.h"
#include "oif_DeckText.h"
#include "store_Material.h"

void oif_MaterialBuilder::Prepare() {
  Clear();
  const std::vector<store_MaterialRecord> materials = store_Materials(*Model().store);
  if (materials.empty()) return;
  AddModel(oif_Comment("\nMATERIALS\n"));
  for (const store_MaterialRecord& m : materials) {
    AddModel(oif_Keyword(oif_Format([&](utl_Stream& out) {
      out << "*Material, name=" << oif_Name(m.name);
      if (m.hasDensity) out << "\n*Density\n" << m.density << ",";
      if (m.hasElastic) out << "\n*Elastic\n" << m.youngsModulus << ", " << m.poissonsRatio;
    })));
  }
}
