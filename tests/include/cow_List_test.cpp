#include "cow_List.h"

#include <gtest/gtest.h>

#include <vector>

#include "AssertRecorder.h"

namespace {

std::vector<int> Items(const cow_List<int>& list) {
  std::vector<int> items;
  cow_ListIter<int> it(list);
  for (it.First(); !it.IsDone(); it.Next()) items.push_back(it.Current());
  return items;
}

TEST(CowList, InsertAfterSizeAppendsAndMinusOnePutsFirst) {
  cow_List<int> list;
  list.Append(1).Append(2);
  list.InsertAfter(2, 3).InsertAfter(-1, 0).InsertAfter(1, 5);
  EXPECT_EQ(Items(list), (std::vector<int>{0, 1, 5, 2, 3}));
  AssertRecorder asserts;
  list.InsertAfter(9, 4);
  EXPECT_TRUE(asserts.firedOnce("index <= size", "include/cow_List", 162));
}

TEST(CowList, PrependAcrossManyBlocksKeepsOrder) {
  cow_List<int> list;
  for (int i = 0; i < 50; ++i) list.Append(i);
  for (int i = 1; i <= 300; ++i) list.Prepend(-i);
  ASSERT_EQ(list.Size(), 350);
  for (int i = 0; i < 300; ++i) ASSERT_EQ(list[i], i - 300);
  for (int i = 0; i < 50; ++i) ASSERT_EQ(list[300 + i], i);
  for (int i = 0; i < 310; ++i) list.RemoveFirst();
  EXPECT_EQ(list.Size(), 40);
  EXPECT_EQ(list[0], 10);
  list.Append(99);
  EXPECT_EQ(list[40], 99);
}

TEST(CowList, RemovalsLeaveDefaultsAndRefuseEmptyOrOutOfRange) {
  cow_List<int> list;
  list.Append(1).Append(2).Append(3);
  list.RemoveIndex(1).RemoveLast();
  EXPECT_EQ(Items(list), (std::vector<int>{1}));
  EXPECT_EQ(list.ConstGet(1), 0);
  list.RemoveFirst();
  EXPECT_EQ(list.Size(), 0);
  struct Case {
    void (*call)(cow_List<int>&);
    const char* condition;
    int line;
  };
  for (Case c :
       {Case{[](cow_List<int>& l) { l.RemoveLast(); }, "size", 52},
        Case{[](cow_List<int>& l) { l.RemoveFirst(); }, "size", 74},
        Case{[](cow_List<int>& l) { l.RemoveIndex(0); }, "0 <= index && index < size", 31}}) {
    AssertRecorder asserts;
    c.call(list);
    EXPECT_TRUE(asserts.firedOnce(c.condition, "include/cow_List", c.line));
    EXPECT_EQ(list.Size(), 0);
  }
}

TEST(CowList, CopiesAreIndependentAfterWritesAndClear) {
  cow_List<int> a;
  a.Append(1).Append(2);
  cow_List<int> b(a);
  b.Prepend(0);
  b.Get(1) = 10;
  a.Append(a);
  EXPECT_EQ(Items(a), (std::vector<int>{1, 2, 1, 2}));
  EXPECT_EQ(Items(b), (std::vector<int>{0, 10, 2}));
  b.Clear();
  EXPECT_EQ(b.Size(), 0);
  EXPECT_EQ(a.Size(), 4);
}

}  // namespace
