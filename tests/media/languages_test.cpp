#include "media/languages.h"

#include <fstream>
#include <gmock/gmock.h>
#include <map>
#include <nlohmann/json.hpp>

#include "tests/fakes/audio_tracks.h"

namespace reelvane {
namespace {

using testing::ElementsAre;

// Debian's list gives the bibliographic code where it differs. Like the table it has "bh" (since
// withdrawn) as the collective "bih", and no "sh" (deprecated, and without a code in ISO 639-2).
TEST(Languages, TheTableIsTheStandards) {
    std::ifstream file("/usr/share/iso-codes/json/iso_639-2.json");
    ASSERT_TRUE(file) << "the package iso-codes is not installed";
    std::map<std::string, std::string, std::less<>> expected;
    const auto standard = nlohmann::json::parse(file);
    for (const auto& language : standard.at("639-2")) {
        const std::string terminological = language["alpha_3"];
        const auto code = language.value("bibliographic", terminological);
        expected[language.value("alpha_2", "")] = code;
        EXPECT_EQ(bibliographicCode(terminological), code);
        EXPECT_EQ(bibliographicCode(code), code);
    }
    expected.erase("");
    EXPECT_THAT(languageTable(), testing::ElementsAreArray(expected));
    EXPECT_THAT(preferredLanguages3Letter({"de", "en-US", "zh", "de", "zz", "DE", "nb", "nn"}),
                ElementsAre("ger", "en-US", "chi", "ger", "zz", "DE", "nob", "nor", "nno", "nor"));
    EXPECT_EQ(bibliographicCode("de-AT") + bibliographicCode("") + bibliographicCode("x-y"),
              "gerx-y");
}

TEST(Languages, BestLanguagePrefersTheLanguageThenTheCodec) {
    using Entries = std::vector<AudioTrack>;
    const auto best = [](const Entries& entries, const std::vector<std::string>& languages,
                         int choice = 0) { return bestLanguage(entries, choice, languages); };
    const Entries three{audioTrack("#1: ger (ac3) [5.1]"), audioTrack("#2: eng (dts)"),
                        audioTrack("#3: eng (aac)")};
    EXPECT_EQ(best(three, {"eng", "ger"}), 2);
    EXPECT_EQ(best(three, {"spa", "ger", "eng"}), 0);
    EXPECT_EQ(best(three, {"eng"}, 3), 0) << "always German";
    EXPECT_EQ(best(three, {"ger"}, 2), 2) << "always English";
    EXPECT_EQ(best(three, {"ger"}, 1), 0) << "no choice";
    EXPECT_EQ(best(three, {"ger"}, 9), 0) << "no choice";
    const Entries foreign{audioTrack("#1: jpn (he-aac)"), audioTrack("#2: eng (dts) [5.1]"),
                          audioTrack("#3: eng (ac3)")};
    EXPECT_EQ(best(foreign, {"ger", "en-US"}), 2);
    for (const std::string spelling : {"deu", "ger", "de", "de-DE"}) {
        EXPECT_EQ(
            best({audioTrack("#1: eng (aac)"), audioTrack("#2: " + spelling + " (dts)")}, {"ger"}),
            1);
    }
    EXPECT_EQ(best({audioTrack("#1: eng (none)"), audioTrack("#2: jpn (mp3)")}, {"eng"}), 1)
        << "cannot be read";
    EXPECT_EQ(best({audioTrack("#1: eng (none)")}, {"eng"}), 0);
    EXPECT_EQ(best({audioTrack("#1: jpn (dts)"), audioTrack("#2")}, {}), 0);
    EXPECT_EQ(best({}, {"eng"}), std::nullopt);
}

}  // namespace
}  // namespace reelvane
