#include "support/make_string.h"

#include <gtest/gtest.h>
#include <limits>

namespace reelvane {
namespace {

TEST(MakeString, KnowsConversionsFlagsWidthsAndPrecisions) {
    EXPECT_EQ(makeString("%@ %@ %@ %@ %@", "a", 3, 1.5, 2.0, std::filesystem::path("/b c")),
              "a 3 1.5 2 /b c");
    EXPECT_EQ(makeString("%@|%i", std::string_view("x"), true), "x|1");
    EXPECT_EQ(makeString("%5i|%-5i|%05i|%+i|% i|%.3i", 42, 42, -42, 42, 42, 7),
              "   42|42   |-0042|+42| 42|007");
    EXPECT_EQ(makeString("%f|%.1f|%8.2f|%.0f", 1.5, 0.25, -3.14159, 2.5),
              "1.500000|0.2|   -3.14|2");
    EXPECT_EQ(makeString("%02x|%lx|%lu|%li", 10, 255, std::numeric_limits<std::size_t>::max(), -5L),
              "0a|ff|18446744073709551615|-5");
    EXPECT_EQ(makeString("%.2s|%4s", "abc", "de"), "ab|  de");
    EXPECT_EQ(formattedTimeFromTimeInterval(59.9) + formattedTimeFromTimeInterval(60), "59s1m 0s");
}

TEST(MakeString, SurvivesFormatsAndArgumentsThatDoNotMatch) {
    EXPECT_EQ(makeString("%@ and %@", "one"), "one and (null)");
    EXPECT_EQ(makeString("100%", "left over"), "100%");
    EXPECT_EQ(makeString("50%% of %y", 1), "50% of %y");
    EXPECT_EQ(makeString("%i %f %s", "text", 2, 3), "text 2.000000 3");
    EXPECT_EQ(makeString("%i %i", std::numeric_limits<double>::quiet_NaN(), -1e30),
              "0 -9223372036854775808");
    EXPECT_EQ(makeString("%@", "%i"), "%i");
    EXPECT_EQ(makeString("%99999999999999999999i", 1).size(), 4096U);
}

}  // namespace
}  // namespace reelvane
