#include "app/file_sorting.h"

#include <gmock/gmock.h>

#include "app/subtitle_pairing.h"
#include "support/paths.h"
#include "tests/fakes/temporary_folder.h"

namespace reelvane {
namespace {

using testing::ElementsAre;
using Paths = std::vector<std::filesystem::path>;

TEST(FileSorting, TellsMoviesAndTextSubtitlesApart) {
    TemporaryFolder folder;
    const auto pictures = folder.write("p.sub", std::string_view("\x00\x00\x01\xBA rest", 9));
    const auto text = folder.write("t.SUB", "{1}{2}Hi");
    const auto sorted = sortFiles(Paths{"/a.MKV", "/missing.sub", pictures, "/b.srt", "/c.txt",
                                        "/noext", "/d.ts", text, "/.mkv", "/e.smi"},
                                  Fennimar::readInt);
    EXPECT_THAT(sorted.movies, ElementsAre("/d.ts", "/a.MKV"));
    EXPECT_THAT(sorted.subtitles, ElementsAre("/b.srt", "/e.smi", "/missing.sub", text));
}

TEST(SubtitlePairing, TakesTheFirstNameThatBeginsWithTheMoviesAndKeepsIt) {
    SubtitlePairing pairing;
    for (const auto* const file : {"/v/Film.en.srt", "/v/Film.de.ass", "/v/Filn.srt", "/v/G.srt"})
        pairing.add(file);
    for (const auto* const movie : {"/v/Film.mkv", "/v/Film.mp4", "/v/Fil.mkv"})
        EXPECT_EQ(pairing.subtitleFor(movie), "/v/Film.de.ass") << movie;
    for (const auto* const movie : {"/v/Film 2.mkv", "/v/H.mkv", "/w/Film.mkv"})
        EXPECT_EQ(pairing.subtitleFor(movie), std::nullopt) << movie;
    pairing.add("/v/Film.srt");
    EXPECT_EQ(pairing.subtitleFor("/v/Film.mkv"), "/v/Film.srt");
}

}  // namespace
}  // namespace reelvane
