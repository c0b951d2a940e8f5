// The datum coordinate systems, at assembly level, as orientations:
//   fixed in space:    "*Orientation, name=N[, system=...]" and the nine coordinates of a point
//                      on the 1-axis, a point in the 1-2 plane and the origin;
//   three nodes:       "*Orientation, name=N, definition=NODES[, system=...]" and the three
//                      nodes as INSTANCE.LABEL;
//   others (nodes on a circle, one node): as fixed in space, at their defined position.
#include <string>

#include "oif_Components.h"
#include "oif_DeckText.h"
#include "store_DatumCsys.h"

namespace {

// store_DatumCsysRecord::definition of a system that follows three nodes.
constexpr int kThreeNodes = 1;

}  // namespace

void oif_TransformBuilder::Prepare() {
  Clear();
  for (const store_DatumCsysRecord& d : Model().datums) {
    const std::string system = oif_DatumParameter(d.type, false);
    AddAssembly(oif_Keyword(oif_Format([&](utl_Stream& out) {
      out << "*Orientation, name=" << oif_Name(d.name);
      if (d.definition == kThreeNodes) out << ", definition=NODES";
      if (!system.empty()) out << ", " << system;
      out.LineBreak();
      if (d.definition == kThreeNodes) {
        const std::string instance = oif_Name(d.instance);
        out << instance << "." << d.nodes[0] << ", " << instance << "." << d.nodes[1] << ", "
            << instance << "." << d.nodes[2];
        return;
      }
      const double values[9] = {d.origin[0] + d.axes[0],
                                d.origin[1] + d.axes[1],
                                d.origin[2] + d.axes[2],
                                d.origin[0] + d.axes[3],
                                d.origin[1] + d.axes[4],
                                d.origin[2] + d.axes[5],
                                d.origin[0],
                                d.origin[1],
                                d.origin[2]};
      for (int k = 0; k < 9; ++k) out << (k ? ", " : "") << values[k];
    })));
  }
}
