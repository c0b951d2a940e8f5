// The instances with their placement. A placement value is written whenever it is not exactly
// zero, so that the deck places every instance exactly as the database does.
#include <string>

#include "oif_Components.h"
#include "oif_DeckText.h"

namespace {

constexpr double kPi = 3.141592653589793;

bool IsZero(const double (&v)[3]) {
  return v[0] == 0 && v[1] == 0 && v[2] == 0;
}

}  // namespace

void oif_InstanceBuilder::Prepare() {
  Clear();
  for (const oif_InstanceInfo& instance : Model().instances) {
    const std::string text = oif_Format([&](utl_Stream& out) {
      out << "*Instance, name=" << oif_Name(instance.name) << ", part=" << oif_Name(instance.part);
      const store_Placement& p = instance.placement;
      if (!IsZero(p.translation)) {
        out.LineBreak();
        for (int k = 0; k < 3; ++k) {
          if (k) out << ", ";
          out.Print(p.translation[k], 12, 15);
        }
      }
      if (p.angle != 0) {
        out.LineBreak();
        const double values[7] = {p.axisPoint[0],
                                  p.axisPoint[1],
                                  p.axisPoint[2],
                                  p.axisPoint[0] + p.axisDirection[0],
                                  p.axisPoint[1] + p.axisDirection[1],
                                  p.axisPoint[2] + p.axisDirection[2],
                                  p.angle * 180.0 / kPi};
        for (int k = 0; k < 7; ++k) {
          if (k) out << ", ";
          out.Print(values[k], 12, 15);
        }
      }
    });
    AddInstance(instance.name, oif_Keyword(text));
  }
}
