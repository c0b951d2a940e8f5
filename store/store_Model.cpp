#include "store_Model.h"

#include <cstring>

#include "store_Database.h"
#include "store_Statement.h"

namespace {

std::vector<int> ReadInts(store_Database& db, std::int64_t id) {
  std::vector<int> values(db.ArrayBytes(id) / sizeof(int));
  db.GetArray(id, values.data());
  return values;
}

}  // namespace

std::vector<store_PartRecord> store_Parts(store_Database& db) {
  std::vector<store_PartRecord> parts;
  store_Statement q = db.Sql("SELECT id, name, dimension, type FROM part ORDER BY id");
  while (q.Step()) {
    q.RequireNotNull("part", {"id", "name", "dimension", "type"});
    parts.push_back({q.Int64(0), q.Text(1), q.Int(2), q.Int(3)});
  }
  return parts;
}

std::int64_t store_AddPart(store_Database& db, const std::string& name, int dimension, int type) {
  db.Sql("INSERT INTO part(name, dimension, type) VALUES (?1, ?2, ?3)")
      .Bind(1, name)
      .Bind(2, dimension)
      .Bind(3, type)
      .Run();
  return sqlite3_last_insert_rowid(db.Connection());
}

std::vector<store_InstanceRecord> store_Instances(store_Database& db) {
  std::vector<store_InstanceRecord> instances;
  store_Statement q = db.Sql("SELECT id, name, part_id, placement FROM instance ORDER BY id");
  while (q.Step()) {
    q.RequireNotNull("instance", {"id", "name", "part_id", "placement"});
    store_InstanceRecord record;
    record.id = q.Int64(0);
    record.name = q.Text(1);
    record.partId = q.Int64(2);
    if (q.Bytes(3) != static_cast<int>(10 * sizeof(double)))
      throw store_Error("The placement of instance " + record.name + " is damaged.");
    double values[10];
    std::memcpy(values, q.Blob(3), sizeof values);
    std::memcpy(record.placement.translation, values, 3 * sizeof(double));
    std::memcpy(record.placement.axisPoint, values + 3, 3 * sizeof(double));
    std::memcpy(record.placement.axisDirection, values + 6, 3 * sizeof(double));
    record.placement.angle = values[9];
    instances.push_back(record);
  }
  return instances;
}

std::int64_t store_AddInstance(store_Database& db, const std::string& name, std::int64_t partId,
                               const store_Placement& placement) {
  double values[10];
  std::memcpy(values, placement.translation, 3 * sizeof(double));
  std::memcpy(values + 3, placement.axisPoint, 3 * sizeof(double));
  std::memcpy(values + 6, placement.axisDirection, 3 * sizeof(double));
  values[9] = placement.angle;
  db.Sql("INSERT INTO instance(name, part_id, placement) VALUES (?1, ?2, ?3)")
      .Bind(1, name)
      .Bind(2, partId)
      .BindBlob(3, values, sizeof values)
      .Run();
  return sqlite3_last_insert_rowid(db.Connection());
}

std::vector<store_SetRecord> store_Sets(store_Database& db, store_OwnerKind ownerKind,
                                        const std::string& owner) {
  std::vector<store_SetRecord> sets;
  std::vector<std::int64_t> ids;
  {
    store_Statement q = db.Sql(
        "SELECT id, name, kind, internal FROM mesh_set WHERE owner_kind = ?1 AND owner = ?2 "
        "ORDER BY id");
    q.Bind(1, static_cast<int>(ownerKind)).Bind(2, owner);
    while (q.Step()) {
      q.RequireNotNull("mesh_set", {"id", "name", "kind", "internal"});
      ids.push_back(q.Int64(0));
      store_SetRecord set;
      set.name = q.Text(1);
      set.kind = q.Int(2);
      set.internal = q.Int(3) != 0;
      sets.push_back(set);
    }
  }
  for (std::size_t s = 0; s < sets.size(); ++s) {
    store_Statement q = db.Sql(
        "SELECT instance, labels, faces FROM set_member WHERE set_id = ?1 ORDER BY position");
    q.Bind(1, ids[s]);
    std::vector<std::int64_t> labels, faces;
    while (q.Step()) {
      q.RequireNotNull("set_member", {"instance", "labels"});
      sets[s].members.push_back({q.Text(0), {}, {}});
      labels.push_back(q.Int64(1));
      faces.push_back(q.Int64(2));
    }
    for (std::size_t m = 0; m < labels.size(); ++m) {
      sets[s].members[m].labels = ReadInts(db, labels[m]);
      if (faces[m] != 0) sets[s].members[m].faces = ReadInts(db, faces[m]);
      // A surface gives every label its face.
      if ((sets[s].kind == store_kSurface) != (faces[m] != 0) ||
          (faces[m] != 0 && sets[s].members[m].faces.size() != sets[s].members[m].labels.size()))
        store_ThrowBadValue(db, "set_member", "faces", "an array that does not match its labels");
    }
  }
  return sets;
}

void store_AddSet(store_Database& db, store_OwnerKind ownerKind, const std::string& owner,
                  const store_SetRecord& set) {
  db.Sql(
        "INSERT INTO mesh_set(owner_kind, owner, kind, name, internal) "
        "VALUES (?1, ?2, ?3, ?4, ?5)")
      .Bind(1, static_cast<int>(ownerKind))
      .Bind(2, owner)
      .Bind(3, set.kind)
      .Bind(4, set.name)
      .Bind(5, set.internal ? 1 : 0)
      .Run();
  std::int64_t id = sqlite3_last_insert_rowid(db.Connection());
  for (std::size_t m = 0; m < set.members.size(); ++m) {
    const store_SetMember& member = set.members[m];
    std::int64_t labels =
        db.PutArray("set labels", member.labels.data(), member.labels.size() * sizeof(int));
    store_Statement insert = db.Sql(
        "INSERT INTO set_member(set_id, position, instance, labels, faces) "
        "VALUES (?1, ?2, ?3, ?4, ?5)");
    insert.Bind(1, id).Bind(2, static_cast<int>(m)).Bind(3, member.instance).Bind(4, labels);
    if (set.kind == store_kSurface)
      insert.Bind(
          5, db.PutArray("surface faces", member.faces.data(), member.faces.size() * sizeof(int)));
    insert.Run();
  }
}

std::vector<store_SectionAssignment> store_SectionAssignments(store_Database& db,
                                                              store_OwnerKind ownerKind,
                                                              const std::string& owner) {
  std::vector<store_SectionAssignment> assignments;
  store_Statement q = db.Sql(
      "SELECT set_name, section FROM section_assignment WHERE owner_kind = ?1 AND owner = ?2 "
      "ORDER BY id");
  q.Bind(1, static_cast<int>(ownerKind)).Bind(2, owner);
  while (q.Step()) {
    q.RequireNotNull("section_assignment", {"set_name", "section"});
    assignments.push_back({q.Text(0), q.Text(1)});
  }
  return assignments;
}

void store_AddSectionAssignment(store_Database& db, store_OwnerKind ownerKind,
                                const std::string& owner, const store_SectionAssignment& a) {
  db.Sql(
        "INSERT INTO section_assignment(owner_kind, owner, set_name, section) "
        "VALUES (?1, ?2, ?3, ?4)")
      .Bind(1, static_cast<int>(ownerKind))
      .Bind(2, owner)
      .Bind(3, a.setName)
      .Bind(4, a.section)
      .Run();
}

std::vector<int> store_RegionKinds(store_Database& db, const std::string& region) {
  const std::string::size_type dot = region.rfind('.');
  const bool ofInstance = dot != std::string::npos;
  store_Statement q = db.Sql(
      "SELECT kind FROM mesh_set WHERE owner_kind = ?1 AND owner = ?2 AND name = ?3 "
      "AND internal = 0 ORDER BY kind");
  q.Bind(1, static_cast<int>(ofInstance ? store_kInstanceOwner : store_kAssemblyOwner))
      .Bind(2, ofInstance ? region.substr(0, dot) : std::string())
      .Bind(3, ofInstance ? region.substr(dot + 1) : region);
  std::vector<int> kinds;
  while (q.Step()) kinds.push_back(q.Int(0));
  return kinds;
}
