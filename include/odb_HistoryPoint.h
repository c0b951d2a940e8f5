// odb_HistoryPoint: the place of the model that a history region records: a node, an element
// (whole, at an integration point, at a face, or at one of its nodes), a set, an instance or the
// whole assembly.
//
// A value: it holds copies of the records and handles that it was made from (a node and an
// element are records; a set, an instance and the assembly are handles that share their data),
// so copying a point costs a few reference counts. Its kind, position(), follows from what it
// holds; name() and description() build the texts that a region made from the point carries.
//
// Node and element records do not say which instance they belong to: give the instance to the
// constructor, or let odb_Step::HistoryRegion find the one instance that places the record's
// part. Without an instance the texts show an empty instance name. One thread at a time.
#ifndef ODB_HISTORYPOINT_H
#define ODB_HISTORYPOINT_H

#include "odb_Assembly.h"
#include "odb_Element.h"
#include "odb_Enum.h"
#include "odb_Export.h"
#include "odb_Instance.h"
#include "odb_Node.h"
#include "odb_SectionPoint.h"
#include "odb_Set.h"
#include "odb_String.h"
#include "uti_LabelMap.h"

// The messages of history points.
enum odb_HistoryPointEnm : int {
  odb_HistoryPoint_UNKNOWN_POSITION = 0  // a stored point of a kind this release does not know
};

template <>
struct QTVODB_EXPORT uti_LabelTable<odb_HistoryPointEnm, 1> {
  static const uti_LabelRow<odb_HistoryPointEnm> rows[];
};

struct odb_HistoryPointAccess;

class QTVODB_EXPORT odb_HistoryPoint {
 public:
  // A point of no kind: position() 0.
  odb_HistoryPoint() = default;
  // A node: NODAL.
  explicit odb_HistoryPoint(const odb_Node& node, const odb_Instance& instance = odb_Instance());
  // An element at an integration point (INTEGRATION_POINT, numbered from 1); 0 or less gives
  // the whole element (WHOLE_ELEMENT).
  odb_HistoryPoint(const odb_Element& element, int integrationPoint,
                   const odb_Instance& instance = odb_Instance());
  // As above, at a section point of the element's section.
  odb_HistoryPoint(const odb_Element& element, int integrationPoint,
                   const odb_SectionPoint& sectionPoint,
                   const odb_Instance& instance = odb_Instance());
  // One node of an element: ELEMENT_NODAL.
  odb_HistoryPoint(const odb_Element& element, const odb_Node& node,
                   const odb_Instance& instance = odb_Instance());
  // A face of an element: ELEMENT_FACE.
  odb_HistoryPoint(const odb_Element& element, odb_Enum::odb_ElementFaceEnum face,
                   const odb_Instance& instance = odb_Instance());
  // A node set, element set or surface: WHOLE_REGION.
  explicit odb_HistoryPoint(const odb_Set& set);
  // An instance: WHOLE_PART_INSTANCE.
  explicit odb_HistoryPoint(const odb_Instance& instance);
  // The assembly: WHOLE_MODEL.
  explicit odb_HistoryPoint(const odb_Assembly& assembly);
  // A point known by its region name only: WHOLE_MODEL for "Whole Model", else of no kind.
  explicit odb_HistoryPoint(const odb_String& regionName);

  // The kind, from what the point holds (element and node before element alone, the element
  // kinds before a bare node, then set, instance, assembly); UNDEFINED_POSITION (0) for none.
  odb_Enum::odb_ResultPositionEnum position() const;
  // The kind in words ("node", "integration point" ...); "Undefinable position for
  // historyPoint." for a point of no kind.
  odb_String positionDescription() const;
  // The name a region made from this point gets, for example "Node PART-1-1.5" or "Element
  // PART-1-1.7 Int Point 2 Section Point 3"; "Unknown region" for a point of no kind.
  odb_String name() const;
  // The description a region made from this point gets, for example "Output at Assembly
  // Assembly Instance PART-1-1 node 5"; "Output at unknown location." for a point of no kind.
  odb_String description() const;

  // What the point holds; defaults (label -1, empty handles) for what it does not.
  const odb_Node& node() const { return m_node; }
  const odb_Element& element() const { return m_element; }
  // The integration point, from 1; 0 when none.
  int integrationPoint() const { return m_integrationPoint; }
  // FACE_UNKNOWN when none.
  odb_Enum::odb_ElementFaceEnum face() const { return m_face; }
  // Number -1 when none.
  const odb_SectionPoint& sectionPoint() const { return m_sectionPoint; }
  const odb_Set& region() const { return m_set; }
  const odb_Instance& instance() const { return m_instance; }
  const odb_Assembly& assembly() const { return m_assembly; }
  // The name given to the name constructor; empty otherwise.
  const odb_String& regionName() const { return m_regionName; }
  // The name of the instance the point lies in; empty when it has none.
  odb_String instanceName() const;

 private:
  friend struct odb_HistoryPointAccess;

  bool m_hasNode = false;
  bool m_hasElement = false;
  bool m_hasSet = false;
  bool m_hasInstance = false;
  bool m_hasAssembly = false;
  odb_Node m_node;
  odb_Element m_element;
  int m_integrationPoint = 0;
  odb_Enum::odb_ElementFaceEnum m_face = odb_Enum::FACE_UNKNOWN;
  odb_SectionPoint m_sectionPoint;
  odb_Set m_set;
  odb_Instance m_instance;
  odb_Assembly m_assembly;
  odb_String m_regionName;
};

#endif
