#include "oif_DeckText.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "AssertRecorder.h"
#include "odb_Enum.h"

namespace {

std::string Labels(const std::vector<int>& labels) {
  return oif_Format([&](utl_Stream& out) {
    oif_WriteLabels(out, labels.data(), labels.size(),
                    oif_GenerateTest(labels.data(), labels.size()));
  });
}

std::string Set(oif_SetItem::Kind kind, const char* name, const char* instance, bool internal,
                std::vector<int> labels) {
  oif_SetItem item(kind, name, instance, internal,
                   std::make_shared<const std::vector<int>>(std::move(labels)));
  return oif_Format([&](utl_Stream& out) { item.Write(out); });
}

}  // namespace

TEST(OifDeckText, NamesWithBlankApostropheOrCommaAreQuoted) {
  EXPECT_EQ(oif_Name("Set-1"), "Set-1");
  EXPECT_EQ(oif_Name("Set 1"), "\"Set 1\"");
  EXPECT_EQ(oif_Name("Bob's"), "\"Bob's\"");
  EXPECT_EQ(oif_Name("a,b"), "\"a,b\"");
  EXPECT_EQ(oif_Name(""), "");
}

TEST(OifDeckText, GenerateTestTakesAnyConstantDifferenceOfThreeOrMoreLabels) {
  EXPECT_EQ(Labels({1, 2}), "1,2\n");
  EXPECT_EQ(Labels({10, 20, 30, 40}), "10, 40, 10\n");
  EXPECT_EQ(Labels({5, 3, 1}), "5, 1, -2\n");
  EXPECT_EQ(Labels({7, 7, 7}), "7, 7, 0\n");
  EXPECT_EQ(Labels({1, 2, 4}), "1,2,4\n");
  EXPECT_EQ(Labels({9}), "9, \n");
  EXPECT_EQ(Labels({}), "");
  // Differences that overflow 32 bits do not wrap into a match.
  const int low = -2147483647 - 1, high = 2147483647;
  EXPECT_FALSE(oif_GenerateTest(std::vector<int>{low, high, low}.data(), 3).generate);
  EXPECT_FALSE(oif_GenerateTest(std::vector<int>{low, 0, high}.data(), 3).generate);
}

TEST(OifDeckText, LabelsGoSixteenToALineAndALoneLastLabelGetsASeparator) {
  std::vector<int> labels;
  for (int i = 0; i < 17; ++i) labels.push_back(i * i);
  EXPECT_EQ(Labels(labels), "0,1,4,9,16,25,36,49,64,81,100,121,144,169,196,225\n256, \n");
  labels.push_back(1000);
  EXPECT_EQ(Labels(labels), "0,1,4,9,16,25,36,49,64,81,100,121,144,169,196,225\n256,1000\n");
  labels.resize(16);
  EXPECT_EQ(Labels(labels), "0,1,4,9,16,25,36,49,64,81,100,121,144,169,196,225\n");
}

TEST(OifDeckText, SetKeywordLinesCarryInstanceInternalAndGenerate) {
  EXPECT_EQ(Set(oif_SetItem::NODE, "Set 1", "", false, {1, 2}), "*Nset, nset=\"Set 1\"\n1,2\n");
  EXPECT_EQ(Set(oif_SetItem::ELEMENT, "E", "Part-1 1", true, {3, 6, 9}),
            "*Elset, elset=E, instance=\"Part-1 1\", internal, generate\n3, 9, 3\n");
  EXPECT_EQ(Set(oif_SetItem::NODE, "Empty", "", false, {}), "*Nset, nset=Empty\n");
}

TEST(OifDeckText, DatumParametersByTypeAndForm) {
  EXPECT_EQ(oif_DatumParameter(odb_Enum::RECTANGULAR, true), "");
  EXPECT_EQ(oif_DatumParameter(odb_Enum::CYLINDRICAL, true), "type=C");
  EXPECT_EQ(oif_DatumParameter(odb_Enum::SPHERICAL, true), "type=S");
  EXPECT_EQ(oif_DatumParameter(odb_Enum::CYLINDRICAL, false), "system=CYLINDRICAL");
  EXPECT_EQ(oif_DatumParameter(odb_Enum::SPHERICAL, false), "system=SPHERICAL");
  AssertRecorder recorder;
  EXPECT_EQ(oif_DatumParameter(3, false), "");
  EXPECT_TRUE(
      recorder.firedOnce("Wrong datum type during input generation", "oif/impl/oif_DeckText", 90));
}
