#include "media/languages.h"

#include <fstream>
#include <gmock/gmock.h>
#include <map>
#include <nlohmann/json.hpp>

namespace reelvane {
namespace {

using testing::ElementsAre;

// Debian's list gives the bibliographic code where it differs. Like the table it has "bh" (since
// withdrawn) as the collective "bih", and no "sh" (deprecated, and without a code in ISO 639-2).
TEST(Languages, TheTableIsTheStandards) {
    std::ifstream file("/usr/share/iso-codes/json/iso_639-2.json");
    if (!file) GTEST_SKIP() << "the package iso-codes is not installed";
    std::map<std::string, std::string, std::less<>> expected;
    const auto standard = nlohmann::json::parse(file);
    for (const auto& language : standard.at("639-2")) {
        const std::string terminological = language["alpha_3"];
        expected[language.value("alpha_2", "")] = language.value("bibliographic", terminological);
    }
    expected.erase("");
    EXPECT_THAT(languageTable(), testing::ElementsAreArray(expected));
    EXPECT_THAT(preferredLanguages3Letter({"de", "en-US", "zh", "de", "zz", "DE"}),
                ElementsAre("ger", "en-US", "chi", "ger", "zz", "DE"));
}

TEST(Languages, BestLanguagePrefersTheLanguageThenTheCodec) {
    using Texts = std::vector<std::string>;
    const std::vector<AudioEntry> three{
        {"#1: ger (ac3) [5.1]"}, {"#2: eng (dts)"}, {"#3: eng (aac)"}};
    const std::vector<AudioEntry> two{
        {"#1: deu (he-aac)"}, {"#2: eng (dts) [5.1]"}, {"#3: eng (ac3)"}};
    for (const auto& [entries, languages, defaultAudio, best] :
         std::vector<std::tuple<std::vector<AudioEntry>, Texts, int, std::optional<std::size_t>>>{
             {three, {"eng", "ger"}, 0, 2},
             {three, {"spa", "ger", "eng"}, 0, 0},
             {three, {"eng"}, 3, 0},
             {three, {"ger"}, 2, 2},
             {three, {"ger"}, 8, 2},
             {three, {"ger"}, 1, 0},
             {three, {"ger"}, 9, 0},
             {two, {"eng"}, 0, 2},
             {two, {"ger", "en-US"}, 0, 2},
             {{{"#1: jpn (dts)"}, {"#2"}}, {}, 0, 0},
             {{}, {"eng"}, 0, std::nullopt}}) {
        EXPECT_EQ(bestLanguage(entries, defaultAudio, languages), best)
            << defaultAudio << testing::PrintToString(languages);
    }
    EXPECT_EQ(streamIndexOf("#12: eng (ac3) [5.1]"), 12);
}

}  // namespace
}  // namespace reelvane
