#include "uti_Array.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace {

// Copies throw once the countdown reaches zero, to test what a failed append leaves.
struct Fragile {
  static int copiesLeft;
  std::string text;
  explicit Fragile(std::string t) : text(std::move(t)) {}
  Fragile(const Fragile& other) : text(other.text) {
    if (copiesLeft-- == 0) throw std::runtime_error("copy failed");
  }
  Fragile& operator=(const Fragile&) = default;
};
int Fragile::copiesLeft = 1 << 30;

TEST(UtiArray, AppendingAnElementOfItselfWhileGrowingKeepsIt) {
  uti_Array<std::string> a;
  a.push_back("first");
  for (int i = 0; i < 40; ++i) a.push_back(a[0]);
  ASSERT_EQ(a.size(), 41);
  for (const std::string& s : a) EXPECT_EQ(s, "first");
}

TEST(UtiArray, CopiesAreIndependentAndMovesEmptyTheSource) {
  uti_Array<std::shared_ptr<int>> a;
  for (int i = 0; i < 5; ++i) a.push_back(std::make_shared<int>(i));
  uti_Array<std::shared_ptr<int>> copy = a;
  copy.push_back(std::make_shared<int>(5));
  EXPECT_EQ(a.size(), 5);
  EXPECT_EQ(a[4].use_count(), 2);
  uti_Array<std::shared_ptr<int>> moved = std::move(a);
  EXPECT_TRUE(a.empty());
  EXPECT_EQ(*moved.back(), 4);
  copy = moved;
  EXPECT_EQ(copy.size(), 5);
  copy.clear();
  EXPECT_EQ(moved[0].use_count(), 1);
}

TEST(UtiArray, AFailedCopyLeavesTheArrayAsItWas) {
  uti_Array<Fragile> a;
  for (int i = 0; i < 4; ++i) a.push_back(Fragile(std::to_string(i)));
  Fragile::copiesLeft = 2;  // the new element and one old one, then the third copy throws
  EXPECT_THROW(a.push_back(Fragile("4")), std::runtime_error);
  Fragile::copiesLeft = 1 << 30;
  ASSERT_EQ(a.size(), 4);
  for (int i = 0; i < 4; ++i) EXPECT_EQ(a[i].text, std::to_string(i));
  const Fragile more[] = {Fragile("4"), Fragile("5")};
  a.append(more, more + 2);
  EXPECT_EQ(a.back().text, "5");
}

}  // namespace
