// Field values at element nodes and centroids, derived from integration-point values with each
// element type's extrapolator.
#include <chrono>
#include <ctime>
#include <string>
#include <utility>

#include "odb_FieldSubset.h"
#include "store_ElementLibrary.h"
#include "store_Extrapolation.h"
#include "thr_ThreadSingleton.h"
#include "wip_WIP.h"

namespace {

odb_String Text(const std::string& s) {
  return odb_String(s.c_str());
}

// One integration-point sub-field carried to the nodes (or centroids) of its elements; null
// when the element type has no extrapolator.
std::shared_ptr<odb_SubFieldData> Carry(odb_SubFieldData& sub,
                                        odb_Enum::odb_ResultPositionEnum position) {
  sub.Load();
  const std::string type = sub.elementType.CStr();
  const store_ElementClass cls = store_ElementClassOf(type, 0);
  const store_Extrapolator* x = store_FindExtrapolator(cls);
  if (!x || x->points != sub.perLabel || !sub.subsetIndices.empty()) return nullptr;
  const bool nodal = position == odb_Enum::ELEMENT_NODAL;
  const int per = nodal ? x->nodes : 1;
  auto out = odb_SubFieldData::SameIdentity(sub);
  out->position = position;
  out->perLabel = per;
  out->derived = true;
  out->orientationWidth = 0;
  const std::size_t elements = sub.labels.size(), w = static_cast<std::size_t>(sub.width);
  out->labels.Assign(sub.labels.data(), elements);
  out->data.Resize(elements * per * w);
  if (sub.complex) out->conjugate.Resize(elements * per * w);
  const double* weights = nodal ? x->toNodes.data() : x->toCentroid.data();
  auto apply = [&](const odb_Run<float>& from, odb_Run<float>& to) {
    for (std::size_t e = 0; e < elements; ++e)
      for (int n = 0; n < per; ++n)
        for (std::size_t c = 0; c < w; ++c) {
          double sum = 0;
          for (int p = 0; p < x->points; ++p)
            sum += weights[n * x->points + p] * from[(e * x->points + p) * w + c];
          to[(e * per + n) * w + c] = static_cast<float>(sum);
        }
  };
  apply(sub.data, out->data);
  if (sub.complex) apply(sub.conjugate, out->conjugate);
  return out;
}

}  // namespace

void odb_Extrapolate(odb_FieldData& source, odb_Enum::odb_ResultPositionEnum position,
                     odb_FieldData& out) {
  wip_WIP& wip = thr_ThreadSingleton<wip_WIP>::Instance();
  const auto wall = std::chrono::steady_clock::now();
  const std::clock_t cpu = std::clock();
  bool unsupported = false;
  int index = 0;
  for (const auto& sub : source.subFields) {
    if (sub->position != odb_Enum::INTEGRATION_POINT) continue;
    odb_String line("Odb Field Extrapolation: label:");
    line += source.name;
    line += "; description:";
    line += source.description;
    line += "; locationIndex =";
    line += Text(std::to_string(index++));
    wip.Landmark(line);
    std::shared_ptr<odb_SubFieldData> carried = Carry(*sub, position);
    if (carried)
      out.subFields.push_back(carried);
    else
      unsupported = true;
  }
  if (unsupported) wip.Warning(odb_String("The field contains unsupported elements."));
  const double elapsed =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - wall).count();
  const double used = static_cast<double>(std::clock() - cpu) / CLOCKS_PER_SEC;
  wip.Landmark(Text("Elapsed time: " + std::to_string(elapsed)));
  wip.Landmark(Text("CPU time: " + std::to_string(used)));
}
