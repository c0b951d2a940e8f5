#include "odb_FieldSubset.h"

#include <utility>

std::shared_ptr<odb_SubFieldData> odb_PickLocations(odb_SubFieldData& sub,
                                                    const std::vector<int>& keep) {
  sub.Load();
  auto out = odb_SubFieldData::SameIdentity(sub);
  const odb_Run<int>& elements = sub.ElementLabels();
  const odb_Run<int>& nodes = sub.NodeLabels();
  const odb_Run<int>& points = sub.IntegrationPoints();
  const bool nodal = sub.position == odb_Enum::NODAL;
  const std::size_t n = keep.size();
  odb_Run<int> keptNodes, keptPoints;
  keptNodes.Resize(n);
  keptPoints.Resize(n);
  out->labels.Resize(n);
  out->data.Resize(n * sub.width);
  if (sub.complex) out->conjugate.Resize(n * sub.width);
  if (sub.orientationWidth) out->orientation.Resize(n * sub.orientationWidth);
  for (std::size_t k = 0; k < n; ++k) {
    const std::size_t i = static_cast<std::size_t>(keep[k]);
    out->labels[k] = nodal ? nodes[i] : elements[i];
    keptNodes[k] = nodes[i];
    keptPoints[k] = points[i];
    for (int c = 0; c < sub.width; ++c) {
      out->data[k * sub.width + c] = sub.data[i * sub.width + c];
      if (sub.complex) out->conjugate[k * sub.width + c] = sub.conjugate[i * sub.width + c];
    }
    for (int c = 0; c < sub.orientationWidth; ++c)
      out->orientation[k * sub.orientationWidth + c] =
          sub.orientation[i * sub.orientationWidth + c];
    out->subsetIndices.push_back(sub.subsetIndices.empty() ? keep[k] : sub.subsetIndices[i]);
  }
  out->SetLocations(std::move(keptNodes), std::move(keptPoints));
  return out;
}

odb_FieldOutput odb_FilterField(odb_FieldData& source,
                                const std::function<bool(odb_SubFieldData&)>& takeWhole,
                                const std::function<bool(odb_SubFieldData&, std::size_t)>& keep) {
  source.ReadBlocks();
  std::shared_ptr<odb_FieldData> out = source.EmptyCopy();
  for (const auto& sub : source.subFields) {
    if (takeWhole && takeWhole(*sub)) {
      out->subFields.push_back(sub);
      continue;
    }
    if (!keep) continue;
    sub->Load();
    std::vector<int> kept;
    const std::size_t n = sub->Locations();
    for (std::size_t i = 0; i < n; ++i)
      if (keep(*sub, i)) kept.push_back(static_cast<int>(i));
    if (kept.size() == n && n > 0)
      out->subFields.push_back(sub);
    else if (!kept.empty())
      out->subFields.push_back(odb_PickLocations(*sub, kept));
  }
  return odb_FieldOutputAccess::Make(out);
}
