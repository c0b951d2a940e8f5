#include "cow_String.h"

#include <gtest/gtest.h>

namespace {

TEST(CowString, SubstituteReplacesPlaceholders) {
  cow_String s("%1$s and %1$s, %s");
  EXPECT_EQ(s.Substitute("%1$s", "x"), 2);
  EXPECT_EQ(s.Substitute("%s", "y", false), 1);
  EXPECT_STREQ(s.CStr(), "x and x, y");
  EXPECT_EQ(s.Substitute("%9$s", "z"), 0);
}

}  // namespace
