#include "support/preferences.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

#include "support/preference_text.h"
#include "support/strings.h"
#include "tests/fakes/fake_platform.h"

namespace reelvane {
namespace {

using testing::ElementsAre;
using testing::Pair;

const std::vector<std::string>& awkwardTexts() {
    static const std::vector<std::string> texts{"",
                                                " ",
                                                "  two  ",
                                                "a;b",
                                                "k=v",
                                                "line\nbreak\r\n\t",
                                                "()",
                                                "(a;)",
                                                "{}",
                                                "{k=v;}",
                                                "back\\slash\\",
                                                "\\n",
                                                "\\x41",
                                                "é€😀 #[x]",
                                                "\xFF\xFE/\xC3",
                                                std::string("\0\x01\x7F", 3)};
    return texts;
}

TEST(PreferenceText, BringsEveryTextBackByteForByte) {
    for (const auto& text : awkwardTexts()) {
        const auto stored = preferenceText(text);
        EXPECT_EQ(stringFromPreferenceText(stored), text) << stored;
        EXPECT_EQ(listFromPreferenceText(stored), std::nullopt) << stored;
        EXPECT_EQ(dictionaryFromPreferenceText(stored), std::nullopt) << stored;
        EXPECT_TRUE(Fennimar::isValidUtf8(stored)) << stored;
        EXPECT_EQ(Fennimar::trimmedOfWhitespaceAndNewlines(stored), stored);
        EXPECT_EQ(Fennimar::lines(stored).size(), 1U) << stored;
    }
}

TEST(PreferenceText, BringsEveryListAndDictionaryBack) {
    PreferenceDictionary dictionary;
    for (const auto& text : awkwardTexts()) {
        const std::vector<std::string> single{text};
        EXPECT_EQ(listFromPreferenceText(preferenceText(single)), single);
        dictionary[text] = text + "=";
    }
    EXPECT_EQ(listFromPreferenceText(preferenceText(awkwardTexts())), awkwardTexts());
    EXPECT_EQ(dictionaryFromPreferenceText(preferenceText(dictionary)), dictionary);
    const auto nothing = std::vector<std::string>{};
    EXPECT_EQ(listFromPreferenceText(preferenceText(nothing)), nothing);
    EXPECT_EQ(dictionaryFromPreferenceText(preferenceText(PreferenceDictionary{})),
              PreferenceDictionary{});
    EXPECT_EQ(stringFromPreferenceText(preferenceText(awkwardTexts())), std::nullopt);
}

TEST(PreferenceText, IsWhatAPersonWouldType) {
    EXPECT_EQ(preferenceText(std::vector<std::string>{"/Films", "a;b"}), "(/Films;a\\;b;)");
    EXPECT_EQ(preferenceText(PreferenceDictionary{{"k", "v"}}), "{k=v;}");
    EXPECT_EQ(preferenceText("date: x = (y); z"), "date: x = (y); z");
    EXPECT_EQ(preferenceText(1.1F), "1.1");
    EXPECT_THAT(*listFromPreferenceText("(a;b)"), ElementsAre("a", "b"));
    EXPECT_THAT(*dictionaryFromPreferenceText("{a;b=1}"),
                ElementsAre(Pair("a", ""), Pair("b", "1")));
    EXPECT_EQ(stringFromPreferenceText("C:\\dir\\"), "C:\\dir\\");
    EXPECT_EQ(stringFromPreferenceText("\\x4"), "\\x4");
}

struct Fixture {
    FakePreferencesStore store;
    Preferences preferences{store};
};

TEST(Preferences, AnswerThisRunThenTheStoreThenTheDefault) {
    Fixture f;
    EXPECT_EQ(f.preferences.defaultInt("K"), 0);
    EXPECT_EQ(f.preferences.defaultObject("K"), std::nullopt);
    f.preferences.registerDefaults({{"K", "1"}});
    EXPECT_EQ(f.preferences.defaultInt("K"), 1);
    f.preferences.setDefaultInt("K", 2);
    EXPECT_EQ(f.preferences.defaultInt("K"), 2);
    f.preferences.setForThisRun("K", "3");
    EXPECT_EQ(f.preferences.defaultInt("K"), 3);
    EXPECT_THAT(f.store.values, ElementsAre(Pair("K", "2")));
}

TEST(Preferences, NeverStoreWhatIsSetForThisRun) {
    Fixture f;
    f.preferences.registerDefaults({{"K", "5"}});
    f.preferences.setForThisRun("K", "1");
    f.preferences.setDefaultInt("K", 7);
    f.preferences.addToInt("K", 3);
    EXPECT_EQ(f.preferences.defaultInt("K"), 10);
    f.preferences.setTogether({{"K", "8"}, {"L", "9"}});
    EXPECT_EQ(f.preferences.defaultInt("K"), 8);
    f.preferences.setDefaultObject("K", std::nullopt);
    EXPECT_EQ(f.preferences.defaultInt("K"), 5);
    f.preferences.setDefaultInt("K", 6);
    EXPECT_EQ(f.preferences.defaultInt("K"), 6);
    EXPECT_THAT(f.store.values, ElementsAre(Pair("L", "9")));
}

TEST(Preferences, CountOnTopOfWhatIsStoredAtThatMoment) {
    Fixture f;
    f.preferences.registerDefaults({{"K", "10"}});
    f.preferences.addToInt("K", 1);
    EXPECT_EQ(f.store.values["K"], "11");
    f.store.values["K"] = "20";  // another process
    f.preferences.addToInt("K", -1);
    EXPECT_EQ(f.store.values["K"], "19");
    f.preferences.setDefaultInt("K", std::numeric_limits<int>::max());
    f.preferences.addToInt("K", 1);
    EXPECT_EQ(f.preferences.defaultInt("K"), std::numeric_limits<int>::max());
}

}  // namespace
}  // namespace reelvane
