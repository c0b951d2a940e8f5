#include "odb_Frame.h"

#include <algorithm>
#include <string>
#include <utility>

#include "odb_Damage.h"
#include "odb_FieldData.h"
#include "odb_FrameData.h"
#include "odb_FrameFields.h"
#include "odb_Message.h"
#include "odb_StoreWrite.h"
#include "odb_Util.h"
#include "store_Field.h"
#include "store_Tensor.h"

const uti_LabelRow<odb_FrameEnm> uti_LabelTable<odb_FrameEnm, 1>::rows[] = {
    {"A field named '%s' already exists.", "odb_Frame_MSGID_00", odb_Frame_FIELD_EXISTS},
    {nullptr, nullptr, {}}};

namespace {

// Frequency-like domains number their frames by mode.
bool IsModal(odb_Enum::odb_DomainEnum domain) {
  return domain == odb_Enum::FREQUENCY || domain == odb_Enum::MODAL;
}

}  // namespace

odb_Frame::odb_Frame(std::shared_ptr<const odb_FrameData> data) : m_data(std::move(data)) {}

const odb_FrameData& odb_Frame::Data() const {
  static const odb_FrameData empty;
  return m_data ? *m_data : empty;
}

int odb_Frame::frameIndex() const {
  return Data().index;
}

int odb_Frame::frameId() const {
  return Data().incrementNumber;
}

int odb_Frame::incrementNumber() const {
  return Data().incrementNumber;
}

double odb_Frame::frameValue() const {
  return static_cast<double>(Data().frameValue);
}

int odb_Frame::mode() const {
  return IsModal(Data().domain) ? Data().incrementNumber : -1;
}

double odb_Frame::frequency() const {
  return IsModal(Data().domain) ? frameValue() : 0.0;
}

odb_String odb_Frame::description() const {
  return Data().description;
}

odb_Enum::odb_DomainEnum odb_Frame::domain() const {
  return Data().domain;
}

const odb_LoadCase& odb_Frame::loadCase() const {
  return Data().loadCase;
}

namespace {

const char* const kSource = "odb/impl/odb_Frame";

// A field's definition, as the frame's fields keep it.
std::shared_ptr<odb_FieldData> FieldOf(const odb_FrameFields& frame, const store_FieldRecord& r) {
  auto data = std::make_shared<odb_FieldData>();
  data->name = odb_FromText(r.name);
  data->description = odb_FromText(r.description);
  // A code of no data type (a file from elsewhere) becomes one the enumeration can hold: the
  // field is then "Unknown Type" and its values are refused as such when read.
  const int lastQuaternion = odb_Enum::QUATERNION_2D;
  data->type = static_cast<odb_Enum::odb_DataTypeEnum>(
      r.type >= 0 && r.type <= lastQuaternion ? r.type : lastQuaternion + 1);
  for (const std::string& label : r.componentLabels)
    data->componentLabels.append(odb_FromText(label));
  for (int invariant : r.invariants)
    data->validInvariants.append(static_cast<odb_Enum::odb_InvariantEnum>(invariant));
  data->orphan = false;
  data->store = frame.store;
  data->id = r.id;
  data->stepId = frame.stepId;
  data->frameIndex = frame.frameIndex;
  data->subject = "field " + odb_Quoted(data->name) + " in " + frame.subject;
  data->index = r.index;
  data->assembly = frame.assembly;
  return data;
}

// The labels a field gets when it is given none: the field's name followed by each component's
// number (U1, U2, U3) or tensor suffix (S11, S22, ...).
odb_SequenceString DefaultLabels(const odb_String& name, odb_Enum::odb_DataTypeEnum type) {
  odb_SequenceString labels;
  const int count = store_TensorComponentCount(type);
  const char* const* suffixes = store_TensorComponentSuffixes(type);
  for (int i = 0; i < count; ++i) {
    odb_String label = name;
    label += suffixes[i];
    labels.append(label);
  }
  return labels;
}

// The invariants a field offers when it is given none.
odb_SequenceInvariant DefaultInvariants(odb_Enum::odb_DataTypeEnum type) {
  odb_SequenceInvariant invariants;
  for (int i = odb_Enum::MAGNITUDE; i <= odb_Enum::OUTOFPLANE_PRINCIPAL; ++i) {
    const auto invariant = static_cast<odb_Enum::odb_InvariantEnum>(i);
    if (store_InvariantValid(invariant, type)) invariants.append(invariant);
  }
  return invariants;
}

odb_FrameFields& FieldsOfFrame(const std::shared_ptr<const odb_FrameData>& data) {
  if (!data || !data->fields) odb_ThrowMessage("The frame belongs to no step.", kSource, 150);
  data->fields->Read();
  return *data->fields;
}

}  // namespace

void odb_FrameFields::Read() {
  if (read) return;
  if (!store) {
    read = true;
    return;
  }
  // Nothing is kept from a read that fails: the next read fails the same way.
  const std::string what = "the fields of " + subject;
  const std::vector<store_FieldRecord> stored =
      odb_Reading(what, [&] { return store_Fields(*store, stepId, frameIndex); });
  // A data type this release does not know is refused when the values are read (FieldOf).
  for (const store_FieldRecord& r : stored) {
    for (int invariant : r.invariants)
      odb_CheckedCode(*store, invariant, odb_Enum::MAGNITUDE, odb_Enum::OUTOFPLANE_PRINCIPAL, what,
                      "field_output", "invariants");
  }
  for (const store_FieldRecord& r : stored) {
    fields.insert(odb_FromText(r.name), odb_FieldOutputAccess::Make(FieldOf(*this, r)));
    count = std::max(count, r.index + 1);
  }
  read = true;
}

odb_FieldOutput& odb_FrameFields::Add(const odb_String& name, const odb_String& description,
                                      odb_Enum::odb_DataTypeEnum type,
                                      const odb_SequenceString& componentLabels,
                                      const odb_SequenceInvariant& validInvariants) {
  Read();
  if (fields.isMember(name))
    odb_ThrowMessage(odb_CatalogueMessage(odb_Frame_FIELD_EXISTS, {name}), kSource, 176);
  store_Database& db = odb_WritableStore(store, "The frame belongs to no database.", kSource, 177);
  store_FieldRecord r;
  r.index = count;
  r.name = odb_ToText(name);
  r.description = odb_ToText(description);
  r.type = type;
  const odb_SequenceString labels =
      componentLabels.isEmpty() ? DefaultLabels(name, type) : componentLabels;
  for (int i = 0; i < labels.size(); ++i) r.componentLabels.push_back(odb_ToText(labels[i]));
  const odb_SequenceInvariant invariants =
      validInvariants.isEmpty() ? DefaultInvariants(type) : validInvariants;
  for (int i = 0; i < invariants.size(); ++i) r.invariants.push_back(invariants[i]);
  store_AddField(db, stepId, frameIndex, r);
  ++count;
  fields.insert(name, odb_FieldOutputAccess::Make(FieldOf(*this, r)));
  return fields.get(name);
}

odb_FieldOutputRepository& odb_Frame::fieldOutputs() const {
  return FieldsOfFrame(m_data).fields;
}

odb_FieldOutput& odb_Frame::FieldOutput(const odb_String& name, const odb_String& description,
                                        odb_Enum::odb_DataTypeEnum type,
                                        const odb_SequenceString& componentLabels,
                                        const odb_SequenceInvariant& validInvariants) {
  return FieldsOfFrame(m_data).Add(name, description, type, componentLabels, validInvariants);
}

odb_FieldOutput& odb_Frame::FieldOutput(const odb_FieldOutput& source, const odb_String& name,
                                        const odb_String& description) {
  odb_FieldOutput& field = FieldsOfFrame(m_data).Add(
      name, description, source.type(), source.componentLabels(), source.validInvariants());
  field.addData(source);
  return field;
}

odb_FieldOutput& odb_Frame::VectorOutput(const odb_String& name, const odb_String& description,
                                         int dimension) {
  odb_SequenceString labels;
  for (int i = 1; i <= dimension; ++i) {
    odb_String label = name;
    label += std::to_string(i).c_str();
    labels.append(label);
  }
  return FieldOutput(name, description, odb_Enum::VECTOR, labels, odb_SequenceInvariant());
}

odb_FieldOutput& odb_Frame::MatrixOutput(const odb_String& name, const odb_String& description,
                                         int rows, int columns) {
  odb_SequenceString labels;
  for (int i = 1; i <= rows; ++i)
    for (int j = 1; j <= columns; ++j) {
      odb_String label = name;
      label += (std::to_string(i) + std::to_string(j)).c_str();
      labels.append(label);
    }
  return FieldOutput(name, description, odb_Enum::MATRIX, labels, odb_SequenceInvariant());
}
