#include "cow_COW.h"

#include <gtest/gtest.h>

#include "cow_1DArrayList.h"

namespace {

struct Shape {
  virtual ~Shape() = default;
  virtual Shape* Copy() const = 0;
  virtual int Corners() const = 0;
  int tag = 0;
};

struct Square : Shape {
  Shape* Copy() const override { return new Square(*this); }
  int Corners() const override { return 4; }
};

TEST(CowCOW, CopiesShareUntilOneWrites) {
  cow_COW<int> a(5);
  cow_COW<int> b(a);
  EXPECT_EQ(a.References(), 2);
  EXPECT_TRUE(a.Shares(b));
  *b.Get() = 6;
  EXPECT_FALSE(a.Shares(b));
  EXPECT_EQ(*a, 5);
  EXPECT_EQ(*b, 6);
  EXPECT_EQ(a.References(), 1);
  int* before = b.Get();
  EXPECT_EQ(b.Get(), before) << "a private handle writes in place";
}

TEST(CowCOW, VirtualPolicyKeepsDynamicType) {
  cow_COW<Shape, cow_Virtual<Shape>> a(static_cast<Shape*>(new Square));
  cow_COW<Shape, cow_Virtual<Shape>> b(a);
  b.Get()->tag = 3;
  EXPECT_EQ(b->Corners(), 4);
  EXPECT_EQ(a->tag, 0);
}

TEST(CowCOW, NullArrayHandlesFillVacatedListSlots) {
  using Handle = cow_ArrayCOW<int>;
  cow_1DArrayList<Handle> list;
  list.Append(Handle(1));
  list.Append(Handle(2));
  Handle kept = list.ConstGet(1);
  EXPECT_EQ(kept.References(), 2);
  list.Remove(1);
  EXPECT_FALSE(list.ConstGet(1).HasObject());
  EXPECT_EQ(kept.References(), 1) << "removing releases the list's share";
  list.Get(0) = list.ConstGet(0);
  EXPECT_EQ(*list.ConstGet(0), 1);
}

}  // namespace
