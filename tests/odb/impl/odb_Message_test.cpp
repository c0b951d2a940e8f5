#include "odb_Message.h"

#include <gtest/gtest.h>

TEST(FormatMessage, FillsPositionalPlaceholdersEverywhere) {
  EXPECT_EQ(odb_FormatMessage("cannot convert database %1$s, %2$s", {"a.odb", "disk full"}),
            "cannot convert database a.odb, disk full");
  EXPECT_EQ(odb_FormatMessage("%2$s then %1$s, again %2$s", {"one", "two"}),
            "two then one, again two");
  EXPECT_EQ(odb_FormatMessage("version %2$i of %1$s", {"f", odb_String(12)}), "version 12 of f");
}

TEST(FormatMessage, FillsUnnumberedPlaceholdersInTurn) {
  EXPECT_EQ(odb_FormatMessage("No step named \"%s\" in StepContainer.", {"Step-1"}),
            "No step named \"Step-1\" in StepContainer.");
  EXPECT_EQ(odb_FormatMessage("%s and %s", {"x", "y"}), "x and y");
}

TEST(FormatMessage, LeavesUnmatchedTextAlone) {
  EXPECT_EQ(odb_FormatMessage("%3$s %s %d 100%", {}), "%3$s %s %d 100%");
  EXPECT_EQ(odb_FormatMessage("%1$x %12$s", {"a"}), "%1$x %12$s");
  EXPECT_EQ(odb_FormatMessage(nullptr, {"a"}), "");
}

TEST(FormatMessage, DoesNotRescanInsertedArguments) {
  EXPECT_EQ(odb_FormatMessage("%1$s: %s", {"%2$s%s", "tail"}), "%2$s%s: %2$s%s");
}
