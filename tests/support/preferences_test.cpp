#include "support/preferences.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/preference_text.h"
#include "support/strings.h"
#include "tests/fakes/fake_platform.h"

namespace reelvane {
namespace {

using testing::ElementsAre;
using testing::Pair;

TEST(PreferenceText, BringsEveryTextListAndDictionaryBackByteForByte) {
    using Texts = std::vector<std::string>;
    const Texts awkward{"",
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
    PreferenceDictionary dictionary;
    for (const auto& text : awkward) {
        const auto stored = preferenceText(text);
        EXPECT_EQ(stringFromPreferenceText(stored), text) << stored;
        EXPECT_EQ(listFromPreferenceText(stored), std::nullopt) << stored;
        EXPECT_EQ(dictionaryFromPreferenceText(stored), std::nullopt) << stored;
        EXPECT_TRUE(Fennimar::isValidUtf8(stored)) << stored;
        EXPECT_EQ(Fennimar::trimmedOfWhitespaceAndNewlines(stored), stored);
        EXPECT_EQ(Fennimar::lines(stored).size(), 1U) << stored;
        EXPECT_EQ(listFromPreferenceText(preferenceText(Texts{text})), Texts{text});
        dictionary[text] = text + "=";
    }
    for (const auto& list : {awkward, Texts{}}) {
        EXPECT_EQ(listFromPreferenceText(preferenceText(list)), list);
        EXPECT_EQ(stringFromPreferenceText(preferenceText(list)), std::nullopt);
    }
    for (const auto& each : {dictionary, PreferenceDictionary{}}) {
        EXPECT_EQ(dictionaryFromPreferenceText(preferenceText(each)), each);
    }
}

struct PreferencesTest : testing::Test {
    [[nodiscard]] int number() const { return preferences.defaultInt("K"); }

    FakePreferencesStore store;
    Preferences preferences{store};
};

TEST_F(PreferencesTest, AnswerThisRunThenTheStoreThenTheDefault) {
    EXPECT_EQ(number(), 0);
    EXPECT_EQ(preferences.defaultObject("K"), std::nullopt);
    preferences.registerDefaults({{"K", "1"}});
    EXPECT_EQ(number(), 1);
    preferences.setDefaultInt("K", 2);
    EXPECT_EQ(number(), 2);
    preferences.setForThisRun("K", "3");
    EXPECT_EQ(number(), 3);
    preferences.setDefaultInt("K", 7);
    preferences.addToInt("K", 3);
    EXPECT_EQ(number(), 10);
    EXPECT_TRUE(preferences.edit([](PreferenceValues& values) {
        EXPECT_EQ(values["K"], "2");
        values["L"] = values["M"] = "9";
    }));
    preferences.forgetTogether({"K", "L", "None"});
    EXPECT_EQ(number(), 1);
    EXPECT_THAT(store.values, ElementsAre(Pair("K", "2"), Pair("M", "9")));
}

TEST_F(PreferencesTest, WriteWhatIsChangedLaterInOneStepBeforeAnybodyReadsIt) {
    std::vector<std::function<void()>> background;
    preferences.setBackground([&](auto work) { background.push_back(std::move(work)); });
    preferences.addToInt("K", 1);
    preferences.addToInt("K", 2);
    preferences.addToInt("L", 5);
    EXPECT_TRUE(store.values.empty());
    ASSERT_EQ(background.size(), 1U);
    EXPECT_EQ(preferences.defaultInt("M"), 0);
    EXPECT_TRUE(store.values.empty());
    EXPECT_EQ(number(), 3);
    EXPECT_THAT(store.values, ElementsAre(Pair("K", "3"), Pair("L", "5")));
    preferences.addToInt("K", 1);
    ASSERT_EQ(background.size(), 2U);
    background.back()();
    EXPECT_EQ(store.values["K"], "4");
    preferences.addToInt("K", 1);
    preferences.setDefaultInt("K", 10);  // after what was added before it
    preferences.addToInt("K", 1);
    preferences.changeLater("L", [](auto) { return std::nullopt; });
    preferences.synchronize();
    EXPECT_THAT(store.values, ElementsAre(Pair("K", "11")));
}

}  // namespace
}  // namespace reelvane
