#include "uti_LabelMap.h"

#include <gtest/gtest.h>

#include <string>

#include "AssertRecorder.h"
#include "odb_Exceptions.h"

using Exceptions = uti_LabelMap<odb_ExceptionsEnm, 1>;

TEST(LabelMap, ExceptionKeysCountFromOneWithOneDigit) {
  EXPECT_STREQ(Exceptions::ResourceString(odb_Exceptions_PREVIOUS_VERSION),
               "odb_Exceptions_MSGID_1");
  EXPECT_STREQ(Exceptions::ResourceString(odb_Exceptions_OLD_FORMAT), "odb_Exceptions_MSGID_6");
  // Code 7 sits in the seventh row but keeps key number 7.
  EXPECT_STREQ(Exceptions::ResourceString(odb_Exceptions_INVALID_VERSION),
               "odb_Exceptions_MSGID_7");
  EXPECT_EQ(Exceptions::Size(), 7);
}

TEST(LabelMap, TextsAreKeptWordForWord) {
  EXPECT_STREQ(Exceptions::LabelString(odb_Exceptions_UPGRADE_CHECK_FAILED),
               "isUpgradeRequiredForOdb failed, %1$s");
  const std::string oldFormat = Exceptions::LabelString(odb_Exceptions_OLD_FORMAT);
  EXPECT_NE(oldFormat.find("with an KORVEL analysis \nversion prior to 6.1-1"), std::string::npos);
  // No final full stop on codes 4 and 7.
  EXPECT_EQ(std::string(Exceptions::LabelString(odb_Exceptions_NO_DISK_SPACE)).back(), 'e');
  EXPECT_EQ(std::string(Exceptions::LabelString(odb_Exceptions_INVALID_VERSION)).back(), 'e');
}

TEST(LabelMap, MissingCodeReportsAndGivesEmptyText) {
  AssertRecorder recorder;
  EXPECT_STREQ(Exceptions::LabelString(odb_Exceptions_DETAIL), "");
  EXPECT_TRUE(recorder.firedOnce("\"Unable to find key given label string\" == 0",
                                 "include/uti_LabelMap", 41));
}

TEST(LabelMap, KeyLeadsBackToItsCode) {
  odb_ExceptionsEnm code = odb_Exceptions_PREVIOUS_VERSION;
  EXPECT_TRUE(Exceptions::CodeOfResource("odb_Exceptions_MSGID_7", code));
  EXPECT_EQ(code, odb_Exceptions_INVALID_VERSION);

  AssertRecorder recorder;
  EXPECT_FALSE(Exceptions::CodeOfResource("odb_Exceptions_MSGID_07", code));
  EXPECT_EQ(code, odb_Exceptions_INVALID_VERSION);
  EXPECT_TRUE(recorder.firedOnce("\"Unable to find key given resource string\" == 0",
                                 "include/uti_LabelMap", 58));
}
