#include "store_Material.h"

#include "store_Database.h"
#include "store_Statement.h"

std::vector<store_MaterialRecord> store_Materials(store_Database& db) {
  std::vector<store_MaterialRecord> materials;
  store_Statement q = db.Sql(
      "SELECT id, name, youngs_modulus IS NOT NULL AND poissons_ratio IS NOT NULL, "
      "coalesce(youngs_modulus, 0), coalesce(poissons_ratio, 0), density IS NOT NULL, "
      "coalesce(density, 0) FROM material");
  while (q.Step()) {
    q.RequireNotNull("material", {"id", "name"});
    store_MaterialRecord record;
    record.id = q.Int64(0);
    record.name = q.Text(1);
    record.hasElastic = q.Int(2) != 0;
    record.youngsModulus = q.Double(3);
    record.poissonsRatio = q.Double(4);
    record.hasDensity = q.Int(5) != 0;
    record.density = q.Double(6);
    materials.push_back(record);
  }
  return materials;
}

std::int64_t store_AddMaterial(store_Database& db, const std::string& name) {
  db.Sql("INSERT INTO material(name) VALUES (?1)").Bind(1, name).Run();
  return sqlite3_last_insert_rowid(db.Connection());
}

void store_SetElastic(store_Database& db, std::int64_t id, double youngsModulus,
                      double poissonsRatio) {
  db.Sql("UPDATE material SET youngs_modulus = ?1, poissons_ratio = ?2 WHERE id = ?3")
      .Bind(1, youngsModulus)
      .Bind(2, poissonsRatio)
      .Bind(3, id)
      .Run();
}

void store_SetDensity(store_Database& db, std::int64_t id, double density) {
  db.Sql("UPDATE material SET density = ?1 WHERE id = ?2").Bind(1, density).Bind(2, id).Run();
}
