#include "cow_1DArrayList.h"

#include <gtest/gtest.h>

#include "AssertRecorder.h"

namespace {

cow_1DArrayList<int> ListOf(std::initializer_list<int> values) {
  cow_1DArrayList<int> list;
  for (int v : values) list.Append(v);
  return list;
}

std::vector<int> Items(const cow_1DArrayList<int>& list) {
  std::vector<int> items;
  cow_1DArrayListIter<int> it(list);
  for (it.First(); !it.IsDone(); it.Next()) items.push_back(it.Current());
  return items;
}

TEST(Cow1DArrayList, InsertAtLengthAppendsAndInMiddleShiftsUp) {
  cow_1DArrayList<int> list = ListOf({1, 2, 3});
  list.Insert(3, 4);
  list.Insert(1, 9);
  EXPECT_EQ(Items(list), (std::vector<int>{1, 9, 2, 3, 4}));
  AssertRecorder asserts;
  list.Insert(7, 5);
  EXPECT_TRUE(asserts.firedOnce("ins <= length", "include/cow_1DArrayList", 99));
}

TEST(Cow1DArrayList, RemoveLeavesDefaultInVacatedPosition) {
  cow_1DArrayList<int> list = ListOf({5, 6, 7});
  list.Remove(2);
  EXPECT_EQ(list.Length(), 2);
  EXPECT_EQ(list.ConstGet(2), 0);
  list.Remove(0);
  EXPECT_EQ(Items(list), (std::vector<int>{6}));
  EXPECT_EQ(list.ConstGet(1), 0);
}

TEST(Cow1DArrayList, MisuseIsReportedAndLeavesListIntact) {
  cow_1DArrayList<int> list = ListOf({1, 2});
  {
    AssertRecorder asserts;
    list.Remove(2);
    EXPECT_TRUE(asserts.firedOnce("i < length", "include/cow_1DArrayList", 70));
    EXPECT_EQ(list.Length(), 2);
  }
  cow_1DArrayList<int> empty;
  {
    AssertRecorder asserts;
    EXPECT_EQ(empty.Pop(), 0);
    EXPECT_TRUE(asserts.firedOnce("length", "include/cow_1DArrayList", 88));
    EXPECT_EQ(empty.Length(), 0);
  }
  {
    AssertRecorder asserts;
    cow_1DArrayList<int> out;
    list.Slice(0, 1, out);
    EXPECT_TRUE(asserts.firedOnce(
        "\"This overload of cow_1DArrayList<T>::Slice is no longer supported\" == 0",
        "include/cow_1DArrayList", 62));
    EXPECT_EQ(out.Length(), 0);
  }
  {
    AssertRecorder asserts;
    EXPECT_EQ(list.FindLast(1), 2);
    EXPECT_TRUE(asserts.firedOnce("\"cow_1DArrayList<T>::FindLast is no longer supported\" == 0",
                                  "include/cow_1DArrayListCmp", 70));
  }
}

TEST(Cow1DArrayList, PopReturnsLastAndShortens) {
  cow_1DArrayList<int> list = ListOf({1, 2, 3});
  EXPECT_EQ(list.Pop(), 3);
  EXPECT_EQ(Items(list), (std::vector<int>{1, 2}));
}

TEST(Cow1DArrayList, SearchAndMembership) {
  cow_1DArrayList<int> list = ListOf({4, 5, 4});
  EXPECT_EQ(list.FindFirst(4), 0);
  EXPECT_EQ(list.FindFirst(8), 3) << "absent gives the length, not -1";
  list.RemoveMember(4);
  EXPECT_EQ(Items(list), (std::vector<int>{5, 4}));
  list.AppendUnlessMember(5);
  list.AppendUnlessMember(6);
  EXPECT_EQ(Items(list), (std::vector<int>{5, 4, 6}));
  EXPECT_TRUE(list.IsMember(6));
}

TEST(Cow1DArrayList, SliceStopsAtLength) {
  cow_1DArrayList<int> list = ListOf({0, 1, 2, 3, 4});
  EXPECT_EQ(Items(list.Slice(2, 100)), (std::vector<int>{2, 3, 4}));
  EXPECT_EQ(list.Slice(4, 2).Length(), 0);
}

TEST(Cow1DArrayList, AppendListIncludingItself) {
  cow_1DArrayList<int> list = ListOf({1, 2});
  cow_1DArrayList<int> longer = ListOf({7, 8, 9});
  list.Append(longer);
  EXPECT_EQ(Items(list), (std::vector<int>{1, 2, 7, 8, 9}));
  list.Append(list);
  EXPECT_EQ(list.Length(), 10);
  EXPECT_EQ(list.ConstGet(9), 9);
  EXPECT_EQ(Items(longer), (std::vector<int>{7, 8, 9}));
}

TEST(Cow1DArrayList, CopiesShareUntilWrittenAndCompareEqual) {
  cow_1DArrayList<int> a = ListOf({1, 2, 3});
  cow_1DArrayList<int> b(a);
  EXPECT_TRUE(a.IsEqual(b));
  b.Get(1) = 20;
  EXPECT_EQ(a.ConstGet(1), 2);
  EXPECT_FALSE(a.IsEqual(b));
  EXPECT_FALSE(a.IsEqual(ListOf({1, 2})));
  int n = 0;
  int* raw = b.GetCArray(n);
  EXPECT_EQ(n, 3);
  EXPECT_EQ(raw[1], 20);
  delete[] raw;
}

}  // namespace
