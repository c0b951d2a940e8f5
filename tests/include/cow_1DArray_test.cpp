#include "cow_1DArray.h"

#include <gtest/gtest.h>

#include <vector>

#include "AssertRecorder.h"
#include "cow_List.h"

namespace {

struct Sizing {
  int n, shift, slots;
};

TEST(Cow1DArray, SizingRuleGivesEightToSixteenBlocks) {
  for (Sizing s : {Sizing{255, 4, 16}, Sizing{256, 5, 24}, Sizing{1000, 6, 32}, Sizing{5000, 9, 26},
                   Sizing{1, 4, 16}}) {
    cow_1DArray<int> a(s.n);
    EXPECT_EQ(a.Length(), s.n);
    EXPECT_EQ(a.BlockShift(), s.shift) << s.n;
    EXPECT_EQ(a.SlotCapacity(), s.slots) << s.n;
    EXPECT_EQ(a.BlockAt(0), nullptr) << "blocks are allocated on first access";
  }
}

TEST(Cow1DArray, WriteAtTenOnEmptyArrayGrowsTableBySixteenFreeSlots) {
  cow_1DArray<int> a;
  a.Get(10) = 5;
  EXPECT_EQ(a.Length(), 11);
  EXPECT_EQ(a.BlockShift(), 4);
  EXPECT_EQ(a.SlotCapacity(), 17);
  EXPECT_EQ(a[10], 5);
  EXPECT_EQ(a[3], 0);
}

TEST(Cow1DArray, WriteToSharedMillionCopiesTableAndExactlyOneBlock) {
  const int n = 1000000;
  std::vector<float> values(n);
  for (int i = 0; i < n; ++i) values[i] = static_cast<float>(i);
  cow_1DArray<float> original(n);
  original.SetFromArray(values.data(), n);
  cow_1DArray<float> copy(original);
  EXPECT_EQ(original.TableReferences(), 2);

  copy.Get(654321) = -1.0f;

  EXPECT_EQ(original.TableReferences(), 1);
  EXPECT_EQ(copy.TableReferences(), 1);
  int written = 654321 >> copy.BlockShift(), distinct = 0;
  for (int b = 0; b < copy.SlotCapacity(); ++b) {
    if (!copy.BlockAt(b)) continue;
    if (copy.BlockAt(b) != original.BlockAt(b)) {
      ++distinct;
      EXPECT_EQ(b, written);
      EXPECT_EQ(copy.BlockAt(b)->count, 1);
      EXPECT_EQ(original.BlockAt(b)->count, 1);
    } else {
      EXPECT_EQ(copy.BlockAt(b)->count, 2);
    }
  }
  EXPECT_EQ(distinct, 1);
  EXPECT_EQ(original[654321], 654321.0f);
  EXPECT_EQ(copy[654321], -1.0f);
  EXPECT_EQ(copy[654320], 654320.0f);
}

TEST(Cow1DArray, ShorteningThenGrowingKeepsCopiesApart) {
  cow_1DArray<int> a;
  for (int i = 0; i < 100; ++i) a.Get(i) = i;
  cow_1DArray<int> b(a);
  a.Grow(3);
  a.Grow(100);
  a.Get(50) = 7;
  EXPECT_EQ(b[50], 50);
  EXPECT_EQ(b.Length(), 100);
  a.Grow(0);
  EXPECT_EQ(a.Length(), 0);
  EXPECT_EQ(a.SlotCapacity(), 0);
  EXPECT_EQ(b[99], 99);
}

TEST(Cow1DArray, ReadsOutsideWrittenBlocksGiveDefaultsAndNegativeWriteIsReported) {
  cow_1DArray<int> a(1000);
  EXPECT_EQ(a[999], 0);
  EXPECT_EQ(a[5000], 0);
  EXPECT_EQ(a.PartialArrayConstGet(2000), 0);
  AssertRecorder asserts;
  a.Get(-5) = 3;
  EXPECT_TRUE(asserts.firedOnce("pos >= 0", "include/cow_1DArray", 120));
}

TEST(Cow1DArray, IteratorOverArrayWithUnwrittenFirstBlockIsEmpty) {
  cow_1DArray<int> a(40);
  a.Get(39) = 1;
  cow_1DArrayIter<int> it(a);
  it.First();
  EXPECT_TRUE(it.IsDone());

  cow_1DArray<int> b;
  for (int i = 0; i < 40; ++i) b.Get(i) = i * 2;
  int count = 0;
  cow_1DArrayIter<int> walk(b);
  for (walk.First(); !walk.IsDone(); walk.Next()) EXPECT_EQ(walk.Current(), 2 * count++);
  EXPECT_EQ(count, 40);
}

TEST(Cow1DArray, GetHeadMovesBlockPointersNotElements) {
  cow_List<int> list;
  for (int i = 0; i < 20; ++i) list.Append(i);
  const int* first = &list.ConstGet(0);
  list.Prepend(-1);
  EXPECT_EQ(list.Size(), 21);
  EXPECT_EQ(&list.ConstGet(1), first) << "old elements stay in place";
  for (int i = 0; i < 20; ++i) EXPECT_EQ(list[i + 1], i);
  EXPECT_EQ(list[0], -1);
}

}  // namespace
