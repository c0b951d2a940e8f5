// odb_Envelope: the extreme value at each location over a sequence of fields (the stress of every
// frame of a step), and the field it came from.
//
// Each function returns two SCALAR orphan fields of the first field's locations: "Envelope",
// holding the greatest (maxEnvelope) or least (minEnvelope) criterion value, and "Field Indices: "
// followed by the first field's description, holding the position of the winning field in
// `fields` (0-based, as a float, exact below 2^24 fields). A tie keeps the earlier field; a NaN
// never wins. The criterion is the value itself (SCALAR fields; others "SCALAR data expected"),
// an invariant ("Invalid invariant" when the fields do not offer it) or a component by its label
// ("Invalid componentLabel"). Where a criterion does not apply to some elements an alternate is
// used and a warning says so: the in-plane and out-of-plane principals on solid elements are
// replaced by the maximum, minimum and middle principals, and the component 33 on shells,
// membranes and plane-stress elements (which do not compute it) by the component 22.
// From two fields on, every field must have the first's data type ("Data types %1$s and %2$s are
// incompatible.") and sub-fields ("Fields are associated with differently sized output
// requests. ..." for another count, "Incompatible fields" for another element type, position,
// section point or size). Fields are read one sub-field at a time and not kept: beside the two
// results, memory holds one sub-field's data and one criterion array. An empty sequence gives two
// empty fields.
#ifndef ODB_ENVELOPE_H
#define ODB_ENVELOPE_H

#include "odb_Export.h"
#include "odb_FieldOutput.h"
#include "odb_Sequence.h"
#include "uti_LabelMap.h"

// The envelopes' own messages (keys odb_Envelope_MSGID_00.._02).
enum odb_EnvelopeEnm : int {
  odb_Envelope_INVALID_COMPONENT, odb_Envelope_ALTERNATE_COMPONENT, odb_Envelope_ALTERNATE_INVARIANT
};
template <>
struct QTVODB_EXPORT uti_LabelTable<odb_EnvelopeEnm, 1> {
  static const uti_LabelRow<odb_EnvelopeEnm> rows[];
};

using odb_SequenceFieldOutput = odb_Sequence<odb_FieldOutput>;

QTVODB_EXPORT odb_SequenceFieldOutput maxEnvelope(const odb_SequenceFieldOutput& fields);
QTVODB_EXPORT odb_SequenceFieldOutput minEnvelope(const odb_SequenceFieldOutput& fields);
QTVODB_EXPORT odb_SequenceFieldOutput maxEnvelope(const odb_SequenceFieldOutput& fields,
                                                  odb_Enum::odb_InvariantEnum invariant);
QTVODB_EXPORT odb_SequenceFieldOutput minEnvelope(const odb_SequenceFieldOutput& fields,
                                                  odb_Enum::odb_InvariantEnum invariant);
QTVODB_EXPORT odb_SequenceFieldOutput maxEnvelope(const odb_SequenceFieldOutput& fields,
                                                  const odb_String& componentLabel);
QTVODB_EXPORT odb_SequenceFieldOutput minEnvelope(const odb_SequenceFieldOutput& fields,
                                                  const odb_String& componentLabel);

#endif
