#include "support/strings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

namespace Fennimar {
namespace {

using testing::ElementsAre;

TEST(Lines, EndAtEveryNewlineCharacterAndKeepEmptyOnes) {
    EXPECT_THAT(lines("a\r\nb\n\nc"), ElementsAre("a", "", "b", "", "c"));
    EXPECT_THAT(lines("a\u0085b\u2028c\u2029d\ve\ff"), ElementsAre("a", "b", "c", "d", "e", "f"));
    EXPECT_THAT(lines(""), ElementsAre(""));
    EXPECT_THAT(lines("\xC3\n\x85"), ElementsAre("\xC3", "\x85"));  // not UTF-8
}

TEST(Trimming, KnowsUnicodeSpacesAndStopsAtOddBytes) {
    EXPECT_EQ(trimmedOfWhitespaceAndNewlines("\u3000\t a\u00A0b \u2003\r\n"), "a\u00A0b");
    EXPECT_EQ(trimmedOfWhitespaceAndNewlines(" \n\u00A0 "), "");
    EXPECT_EQ(trimmedOfWhitespaceAndNewlines(" \xA0 "), "\xA0");  // a lone continuation byte
    EXPECT_EQ(trimmedOf("--a-b--", "-"), "a-b");
    EXPECT_EQ(trimmedTo("[1280x720],", "0123456789"), "1280x720");
}

TEST(Characters, AreCodePointsAndOddBytesCountAsOne) {
    EXPECT_EQ(characterCount("aé€😀\xE2\x82z\xFF"), 8U);
    EXPECT_EQ(clamp("é€😀x", 3), "é€😀");
    EXPECT_EQ(clamp("ab", 3) + clamp("ab", 0), "ab");
    EXPECT_EQ(escaped("mailto:a@b.c?subject=A b&body=100%\n#é"),
              "mailto:a@b.c?subject=A%20b&body=100%25%0A%23%C3%A9");
}

TEST(Utf8, RefusesWhatTheStandardRefuses) {
    for (const std::string_view good : {"", "plain", "é€😀", "\u07FF\uFFFF\U0010FFFF"}) {
        EXPECT_TRUE(isValidUtf8(good)) << good;
    }
    for (const auto& [bytes, repaired] : {std::pair("\xC0\x80", "\uFFFD\uFFFD"),
                                          {"\xE0\x80\x80", "\uFFFD\uFFFD\uFFFD"},
                                          {"\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},
                                          {"a\xE2\x82", "a\uFFFD\uFFFD"},
                                          {"\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},
                                          {"\xFFz", "\uFFFDz"}}) {
        EXPECT_FALSE(isValidUtf8(bytes)) << repaired;
        EXPECT_EQ(validUtf8(bytes), repaired);
    }
}

TEST(LeadingNumbers, ReadWhatTheTextBeginsWith) {
    for (const auto& [text, integer, real] : {std::tuple(" 42 kb/s", 42, 42.0),
                                              {"-7.5x", -7, -7.5},
                                              {"+3", 3, 3},
                                              {"+-3", 0, 0},
                                              {"", 0, 0},
                                              {"x1", 0, 0},
                                              {"inf", 0, 0},
                                              {"-nan", 0, 0},
                                              {".5", 0, 0.5},
                                              {"99999999999", 2147483647, 99999999999.0},
                                              {"1e-999", 1, 0},
                                              {"-99999999999", -2147483647 - 1, -99999999999.0}}) {
        EXPECT_EQ(leadingInteger(text), integer) << text;
        EXPECT_DOUBLE_EQ(leadingDouble(text), real) << text;
    }
    EXPECT_GT(leadingDouble("1e999"), 1e300);
}

}  // namespace
}  // namespace Fennimar
