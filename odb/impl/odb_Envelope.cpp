// odb_Envelope: envelopes streamed sub-field by sub-field. For each sub-field of the first field,
// every field's matching sub-field is read in turn into one scratch array, reduced to its
// criterion, and folded into the running envelope and indices (store_EnvelopeUpdate); nothing of
// an input is kept, so an envelope over many stored frames holds about one frame at a time.
#include "odb_Envelope.h"

#include <string>
#include <utility>
#include <vector>

#include "odb_EnumMap.h"
#include "odb_FieldData.h"
#include "odb_MathUtil.h"
#include "odb_Message.h"
#include "store_ElementLibrary.h"
#include "store_FieldMath.h"
#include "store_Tensor.h"
#include "thr_ThreadSingleton.h"
#include "wip_WIP.h"

const uti_LabelRow<odb_EnvelopeEnm> uti_LabelTable<odb_EnvelopeEnm, 1>::rows[] = {
    {"Invalid componentLabel", "odb_Envelope_MSGID_00", odb_Envelope_INVALID_COMPONENT},
    {"The specified tensor component is not applicable to some elements.  An alternate "
     "component has been used as the criterion for min/max envelope computation.",
     "odb_Envelope_MSGID_01", odb_Envelope_ALTERNATE_COMPONENT},
    {"The specified tensor invariant is not applicable to some elements.  An alternate invariant "
     "has been used as the criterion for min/max envelope computation.",
     "odb_Envelope_MSGID_02", odb_Envelope_ALTERNATE_INVARIANT},
    {nullptr, nullptr, {}}};

namespace {

const char* const kSource = "odb/impl/odb_Envelope";

template <class Enm>
[[noreturn]] void Fail(Enm code, std::initializer_list<odb_String> args, int site) {
  odb_ThrowMessage(odb_CatalogueMessage(code, args), kSource, site);
}

// What decides the winner at a location.
struct odb_Criterion {
  enum Kind { VALUE, INVARIANT, COMPONENT } kind = VALUE;
  odb_Enum::odb_InvariantEnum invariant = odb_Enum::MISES;
  odb_String componentLabel;
};

odb_Enum::odb_ElementGeometryClass GeometryOf(const odb_SubFieldData& sub) {
  const store_ElementClass* cls = store_FindElementClass(sub.elementType.CStr());
  return cls ? cls->geometry : odb_Enum::GEOMETRY_UNKNOWN;
}

// The invariant used for the values of `sub`: the in-plane and out-of-plane principals mean
// nothing on a solid element, which has no plane of its own; its full principals stand in.
odb_Enum::odb_InvariantEnum InvariantFor(const odb_SubFieldData& sub,
                                         odb_Enum::odb_InvariantEnum invariant, bool& alternate) {
  if (sub.position == odb_Enum::NODAL || GeometryOf(sub) != odb_Enum::GEOMETRY_SOLID)
    return invariant;
  switch (invariant) {
    case odb_Enum::MAX_INPLANE_PRINCIPAL:
      alternate = true;
      return odb_Enum::MAX_PRINCIPAL;
    case odb_Enum::MIN_INPLANE_PRINCIPAL:
      alternate = true;
      return odb_Enum::MIN_PRINCIPAL;
    case odb_Enum::OUTOFPLANE_PRINCIPAL:
      alternate = true;
      return odb_Enum::MID_PRINCIPAL;
    default:
      return invariant;
  }
}

// The component used for the values of `sub`: shells, membranes and plane-stress elements do not
// compute the through-thickness direct component 33, for which their 22 stands in.
int ComponentFor(const odb_SubFieldData& sub, const odb_FieldData& field, int component,
                 bool& alternate) {
  const std::string label = field.componentLabels[component].CStr();
  const odb_Enum::odb_ElementGeometryClass geometry = GeometryOf(sub);
  const bool planeStress = geometry == odb_Enum::GEOMETRY_SHELL ||
                           geometry == odb_Enum::GEOMETRY_MEMBRANE ||
                           geometry == odb_Enum::GEOMETRY_PLANE_STRESS;
  if (!planeStress || store_TensorComponentCount(field.type) == 0 || label.size() < 2 ||
      label.compare(label.size() - 2, 2, "33") != 0)
    return component;
  const std::string other = label.substr(0, label.size() - 2) + "22";
  const int at = field.componentLabels.findFirst(odb_String(other.c_str()));
  if (at >= field.componentLabels.size()) return component;
  alternate = true;
  return at;
}

// Refuses fields that cannot be enveloped with the first (from two fields on).
void CheckFields(const std::vector<std::shared_ptr<odb_FieldData>>& fields) {
  if (fields.size() < 2) return;
  const odb_FieldData& first = *fields[0];
  for (std::size_t f = 1; f < fields.size(); ++f) {
    const odb_FieldData& field = *fields[f];
    if (field.type != first.type)
      Fail(odb_MessageText_INCOMPATIBLE_TYPES,
           {odb_DataTypeLabel(first.type), odb_DataTypeLabel(field.type)}, __LINE__);
    if (field.subFields.size() != first.subFields.size())
      Fail(odb_MessageText_SIZED_REQUESTS, {}, __LINE__);
    for (std::size_t k = 0; k < first.subFields.size(); ++k) {
      const odb_SubFieldData &a = *first.subFields[k], &b = *field.subFields[k];
      if (a.position != b.position || a.instanceName != b.instanceName ||
          a.elementType != b.elementType || a.sectionPoint.number() != b.sectionPoint.number() ||
          a.width != b.width || a.Locations() != b.Locations())
        Fail(odb_MessageText_INCOMPATIBLE_FIELDS, {}, __LINE__);
    }
  }
}

// A SCALAR orphan of `first`'s locations, named `name`, without sub-fields yet.
std::shared_ptr<odb_FieldData> ScalarResult(const odb_FieldData& first, const odb_String& name,
                                            const odb_String& description) {
  std::shared_ptr<odb_FieldData> out = first.EmptyCopy();
  out->name = name;
  out->description = description;
  out->type = odb_Enum::SCALAR;
  out->componentLabels = odb_SequenceString();
  out->validInvariants = odb_SequenceInvariant();
  return out;
}

std::shared_ptr<odb_SubFieldData> ScalarSubField(odb_SubFieldData& sub) {
  std::shared_ptr<odb_SubFieldData> out = sub.SameLocations(1, false);
  out->type = odb_Enum::SCALAR;
  out->complex = false;
  return out;
}

odb_SequenceFieldOutput Envelope(const odb_SequenceFieldOutput& fields,
                                 const odb_Criterion& criterion, bool max) {
  std::vector<std::shared_ptr<odb_FieldData>> inputs;
  for (int f = 0; f < fields.size(); ++f) {
    inputs.push_back(odb_FieldOutputAccess::Data(fields[f]));
    inputs.back()->ReadBlocks();
  }
  if (inputs.empty()) inputs.push_back(odb_FieldOutputAccess::Data(odb_FieldOutput()));
  CheckFields(inputs);
  const odb_FieldData& first = *inputs[0];
  int component = 0;
  switch (criterion.kind) {
    case odb_Criterion::VALUE:
      if (first.type != odb_Enum::SCALAR) Fail(odb_MessageText_SCALAR_EXPECTED, {}, __LINE__);
      break;
    case odb_Criterion::INVARIANT:
      if (!first.validInvariants.isMember(criterion.invariant))
        Fail(odb_FieldOutput_BAD_INVARIANT, {}, __LINE__);
      break;
    case odb_Criterion::COMPONENT:
      component = first.componentLabels.findFirst(criterion.componentLabel);
      if (component >= first.componentLabels.size() || component >= first.Width())
        Fail(odb_Envelope_INVALID_COMPONENT, {}, __LINE__);
      break;
  }
  odb_String indicesName("Field Indices: ");
  indicesName += first.description;
  std::shared_ptr<odb_FieldData> envelope = ScalarResult(first, "Envelope", first.description);
  std::shared_ptr<odb_FieldData> indices = ScalarResult(first, indicesName, indicesName);
  bool alternateInvariant = false, alternateComponent = false;
  odb_Run<float> scratch, values;
  for (std::size_t k = 0; k < first.subFields.size(); ++k) {
    odb_SubFieldData& model = *first.subFields[k];
    std::shared_ptr<odb_SubFieldData> best = ScalarSubField(model);
    std::shared_ptr<odb_SubFieldData> from = ScalarSubField(model);
    const std::size_t n = model.Locations();
    values.Resize(n);
    const odb_Enum::odb_InvariantEnum invariant =
        criterion.kind == odb_Criterion::INVARIANT
            ? InvariantFor(model, criterion.invariant, alternateInvariant)
            : criterion.invariant;
    const int used = criterion.kind == odb_Criterion::COMPONENT
                         ? ComponentFor(model, first, component, alternateComponent)
                         : component;
    for (std::size_t f = 0; f < inputs.size(); ++f) {
      odb_SubFieldData& sub = *inputs[f]->subFields[k];
      const float* data = sub.Floats(odb_SubFieldData::Part::DATA, scratch);
      const float* value = values.data();
      if (criterion.kind == odb_Criterion::VALUE) {
        value = data;
      } else if (criterion.kind == odb_Criterion::COMPONENT) {
        store_MathComponent(data, sub.width, used, values.data(), n);
      } else if (invariant == odb_Enum::MISES) {
        store_MisesBlock(sub.type, data, static_cast<long>(n), values.data());
      } else {
        for (std::size_t i = 0; i < n; ++i)
          values[i] = store_Invariant(invariant, sub.type, data + i * sub.width, sub.width);
      }
      if (f == 0) {
        best->data.Assign(value, n);
        for (std::size_t i = 0; i < n; ++i) from->data[i] = 0.0f;
      } else {
        store_EnvelopeUpdate(value, n, max, static_cast<float>(f), best->data.data(),
                             from->data.data());
      }
    }
    envelope->subFields.push_back(std::move(best));
    indices->subFields.push_back(std::move(from));
  }
  wip_WIP& wip = thr_ThreadSingleton<wip_WIP>::Instance();
  if (alternateComponent) wip.Warning(odb_CatalogueMessage(odb_Envelope_ALTERNATE_COMPONENT));
  if (alternateInvariant) wip.Warning(odb_CatalogueMessage(odb_Envelope_ALTERNATE_INVARIANT));
  odb_SequenceFieldOutput out;
  out.append(odb_FieldOutputAccess::Make(envelope));
  out.append(odb_FieldOutputAccess::Make(indices));
  return out;
}

odb_Criterion ByInvariant(odb_Enum::odb_InvariantEnum invariant) {
  odb_Criterion c;
  c.kind = odb_Criterion::INVARIANT;
  c.invariant = invariant;
  return c;
}

odb_Criterion ByComponent(const odb_String& label) {
  odb_Criterion c;
  c.kind = odb_Criterion::COMPONENT;
  c.componentLabel = label;
  return c;
}

}  // namespace

odb_SequenceFieldOutput maxEnvelope(const odb_SequenceFieldOutput& fields) {
  return Envelope(fields, odb_Criterion(), true);
}
odb_SequenceFieldOutput minEnvelope(const odb_SequenceFieldOutput& fields) {
  return Envelope(fields, odb_Criterion(), false);
}
odb_SequenceFieldOutput maxEnvelope(const odb_SequenceFieldOutput& fields,
                                    odb_Enum::odb_InvariantEnum invariant) {
  return Envelope(fields, ByInvariant(invariant), true);
}
odb_SequenceFieldOutput minEnvelope(const odb_SequenceFieldOutput& fields,
                                    odb_Enum::odb_InvariantEnum invariant) {
  return Envelope(fields, ByInvariant(invariant), false);
}
odb_SequenceFieldOutput maxEnvelope(const odb_SequenceFieldOutput& fields,
                                    const odb_String& componentLabel) {
  return Envelope(fields, ByComponent(componentLabel), true);
}
odb_SequenceFieldOutput minEnvelope(const odb_SequenceFieldOutput& fields,
                                    const odb_String& componentLabel) {
  return Envelope(fields, ByComponent(componentLabel), false);
}
