#include "cow_Map.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>
#include <string>

#include "AssertRecorder.h"
#include "odb_String.h"

namespace {

using Map = cow_Map<odb_String, int>;

std::set<std::string> Keys(const Map& map) {
  std::set<std::string> keys;
  cow_MapIter<odb_String, int> it(map);
  for (it.First(); !it.IsDone(); it.Next()) keys.insert(it.CurrentKey().CStr());
  return keys;
}

TEST(CowMap, AbsentKeyReportsHasValue) {
  Map map;
  map.Insert("a", 1);
  AssertRecorder asserts;
  EXPECT_EQ(map.Get("b"), 0);
  EXPECT_TRUE(asserts.firedOnce("x.HasValue()", "include/cow_Map", 176));
  AssertRecorder again;
  EXPECT_EQ(map.GetPointer("b"), nullptr);
  EXPECT_TRUE(again.firedOnce("x->HasValue()", "include/cow_Map", 176));
}

TEST(CowMap, AgreesWithReferenceMapUnderInsertAndRemove) {
  Map map;
  std::map<std::string, int> reference;
  std::mt19937 random(7);
  for (int step = 0; step < 3000; ++step) {
    std::string key = "K" + std::to_string(random() % 400) + (random() % 2 ? "-x" : "");
    if (random() % 3 == 0) {
      EXPECT_EQ(map.Remove(key.c_str()), reference.erase(key) == 1) << key;
    } else {
      int value = static_cast<int>(random() % 1000);
      EXPECT_EQ(map.Insert(key.c_str(), value), reference.count(key) == 0);
      reference[key] = value;
    }
  }
  EXPECT_EQ(map.Size(), static_cast<int>(reference.size()));
  for (const auto& [key, value] : reference) EXPECT_EQ(map.Get(key.c_str()), value) << key;
  std::set<std::string> expected;
  for (const auto& entry : reference) expected.insert(entry.first);
  EXPECT_EQ(Keys(map), expected);
}

TEST(CowMap, CopyIsUnaffectedByLaterWrites) {
  Map map;
  map.Insert("alpha", 1);
  map.Insert("beta", 2);
  Map copy(map);
  map.Insert("gamma", 3);
  *map.GetPointer("alpha") = 10;
  map.Remove("beta");
  EXPECT_EQ(Keys(copy), (std::set<std::string>{"alpha", "beta"}));
  EXPECT_EQ(copy.Get("alpha"), 1);
  EXPECT_EQ(map.Get("alpha"), 10);
}

TEST(CowMap, IterationIsPreOrderOfTheTree) {
  Map map;
  for (const char* key : {"m", "a", "b", "c"}) map.Insert(key, 0);
  // "m" is the root; the others branch on the low bit of their only character at depth 0:
  // 'a' (odd) and 'c' (odd) go to the "1" side, 'b' (even) to the "0" side.
  std::vector<std::string> order;
  cow_MapIter<odb_String, int> it(map);
  for (it.First(); !it.IsDone(); it.Next()) order.push_back(it.CurrentKey().CStr());
  EXPECT_EQ(order, (std::vector<std::string>{"m", "b", "a", "c"}));
}

TEST(CowMap, IteratorUsedBeforeFirstIsReported) {
  Map map;
  map.Insert("a", 1);
  cow_MapIter<odb_String, int> it(map);
  AssertRecorder asserts;
  EXPECT_TRUE(it.IsDone());
  ASSERT_FALSE(asserts.fired().empty());
  EXPECT_EQ(asserts.fired()[0].condition, "nodes && \"Need to call First() on iterator.\"");
  EXPECT_EQ(asserts.fired()[0].source, "include/cow_Map");
}

}  // namespace
