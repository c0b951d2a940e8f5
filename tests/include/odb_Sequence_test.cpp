#include "odb_Sequence.h"

#include <gtest/gtest.h>

namespace {

TEST(Sequence, CapacityHintIsNotALength) {
  odb_SequenceInt s(100);
  EXPECT_EQ(s.size(), 0);
  EXPECT_EQ(s.allocatedSize(), 100);
  s.append(7);
  EXPECT_EQ(s.size(), 1);
  EXPECT_EQ(s[0], 7);
}

TEST(Sequence, GetPastTheEndExtendsStorageNotSize) {
  odb_SequenceFloat s;
  s.get(10) = 2.5f;
  EXPECT_EQ(s.size(), 0);
  EXPECT_EQ(s.allocatedSize(), 11);
  EXPECT_EQ(s.constGet(10), 2.5f);
}

TEST(Sequence, GrowCutsAndFindFirstGivesSizeWhenAbsent) {
  int values[] = {1, 2, 3, 4, 5};
  odb_SequenceInt s(values, 5);
  EXPECT_EQ(s.size(), 5);
  EXPECT_EQ(s.findFirst(9), 5);
  s.grow(2);
  EXPECT_EQ(s.size(), 2);
  EXPECT_EQ(s.findFirst(5), 2);
  s.insert(0, 0);
  s.remove(2);
  EXPECT_EQ(s.size(), 2);
  EXPECT_EQ(s[0], 0);
  EXPECT_EQ(s[1], 1);
  EXPECT_TRUE(s.slice(1, 9).isEqual(odb_SequenceInt(values, 1)));
}

TEST(Sequence, StringsAreStoredAsSharedRepresentations) {
  odb_SequenceString names;
  odb_String part("PART-1");
  names.append(part);
  names.append("PART-2");
  EXPECT_EQ(part.Cow().Representation()->count, 2);
  EXPECT_EQ(names.findFirst("PART-2"), 1);
  EXPECT_TRUE(names.isMember(odb_String("PART-1")));
  names.get(0) += "-A";
  EXPECT_STREQ(names[0].CStr(), "PART-1-A");
  EXPECT_STREQ(part.CStr(), "PART-1");
}

TEST(Sequence, TableRowsShareWithTheSequencesTheyCameFrom) {
  float xyz[] = {1, 2, 3};
  odb_SequenceFloat row(xyz, 3);
  odb_SequenceSequenceFloat table;
  table.append(row);
  table.append(row);
  EXPECT_EQ(table[0].list().Array().TableReferences(), 3);
  table.get(1).get(0) = 9;
  EXPECT_EQ(table[1][0], 9.0f);
  EXPECT_EQ(table[0][0], 1.0f);
  EXPECT_EQ(row[0], 1.0f);
  EXPECT_EQ(table.findFirst(row), 0);

  odb_SequenceSequenceSequenceFloat cube;
  cube.append(table);
  EXPECT_EQ(cube[0][1][0], 9.0f);
}

TEST(Sequence, CopyAndClearAreIndependent) {
  odb_SequenceDouble a;
  for (int i = 0; i < 1000; ++i) a.append(i * 0.5);
  odb_SequenceDouble b(a);
  b.clearAll();
  a.append(b);
  EXPECT_EQ(a.size(), 1000);
  EXPECT_EQ(b.size(), 0);
  EXPECT_EQ(a[999], 499.5);
  odb_SequenceInvariant invariants;
  invariants.append(odb_Enum::MISES);
  EXPECT_TRUE(invariants.isMember(odb_Enum::MISES));
}

}  // namespace
