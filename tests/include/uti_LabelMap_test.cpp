#include "uti_LabelMap.h"

#include <gtest/gtest.h>

#include "AssertRecorder.h"
#include "odb_Exceptions.h"

using Exceptions = uti_LabelMap<odb_ExceptionsEnm, 1>;

TEST(UtiLabelMap, MissingCodeReportsAndGivesEmptyText) {
  AssertRecorder recorder;
  EXPECT_STREQ(Exceptions::LabelString(odb_Exceptions_DETAIL), "");
  EXPECT_TRUE(recorder.firedOnce("\"Unable to find key given label string\" == 0",
                                 "include/uti_LabelMap", 41));
}

TEST(UtiLabelMap, KeyLeadsBackToItsCode) {
  odb_ExceptionsEnm code = odb_Exceptions_PREVIOUS_VERSION;
  EXPECT_TRUE(Exceptions::CodeOfResource("odb_Exceptions_MSGID_7", code));
  EXPECT_EQ(code, odb_Exceptions_INVALID_VERSION);

  AssertRecorder recorder;
  EXPECT_FALSE(Exceptions::CodeOfResource("odb_Exceptions_MSGID_07", code));
  EXPECT_EQ(code, odb_Exceptions_INVALID_VERSION);
  EXPECT_TRUE(recorder.firedOnce("\"Unable to find key given resource string\" == 0",
                                 "include/uti_LabelMap", 58));
}
