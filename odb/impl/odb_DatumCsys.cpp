#include "odb_DatumCsys.h"

#include <algorithm>
#include <utility>

#include "odb_DatumCsysData.h"

const uti_LabelRow<odb_DatumCsysEnm> uti_LabelTable<odb_DatumCsysEnm, 1>::rows[] = {
    {"Invalid datum coordinate system name.", "odb_DatumCsys_MSGID_00", odb_DatumCsys_INVALID_NAME},
    {"A datum coordinate system named \"%s\" already exists.", "odb_DatumCsys_MSGID_01",
     odb_DatumCsys_ALREADY_EXISTS},
    {"No datum coordinate system named \"%s\" in the assembly.", "odb_DatumCsys_MSGID_02",
     odb_DatumCsys_NOT_FOUND},
    {"Invalid type %1$s for datum coordinate system \"%2$s\": it must be RECTANGULAR, "
     "CYLINDRICAL or SPHERICAL.",
     "odb_DatumCsys_MSGID_03", odb_DatumCsys_BAD_TYPE},
    {"Each point and direction of datum coordinate system \"%s\" must have 3 components.",
     "odb_DatumCsys_MSGID_04", odb_DatumCsys_BAD_LENGTH},
    {"No instance named \"%1$s\" for datum coordinate system \"%2$s\".", "odb_DatumCsys_MSGID_05",
     odb_DatumCsys_UNKNOWN_INSTANCE},
    {"Instance \"%2$s\" has no node %1$s for datum coordinate system \"%3$s\".",
     "odb_DatumCsys_MSGID_06", odb_DatumCsys_UNKNOWN_NODE},
    {"The points of datum coordinate system \"%s\" are coincident or colinear.",
     "odb_DatumCsys_MSGID_07", odb_DatumCsys_COLINEAR},
    {"The directions of datum coordinate system \"%s\" are zero or parallel.",
     "odb_DatumCsys_MSGID_08", odb_DatumCsys_PARALLEL_AXES},
    {"The %1$s field has no value at node %2$s of instance \"%3$s\".", "odb_DatumCsys_MSGID_09",
     odb_DatumCsys_NO_MOTION},
    {"The rotation field must be a NODAL VECTOR field of 3 components requested for the whole "
     "analysis model.",
     "odb_DatumCsys_MSGID_10", odb_DatumCsys_ROTATION_KIND},
    {"Vectors of %s components cannot be transformed: 2 or 3 are needed.", "odb_DatumCsys_MSGID_11",
     odb_DatumCsys_VECTOR_WIDTH},
    {nullptr, nullptr, {}}};

namespace {

odb_SequenceFloat Row(const double* values) {
  odb_SequenceFloat row;
  for (int k = 0; k < 3; ++k) row.append(static_cast<float>(values[k]));
  return row;
}

}  // namespace

int odb_DatumCsysData::NodeCount() const {
  switch (definition) {
    case odb_DatumCsys::THREE_NODES:
    case odb_DatumCsys::THREE_CIRC_NODES:
      return 3;
    case odb_DatumCsys::SIX_DOF_NODE:
      return 1;
    default:
      return 0;
  }
}

store_DatumCsysRecord odb_DatumCsysData::ToRecord() const {
  store_DatumCsysRecord record;
  record.name = name.CStr();
  record.type = type;
  record.definition = definition;
  record.instance = instanceName.CStr();
  std::copy(nodes, nodes + 3, record.nodes);
  std::copy(origin, origin + 3, record.origin);
  std::copy(axes, axes + 9, record.axes);
  std::copy(points, points + 9, record.points);
  return record;
}

odb_DatumCsysData odb_DatumCsysData::FromRecord(const store_DatumCsysRecord& record) {
  odb_DatumCsysData data;
  data.name = odb_String(record.name.c_str());
  data.type = static_cast<odb_Enum::odb_DatumCsysTypeEnum>(record.type);
  data.definition = static_cast<odb_DatumCsys::Definition>(record.definition);
  data.instanceName = odb_String(record.instance.c_str());
  std::copy(record.nodes, record.nodes + 3, data.nodes);
  std::copy(record.origin, record.origin + 3, data.origin);
  std::copy(record.axes, record.axes + 9, data.axes);
  std::copy(record.points, record.points + 9, data.points);
  return data;
}

odb_DatumCsys::odb_DatumCsys() : m_data(std::make_shared<const odb_DatumCsysData>()) {}

odb_DatumCsys::odb_DatumCsys(std::shared_ptr<const odb_DatumCsysData> data)
    : m_data(std::move(data)) {}

odb_String odb_DatumCsys::name() const {
  return m_data->name;
}

odb_Enum::odb_DatumCsysTypeEnum odb_DatumCsys::type() const {
  return m_data->type;
}

odb_DatumCsys::Definition odb_DatumCsys::definition() const {
  return m_data->definition;
}

odb_SequenceFloat odb_DatumCsys::origin() const {
  return Row(m_data->origin);
}

odb_SequenceFloat odb_DatumCsys::xAxis() const {
  return Row(m_data->axes);
}

odb_SequenceFloat odb_DatumCsys::yAxis() const {
  return Row(m_data->axes + 3);
}

odb_SequenceFloat odb_DatumCsys::zAxis() const {
  return Row(m_data->axes + 6);
}

odb_String odb_DatumCsys::instanceName() const {
  return m_data->instanceName;
}

odb_SequenceInt odb_DatumCsys::nodeLabels() const {
  odb_SequenceInt labels;
  for (int k = 0; k < m_data->NodeCount(); ++k) labels.append(m_data->nodes[k]);
  return labels;
}
