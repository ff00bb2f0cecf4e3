#include "app/opened_files.h"

#include <gmock/gmock.h>
#include <string>

#include "support/paths.h"
#include "tests/fakes/temporary_folder.h"

namespace reelvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Names = std::vector<std::string>;

TEST(FileSorting, TellsMoviesAndTextSubtitlesApart) {
    TemporaryFolder folder;
    const auto pictures = folder.write("p.sub", std::string_view("\x00\x00\x01\xBA rest", 9));
    const auto text = folder.write("t.SUB", "{1}{2}Hi");
    const auto sorted = sortFiles(
        std::vector<std::filesystem::path>{"/a.MKV", "/missing.sub", pictures, "/b.srt", "/c.txt",
                                           "/noext", "/d.ts", text, "/.mkv", "/e.smi"},
        Fennimar::readInt);
    EXPECT_THAT(sorted.movies, ElementsAre("/d.ts", "/a.MKV"));
    EXPECT_THAT(sorted.subtitles, ElementsAre("/b.srt", "/e.smi", "/missing.sub", text));
}

TEST(OpenedFiles, AFolderIsSearchedAsAPersonWouldOrderItAndWithinBounds) {
    EXPECT_TRUE(naturallyBefore("a/Show 2", "a/Show 10"));
    EXPECT_TRUE(naturallyBefore("Ab 02x", "ab 2y"));
    EXPECT_TRUE(naturallyBefore("a/z", "b"));
    EXPECT_FALSE(naturallyBefore("1", "01") == naturallyBefore("01", "1"));
    const TemporaryFolder folder;
    for (const auto* const name : {"1/2/deep.mkv", "a.mkv"}) folder.write(name);
    EXPECT_EQ(searchFolder(folder.path(), {}).files.size(), 2U);
    for (const auto& bounds : {FolderSearchBounds{.depth = 2}, FolderSearchBounds{.entries = 2}}) {
        EXPECT_FALSE(searchFolder(folder.path(), {}, bounds).isWhole);
    }
    EXPECT_FALSE(searchFolder("/proc/no/such/folder", {}).problem.empty());
}

/// The best file of each movie, in the order of the movies; "-" for none.
Names paired(const Names& movies, const Names& subtitles) {
    SubtitlePairing pairing;
    for (const auto& name : movies) pairing.addMovie("/v/" + name);
    for (const auto& name : subtitles) pairing.addSubtitle("/v/" + name);
    Names found;
    for (const auto& name : movies) {
        const auto files = pairing.subtitlesFor("/v/" + name);
        if (!files.empty()) pairing.pair("/v/" + name, files.front());
        found.push_back(files.empty() ? "-" : files.front().filename().native());
    }
    return found;
}

TEST(SubtitlePairing, TakesTheClosestNameAndGivesItToOneMovieOnly) {
    struct Case {
        Names movies, subtitles, expected;
    };
    const std::vector<Case> cases{
        {{"Film.mkv", "Film 2.mkv"},
         {"Film.en.srt", "Film 2.en.srt"},
         {"Film.en.srt", "Film 2.en.srt"}},
        {{"Film.mkv", "Film 2.mkv"}, {"Film 2.srt", "Film 2.en.srt"}, {"-", "Film 2.srt"}},
        {{"Film.mkv"}, {"Film 2.srt", "Film.de.ass", "Film.en.srt", "Film.srt"}, {"Film.srt"}},
        {{"Film.mkv"}, {"Film-en.srt", "Film.forced.srt", "Film.en.srt"}, {"Film.en.srt"}},
        {{"Film.mkv"}, {"Film 2-en.srt"}, {"Film 2-en.srt"}},
        {{"Film 2.mkv", "Fil.mkv", "H.mkv"}, {"Film.en.srt"}, {"-", "-", "-"}},
        {{"Episode 1.mkv", "Episode 10.mkv"}, {"Episode 10.srt"}, {"-", "Episode 10.srt"}},
        {{"Episode 1.mkv"}, {"Episode 10.srt", "Episode 1é.srt"}, {"-"}},
        {{"A.mkv", "A.b.mkv"}, {"A.b c.srt"}, {"-", "A.b c.srt"}},
        {{"Film.mkv", "Film.mp4"}, {"Film.srt"}, {"Film.srt", "-"}},
        {{"Film.mkv"}, {"Film.srt", "Film.ass"}, {"Film.ass"}}};
    for (const auto& [movies, subtitles, expected] : cases) {
        EXPECT_EQ(paired(movies, subtitles), expected) << testing::PrintToString(subtitles);
    }
}

TEST(SubtitlePairing, GivesAMovieThatComesAgainItsFileAgain) {
    SubtitlePairing pairing;
    pairing.addMovie("/v/Film.mkv");
    pairing.addSubtitle("/v/Film.srt");
    pairing.pair("/v/Film.mkv", "/v/Film.srt");
    EXPECT_THAT(pairing.subtitlesFor("/v/Film.mkv"), ElementsAre("/v/Film.srt"));
    EXPECT_THAT(pairing.subtitlesFor("/w/Film.mkv"), IsEmpty());
    pairing.addSubtitle("/v/Film.en.srt");
    pairing.pair("/v/Film.mkv", "/v/Film.en.srt");
    EXPECT_THAT(pairing.subtitlesFor("/v/Film.mp4"), ElementsAre("/v/Film.srt"));
}

}  // namespace
}  // namespace reelvane
