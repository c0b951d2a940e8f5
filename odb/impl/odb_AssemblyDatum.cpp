// odb_Assembly: the datum coordinate systems.
#include <functional>
#include <memory>
#include <utility>

#include "odb_Assembly.h"
#include "odb_AssemblyData.h"
#include "odb_CsysGeometry.h"
#include "odb_Damage.h"
#include "odb_DatumCsysData.h"
#include "odb_EntityData.h"
#include "odb_Message.h"
#include "odb_StoreWrite.h"
#include "store_DatumCsys.h"

namespace {

const char kSource[] = "odb/impl/odb_DatumCsys";
const char kNoDatabase[] = "The assembly belongs to no database.";

[[noreturn]] void Throw(odb_DatumCsysEnm code, int site,
                        std::initializer_list<odb_String> args = {}) {
  odb_ThrowMessage(odb_CatalogueMessage(code, args), kSource, site);
}

// `values` as 3 doubles; false for another length.
bool Point(const odb_SequenceFloat& values, double* out) {
  if (values.size() != 3) return false;
  for (int k = 0; k < 3; ++k) out[k] = values[k];
  return true;
}

// Checks what every creator checks, has `build` fill in the geometry (it throws for bad input),
// stores the system and records it under its name.
odb_DatumCsys& Create(odb_AssemblyData& assembly, const odb_String& name,
                      odb_Enum::odb_DatumCsysTypeEnum type, odb_DatumCsys::Definition definition,
                      const std::function<void(odb_DatumCsysData&)>& build) {
  if (!assembly.store) odb_ThrowMessage(kNoDatabase, kSource, 37);
  assembly.ReadDatumCsyses();
  if (name.Empty()) Throw(odb_DatumCsys_INVALID_NAME, 39);
  if (assembly.datumCsyses.isMember(name)) Throw(odb_DatumCsys_ALREADY_EXISTS, 40, {name});
  if (type != odb_Enum::RECTANGULAR && type != odb_Enum::CYLINDRICAL && type != odb_Enum::SPHERICAL)
    Throw(odb_DatumCsys_BAD_TYPE, 42, {odb_String(static_cast<int>(type)), name});
  auto system = std::make_shared<odb_DatumCsysData>();
  system->name = name;
  system->type = type;
  system->definition = definition;
  build(*system);
  store_AddDatumCsys(odb_WritableStore(assembly.store, kNoDatabase, kSource, 48),
                     system->ToRecord());
  assembly.datumCsyses.insert(name, odb_DatumCsysAccess::Make(std::move(system)));
  return assembly.datumCsyses.get(name);
}

// The placed coordinates of the system's nodes into its points, row after row.
void PlaceNodes(odb_AssemblyData& assembly, odb_DatumCsysData& system,
                const odb_String& instanceName) {
  assembly.ReadInstances();
  if (!assembly.instances.isMember(instanceName))
    Throw(odb_DatumCsys_UNKNOWN_INSTANCE, 59, {instanceName, system.name});
  system.instanceName = instanceName;
  odb_MeshData& mesh = *odb_DiscreteEntityAccess::Data(assembly.instances.get(instanceName))->mesh;
  for (int k = 0; k < system.NodeCount(); ++k) {
    const int at = mesh.mesh->NodePosition(system.nodes[k]);
    if (at < 0)
      Throw(odb_DatumCsys_UNKNOWN_NODE, 65,
            {odb_String(system.nodes[k]), instanceName, system.name});
    mesh.PlacedAt(at, system.points + 3 * k);
  }
}

// The system's axes from two directions.
void Directions(odb_DatumCsysData& system, const odb_SequenceFloat& x, const odb_SequenceFloat& y) {
  double dx[3], dy[3];
  if (!Point(x, dx) || !Point(y, dy)) Throw(odb_DatumCsys_BAD_LENGTH, 74, {system.name});
  if (!odb_AxesFromDirections(dx, dy, system.axes))
    Throw(odb_DatumCsys_PARALLEL_AXES, 76, {system.name});
}

}  // namespace

void odb_AssemblyData::ReadDatumCsyses() {
  if (datumCsysesRead || !store) return;
  const char* what = "the datum coordinate systems";
  const std::vector<store_DatumCsysRecord> records =
      odb_Reading(what, [&] { return store_DatumCsyses(*store); });
  for (const store_DatumCsysRecord& record : records) {
    odb_CheckedCode(*store, record.type, odb_Enum::RECTANGULAR, odb_Enum::SPHERICAL, what,
                    "datum_csys", "type");
    odb_CheckedCode(*store, record.definition, odb_DatumCsys::FIXED, odb_DatumCsys::SIX_DOF_NODE,
                    what, "datum_csys", "definition");
  }
  for (const store_DatumCsysRecord& record : records) {
    auto system = std::make_shared<odb_DatumCsysData>(odb_DatumCsysData::FromRecord(record));
    const odb_String name = system->name;
    datumCsyses.insert(name, odb_DatumCsysAccess::Make(std::move(system)));
  }
  datumCsysesRead = true;
}

odb_DatumCsys& odb_Assembly::DatumCsys(const odb_String& name, odb_Enum::odb_DatumCsysTypeEnum type,
                                       const odb_SequenceFloat& origin,
                                       const odb_SequenceFloat& xDirection,
                                       const odb_SequenceFloat& yDirection) {
  return Create(*m_data, name, type, odb_DatumCsys::FIXED, [&](odb_DatumCsysData& system) {
    if (!Point(origin, system.origin)) Throw(odb_DatumCsys_BAD_LENGTH, 96, {name});
    Directions(system, xDirection, yDirection);
    for (int i = 0; i < 3; ++i)
      for (int k = 0; k < 3; ++k) system.points[3 * i + k] = system.origin[k];
    for (int k = 0; k < 3; ++k) {
      system.points[3 + k] += system.axes[k];
      system.points[6 + k] += system.axes[3 + k];
    }
  });
}

odb_DatumCsys& odb_Assembly::DatumCsysByThreePoints(const odb_String& name,
                                                    odb_Enum::odb_DatumCsysTypeEnum type,
                                                    const odb_SequenceFloat& origin,
                                                    const odb_SequenceFloat& point1,
                                                    const odb_SequenceFloat& point2) {
  return Create(*m_data, name, type, odb_DatumCsys::FIXED, [&](odb_DatumCsysData& system) {
    if (!Point(origin, system.points) || !Point(point1, system.points + 3) ||
        !Point(point2, system.points + 6))
      Throw(odb_DatumCsys_BAD_LENGTH, 115, {name});
    if (!odb_FrameFromThreePoints(system.points, system.origin, system.axes))
      Throw(odb_DatumCsys_COLINEAR, 117, {name});
  });
}

odb_DatumCsys& odb_Assembly::DatumCsysByThreeNodes(const odb_String& name,
                                                   odb_Enum::odb_DatumCsysTypeEnum type,
                                                   const odb_String& instanceName, int originNode,
                                                   int point1Node, int point2Node) {
  return Create(*m_data, name, type, odb_DatumCsys::THREE_NODES, [&](odb_DatumCsysData& system) {
    system.nodes[0] = originNode, system.nodes[1] = point1Node, system.nodes[2] = point2Node;
    PlaceNodes(*m_data, system, instanceName);
    if (!odb_FrameFromThreePoints(system.points, system.origin, system.axes))
      Throw(odb_DatumCsys_COLINEAR, 129, {name});
  });
}

odb_DatumCsys& odb_Assembly::DatumCsysByThreeCircNodes(const odb_String& name,
                                                       odb_Enum::odb_DatumCsysTypeEnum type,
                                                       const odb_String& instanceName, int node1,
                                                       int node2, int node3) {
  return Create(*m_data, name, type, odb_DatumCsys::THREE_CIRC_NODES,
                [&](odb_DatumCsysData& system) {
                  system.nodes[0] = node1, system.nodes[1] = node2, system.nodes[2] = node3;
                  PlaceNodes(*m_data, system, instanceName);
                  if (!odb_FrameFromCircle(system.points, system.origin, system.axes))
                    Throw(odb_DatumCsys_COLINEAR, 142, {name});
                });
}

odb_DatumCsys& odb_Assembly::DatumCsysBy(const odb_String& name,
                                         odb_Enum::odb_DatumCsysTypeEnum type,
                                         const odb_String& instanceName, int node,
                                         const odb_SequenceFloat& xDirection,
                                         const odb_SequenceFloat& yDirection) {
  return Create(*m_data, name, type, odb_DatumCsys::SIX_DOF_NODE, [&](odb_DatumCsysData& system) {
    const bool global = xDirection.size() == 0 && yDirection.size() == 0;
    if (!global && (xDirection.size() != 3 || yDirection.size() != 3))
      Throw(odb_DatumCsys_BAD_LENGTH, 154, {name});
    system.nodes[0] = node;
    PlaceNodes(*m_data, system, instanceName);
    for (int k = 0; k < 3; ++k) system.origin[k] = system.points[k];
    if (!global) Directions(system, xDirection, yDirection);
  });
}

void odb_Assembly::DeleteDatumCsys(const odb_String& name) {
  odb_AssemblyData& d = *m_data;
  d.ReadDatumCsyses();
  if (!d.datumCsyses.isMember(name)) Throw(odb_DatumCsys_NOT_FOUND, 165, {name});
  store_DeleteDatumCsys(odb_WritableStore(d.store, kNoDatabase, kSource, 166), name.CStr());
  d.datumCsyses.remove(name);
}

odb_DatumCsysRepository& odb_Assembly::datumCsyses() {
  m_data->ReadDatumCsyses();
  return m_data->datumCsyses;
}
