#include "utl_Stream.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <sstream>
#include <string>

namespace {

std::string Written(double value, int upper = 6, int lower = 6) {
  std::ostringstream text;
  {
    utl_Stream out(text, 131, upper, lower);
    out << value;
  }
  return text.str();
}

std::string Written(float value) {
  std::ostringstream text;
  {
    utl_Stream out(text, 131, 6, 6);
    out << value;
  }
  return text.str();
}

}  // namespace

TEST(UtlStream, RealsReadBackExactlyAndAlwaysCarryAPoint) {
  std::mt19937_64 random(7);
  std::vector<double> values = {0.1,
                                1.0 / 3,
                                -2.5e-300,
                                1e308,
                                123456.789,
                                1e-6,
                                999999.9999,
                                std::numeric_limits<double>::max(),
                                std::numeric_limits<double>::denorm_min(),
                                -0.0,
                                5e-324};
  for (int i = 0; i < 2000; ++i) {
    double d;
    const std::uint64_t bits = random();
    std::memcpy(&d, &bits, sizeof d);
    if (std::isfinite(d)) values.push_back(d);
  }
  for (double v : values) {
    const std::string text = Written(v);
    EXPECT_LE(text.size(), 25u) << text;
    EXPECT_NE(text.find('.'), std::string::npos) << text;
    const double back = std::strtod(text.c_str(), nullptr);
    EXPECT_EQ(std::memcmp(&back, &v, sizeof v), 0) << text;
  }
  for (float v : {0.1f, 1e-7f, 1234567.f, -3.4e38f, 1.17549435e-38f}) {
    const std::string text = Written(v);
    EXPECT_EQ(static_cast<float>(std::strtod(text.c_str(), nullptr)), v) << text;
  }
}

TEST(UtlStream, FixedNotationBetweenTheExponentsScientificOutside) {
  EXPECT_EQ(Written(0.0), "0.");
  EXPECT_EQ(Written(1.0), "1.");
  EXPECT_EQ(Written(0.1), "0.1");
  EXPECT_EQ(Written(1e-6), "0.000001");
  EXPECT_EQ(Written(9.5e-7), "9.5e-07");
  EXPECT_EQ(Written(999999.0), "999999.");
  EXPECT_EQ(Written(1e6), "1.e+06");
  EXPECT_EQ(Written(-1.5e20), "-1.5e+20");
  EXPECT_EQ(Written(1e6, 15, 6), "1000000.");
}

TEST(UtlStream, PrintPadsIntegersAndRealsToTheirWidth) {
  std::ostringstream text;
  {
    utl_Stream out(text, 131, 6, 6);
    out.Print(2.5, 6, 15);
    out.Print(1e12, 0, 15);
    out << "|";
    out.Print(42, 4);
    out.Print("|");
    out.Print(cow_String("end"));
  }
  EXPECT_EQ(text.str(), "   2.51000000000000.|  42|end");
}

TEST(UtlStream, ColumnFollowsLineEndsAndOptionalBreakKeepsLinesWithinTheWidth) {
  std::ostringstream text;
  {
    utl_Stream out(text, 20, 6, 6);
    out << "abc\nde";
    EXPECT_EQ(out.Column(), 2);
    EXPECT_FALSE(out.OptionalLineBreak(18));
    EXPECT_TRUE(out.OptionalLineBreak(19));
    EXPECT_EQ(out.Column(), 0);
    out << 12345 << utl_endl;
  }
  EXPECT_EQ(text.str(), "abc\nde\n12345\n");
}

TEST(UtlStream, FixNumericStringAddsAPointBeforeTheExponent) {
  char a[16] = "12";
  utl_Stream::FixNumericString(a, 2);
  EXPECT_STREQ(a, "12.");
  char b[16] = "-3e-07";
  utl_Stream::FixNumericString(b, 6);
  EXPECT_STREQ(b, "-3.e-07");
  char c[16] = "2.5e+10";
  utl_Stream::FixNumericString(c, 7);
  EXPECT_STREQ(c, "2.5e+10");
}

TEST(UtlStream, SmallRealGuardWritesSubnormalsAsZero) {
  std::ostringstream text;
  {
    utl_Stream out(text, 131, 6, 6);
    utl_StreamSmallReal(out, 1e-310);
    out << " ";
    utl_StreamSmallReal(out, -2.2250738585072014e-308);
    out << " ";
    utl_StreamSmallReal(out, 0.5);
  }
  EXPECT_EQ(text.str(), "0. -2.2250738585072014e-308 0.5");
}
