#include "odb_ElementAccess.h"
#include "odb_HistoryPoint.h"

#include <memory>

#include "odb_EntityData.h"
#include "odb_Exception.h"
#include "odb_HistoryData.h"
#include "odb_Message.h"
#include "odb_SetData.h"
#include "odb_Util.h"

const uti_LabelRow<odb_HistoryPointEnm> uti_LabelTable<odb_HistoryPointEnm, 1>::rows[] = {
    {"Unknown History Output position.", "odb_HistoryPoint_MSGID_00",
     odb_HistoryPoint_UNKNOWN_POSITION},
    {nullptr, nullptr, {}}};

namespace {

const char kSource[] = "odb/impl/odb_HistoryPoint";

// The region name that stands for the whole model.
const char kWholeModel[] = "Whole Model";

odb_String Text(int number) {
  return odb_String(number);
}

}  // namespace

odb_HistoryPoint::odb_HistoryPoint(const odb_Node& node, const odb_Instance& instance)
    : m_hasNode(true), m_node(node) {
  odb_HistoryPointAccess::SetInstance(*this, instance);
}

odb_HistoryPoint::odb_HistoryPoint(const odb_Element& element, int integrationPoint,
                                   const odb_Instance& instance)
    : m_hasElement(true), m_element(element), m_integrationPoint(integrationPoint) {
  odb_HistoryPointAccess::SetInstance(*this, instance);
}

odb_HistoryPoint::odb_HistoryPoint(const odb_Element& element, int integrationPoint,
                                   const odb_SectionPoint& sectionPoint,
                                   const odb_Instance& instance)
    : m_hasElement(true),
      m_element(element),
      m_integrationPoint(integrationPoint),
      m_sectionPoint(sectionPoint) {
  odb_HistoryPointAccess::SetInstance(*this, instance);
}

odb_HistoryPoint::odb_HistoryPoint(const odb_Element& element, const odb_Node& node,
                                   const odb_Instance& instance)
    : m_hasNode(true), m_hasElement(true), m_node(node), m_element(element) {
  odb_HistoryPointAccess::SetInstance(*this, instance);
}

odb_HistoryPoint::odb_HistoryPoint(const odb_Element& element, odb_Enum::odb_ElementFaceEnum face,
                                   const odb_Instance& instance)
    : m_hasElement(true), m_element(element), m_face(face) {
  odb_HistoryPointAccess::SetInstance(*this, instance);
}

odb_HistoryPoint::odb_HistoryPoint(const odb_Set& set) : m_hasSet(true), m_set(set) {}

odb_HistoryPoint::odb_HistoryPoint(const odb_Instance& instance)
    : m_hasInstance(true), m_instance(instance) {}

odb_HistoryPoint::odb_HistoryPoint(const odb_Assembly& assembly)
    : m_hasAssembly(true), m_assembly(assembly) {}

odb_HistoryPoint::odb_HistoryPoint(const odb_String& regionName) : m_regionName(regionName) {
  m_hasAssembly = regionName == kWholeModel;
}

odb_Enum::odb_ResultPositionEnum odb_HistoryPoint::position() const {
  if (m_hasElement) {
    if (m_hasNode) return odb_Enum::ELEMENT_NODAL;
    if (m_integrationPoint > 0) return odb_Enum::INTEGRATION_POINT;
    if (m_face != odb_Enum::FACE_UNKNOWN) return odb_Enum::ELEMENT_FACE;
    return odb_Enum::WHOLE_ELEMENT;
  }
  if (m_hasNode) return odb_Enum::NODAL;
  if (m_hasSet) return odb_Enum::WHOLE_REGION;
  if (m_hasInstance) return odb_Enum::WHOLE_PART_INSTANCE;
  if (m_hasAssembly) return odb_Enum::WHOLE_MODEL;
  return odb_Enum::UNDEFINED_POSITION;
}

odb_String odb_HistoryPoint::positionDescription() const {
  switch (position()) {
    case odb_Enum::NODAL:
      return "node";
    case odb_Enum::ELEMENT_NODAL:
      return "element node";
    case odb_Enum::INTEGRATION_POINT:
      return "integration point";
    case odb_Enum::ELEMENT_FACE:
      return "element face";
    case odb_Enum::WHOLE_ELEMENT:
      return "whole element";
    case odb_Enum::WHOLE_REGION:
      return "region";
    case odb_Enum::WHOLE_PART_INSTANCE:
      return "instance";
    case odb_Enum::WHOLE_MODEL:
      return "assembly";
    default:
      return "Undefinable position for historyPoint.";
  }
}

odb_String odb_HistoryPoint::instanceName() const {
  return m_hasInstance ? m_instance.name() : odb_String();
}

odb_String odb_HistoryPoint::name() const {
  const odb_String instance = instanceName();
  odb_String text;
  switch (position()) {
    case odb_Enum::NODAL:
      text = "Node " + instance + "." + Text(m_node.label());
      break;
    case odb_Enum::ELEMENT_NODAL:
      text = "Element " + instance + "." + Text(m_element.label()) + " Node " + instance + "." +
             Text(m_node.label());
      break;
    case odb_Enum::INTEGRATION_POINT:
      text = "Element " + instance + "." + Text(m_element.label()) + " Int Point " +
             Text(m_integrationPoint);
      break;
    case odb_Enum::ELEMENT_FACE:
      text = "Element " + instance + "." + Text(m_element.label()) + " Face " +
             Text(static_cast<int>(m_face));
      break;
    case odb_Enum::WHOLE_ELEMENT:
      text = "Element " + instance + "." + Text(m_element.label());
      break;
    case odb_Enum::WHOLE_REGION:
      switch (m_set.type()) {
        case odb_Set::NODE_SET:
          text = "NodeSet " + m_set.name();
          break;
        case odb_Set::ELEMENT_SET:
          text = "ElementSet " + m_set.name();
          break;
        case odb_Set::SURFACE_SET:
          text = "Surface " + m_set.name();
          break;
        default:
          text = "Region " + m_set.name();
      }
      break;
    case odb_Enum::WHOLE_PART_INSTANCE:
      text = "Instance " + instance;
      break;
    case odb_Enum::WHOLE_MODEL:
      text = "Assembly " + m_assembly.name();
      break;
    default:
      return "Unknown region";
  }
  if (m_sectionPoint.number() != -1) text += " Section Point " + Text(m_sectionPoint.number());
  return text;
}

odb_String odb_HistoryPoint::description() const {
  const odb_Enum::odb_ResultPositionEnum kind = position();
  odb_String text("Output at");
  if (kind == odb_Enum::UNDEFINED_POSITION) return text + " unknown location.";
  text += " Assembly " + m_assembly.name();
  if (m_hasInstance) text += " Instance " + m_instance.name();
  if (m_hasElement) {
    text += " element " + Text(m_element.label());
    if (m_integrationPoint > 0) text += " integration point " + Text(m_integrationPoint);
    if (m_sectionPoint.number() != -1) text += " section point " + Text(m_sectionPoint.number());
  } else if (m_hasNode) {
    text += " node " + Text(m_node.label());
  } else if (m_hasSet) {
    text += " region " + m_set.name();
  }
  return text;
}

void odb_HistoryPointAccess::SetInstance(odb_HistoryPoint& point, const odb_Instance& instance) {
  point.m_instance = instance;
  point.m_hasInstance = !instance.name().Empty();
}

bool odb_HistoryPointAccess::LacksInstance(const odb_HistoryPoint& point) {
  return (point.m_hasNode || point.m_hasElement) && !point.m_hasInstance;
}

store_HistoryPointRecord odb_HistoryPointAccess::ToRecord(const odb_HistoryPoint& point) {
  store_HistoryPointRecord r;
  r.position = point.position();
  r.instance = odb_ToText(point.instanceName());
  r.node = point.m_hasNode ? point.m_node.label() : -1;
  r.element = point.m_hasElement ? point.m_element.label() : -1;
  r.integrationPoint = point.m_integrationPoint;
  r.face = point.m_face;
  r.sectionPoint = point.m_sectionPoint.number();
  r.sectionPointDescription = odb_ToText(point.m_sectionPoint.description());
  if (point.m_hasSet) {
    r.set = odb_ToText(point.m_set.name());
    r.setKind = point.m_set.type();
  }
  r.name = odb_ToText(point.m_regionName);
  return r;
}

// A stored point carries the labels and names of what it refers to, not the records: its node
// and element give their labels, its set its name and kind, its instance its name.
odb_HistoryPoint odb_HistoryPointAccess::FromRecord(const store_HistoryPointRecord& r) {
  odb_HistoryPoint point;
  point.m_regionName = odb_FromText(r.name);
  switch (r.position) {
    case odb_Enum::UNDEFINED_POSITION:
      break;
    case odb_Enum::NODAL:
      point.m_hasNode = true;
      break;
    case odb_Enum::ELEMENT_NODAL:
      point.m_hasNode = point.m_hasElement = true;
      break;
    case odb_Enum::INTEGRATION_POINT:
    case odb_Enum::ELEMENT_FACE:
    case odb_Enum::WHOLE_ELEMENT:
      point.m_hasElement = true;
      break;
    case odb_Enum::WHOLE_REGION:
      point.m_hasSet = true;
      break;
    case odb_Enum::WHOLE_PART_INSTANCE:
      break;
    case odb_Enum::WHOLE_MODEL:
      point.m_hasAssembly = true;
      break;
    default:
      odb_ThrowMessage(odb_CatalogueMessage(odb_HistoryPoint_UNKNOWN_POSITION), kSource, 233);
  }
  const float origin[3] = {0, 0, 0};
  if (point.m_hasNode) point.m_node = odb_Node(r.node, -1, -1, origin);
  if (point.m_hasElement) {
    point.m_element = odb_ElementAccess::FromLabels(r.element, -1, nullptr, 0, "", odb_SectionCategory(),
                                              odb_Enum::GEOMETRY_UNKNOWN, -1, 0, nullptr);
    point.m_integrationPoint = r.integrationPoint;
    point.m_face = static_cast<odb_Enum::odb_ElementFaceEnum>(r.face);
  }
  if (r.sectionPoint != -1)
    point.m_sectionPoint =
        odb_SectionPoint(r.sectionPoint, odb_FromText(r.sectionPointDescription));
  if (point.m_hasSet) {
    auto set = std::make_shared<odb_SetData>();
    set->name = odb_FromText(r.set);
    set->type = static_cast<odb_Set::Type>(r.setKind);
    point.m_set = odb_SetAccess::Make(set);
  }
  if (!r.instance.empty()) SetInstance(point, NamedInstance(odb_FromText(r.instance)));
  return point;
}

odb_Instance odb_HistoryPointAccess::NamedInstance(const odb_String& name) {
  auto entity = std::make_shared<odb_EntityData>();
  entity->name = name;
  entity->ownerKind = store_kInstanceOwner;
  return odb_InstanceAccess::Make(entity);
}
