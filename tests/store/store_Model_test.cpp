#include "store_Model.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "TempDir.h"
#include "store_Database.h"

namespace {

store_SetRecord Set(const std::string& name, int kind, bool internal = false) {
  store_SetRecord set;
  set.name = name;
  set.kind = kind;
  set.internal = internal;
  set.members.push_back({std::string(), {1}, {}});
  return set;
}

}  // namespace

// Regions are the assembly's sets by name and an instance's sets as INSTANCE.NAME; the
// instance's name may itself hold dots, and internal sets are never regions.
TEST(StoreModelRegion, NamesAssemblyAndInstanceSets) {
  TempDir dir;
  std::shared_ptr<store_Database> db = store_Database::Create(dir.file("regions.odb"));
  store_AddSet(*db, store_kAssemblyOwner, "", Set("TOP", store_kNodeSet));
  store_AddSet(*db, store_kAssemblyOwner, "", Set("TOP", store_kElementSet));
  store_AddSet(*db, store_kInstanceOwner, "PLATE.1", Set("EDGE", store_kSurface));
  store_AddSet(*db, store_kInstanceOwner, "PLATE.1", Set("HIDDEN", store_kNodeSet, true));

  EXPECT_EQ(store_RegionKinds(*db, "TOP"), (std::vector<int>{store_kNodeSet, store_kElementSet}));
  EXPECT_EQ(store_RegionKinds(*db, "PLATE.1.EDGE"), std::vector<int>{store_kSurface});
  EXPECT_TRUE(store_RegionKinds(*db, "EDGE").empty());
  EXPECT_TRUE(store_RegionKinds(*db, "PLATE.1.HIDDEN").empty());
  EXPECT_TRUE(store_RegionKinds(*db, "PLATE.1.TOP").empty());
  EXPECT_TRUE(store_RegionKinds(*db, "").empty());
}
