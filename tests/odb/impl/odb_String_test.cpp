#include "odb_String.h"

#include <gtest/gtest.h>

namespace {

TEST(String, EmptyStringAllocatesNothingAndReadsAsEmptyText) {
  odb_String s;
  EXPECT_EQ(s.Cow().Representation(), nullptr);
  EXPECT_EQ(s.Length(), 0u);
  EXPECT_TRUE(s.Empty());
  ASSERT_NE(s.CStr(), nullptr);
  EXPECT_STREQ(s.CStr(), "");
  EXPECT_EQ(s.compare(""), 0);
  EXPECT_EQ(s.compare(odb_String("")), 0);
  EXPECT_EQ(sizeof(odb_String), sizeof(void*));
}

TEST(String, CompareIsUnsignedByteOrder) {
  EXPECT_EQ(odb_String("a").compare("b"), -1);
  EXPECT_EQ(odb_String("ab").compare("a"), 1);
  EXPECT_EQ(odb_String("B").compare("a"), -1);
  EXPECT_EQ(odb_String("\xc3\xa9").compare("z"), 1) << "bytes of 128 and above sort after ASCII";
  EXPECT_EQ(odb_String("same").compare(odb_String("same")), 0);
}

TEST(String, CopiesShareUntilWritten) {
  odb_String a("node");
  odb_String b(a);
  EXPECT_EQ(a.Cow().Representation(), b.Cow().Representation());
  EXPECT_EQ(a.Cow().Representation()->count, 2);
  b[0] = 'N';
  EXPECT_STREQ(a.CStr(), "node");
  EXPECT_STREQ(b.CStr(), "Node");
  b = a;
  EXPECT_EQ(a.Cow().Representation()->count, 2);
  b = "other";
  EXPECT_EQ(a.Cow().Representation()->count, 1);
}

TEST(String, NumbersInTheirTextForms) {
  EXPECT_STREQ(odb_String(-42).CStr(), "-42");
  EXPECT_STREQ(odb_String(4000000000u).CStr(), "4000000000");
  EXPECT_STREQ(odb_String(1.5).CStr(), "1.5");
  EXPECT_STREQ(odb_String(0.1).CStr(), "0.1");
  EXPECT_EQ(std::stod(odb_String(1.0 / 3.0).CStr()), 1.0 / 3.0) << "round-trips";
}

TEST(String, AppendForms) {
  odb_String s("ab");
  s += odb_String("cd");
  s += "ef";
  s.append("ghij", 2);
  s.append(odb_String("0123456"), 2, 3);
  s.append(odb_String("xy"), 1, 100);
  EXPECT_STREQ(s.CStr(), "abcdefgh234y");
  s.append(s);
  EXPECT_STREQ(s.CStr(), "abcdefgh234yabcdefgh234y");
  EXPECT_EQ(s.Length(), 24u);
  odb_String withNul("a\0b", 3);
  EXPECT_EQ(withNul.Length(), 3u);
}

TEST(String, FindAndRFind) {
  odb_String s("abcabc");
  EXPECT_EQ(s.Find("bc"), 1);
  EXPECT_EQ(s.Find("bc", 2), 4);
  EXPECT_EQ(s.Find("bcx", 0, 2), 1);
  EXPECT_EQ(s.Find(odb_String("zz")), cow_String::npos);
  EXPECT_EQ(s.Find("c", 6), cow_String::npos);
  EXPECT_EQ(s.RFind("bc"), 4);
  EXPECT_EQ(s.RFind("bc", 3), 1);
  EXPECT_EQ(s.RFind("abz", 5, 2), 3);
  EXPECT_EQ(s.RFind(odb_String("x")), cow_String::npos);
}

TEST(String, EraseRangesAndAll) {
  odb_String s("abcdef");
  odb_String kept(s);
  s.Erase(1, 2);
  EXPECT_STREQ(s.CStr(), "adef");
  s.Erase(2, 100);
  EXPECT_STREQ(s.CStr(), "ad");
  s.Erase(5, 1);
  EXPECT_STREQ(s.CStr(), "ad");
  s.Erase();
  EXPECT_TRUE(s.Empty());
  EXPECT_STREQ(kept.CStr(), "abcdef");
}

}  // namespace
