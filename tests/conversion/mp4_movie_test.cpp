#include <fstream>
#include <gmock/gmock.h>
#include <iterator>

#include "conversion/output_check.h"
#include "conversion/output_proof.h"
#include "conversion/output_tracks.h"
#include "conversion/stream_plan.h"
#include "mp4/mp4_reader.h"
#include "support/localization.h"
#include "tests/fakes/audio_tracks.h"
#include "tests/fakes/small_mp4.h"
#include "tests/fakes/temporary_folder.h"

namespace reelvane {
namespace {

using testing::HasSubstr;
using testing::SizeIs;

class Mp4MovieTest : public testing::Test {
protected:
    [[nodiscard]] Mp4Reading read(const std::string& bytes) const {
        // Written anew: truncating a file makes some file systems wait for the disk.
        std::filesystem::remove(folder.path() / "movie.mp4");
        return readMp4(folder.write("movie.mp4", bytes));
    }
    TemporaryFolder folder;
};

TEST_F(Mp4MovieTest, ReadsTracksWithNarrowAndWideFields) {
    SmallMp4 source;
    source.tracks.push_back({.handler = "sbtl", .codec = "tx3g", .flags = 2});
    for (const bool wide : {false, true}) {
        source.wide = wide;
        const auto movie = read(source.bytes()).movie;
        ASSERT_TRUE(movie) << wide;
        EXPECT_EQ(movie->seconds, 12);
        EXPECT_EQ(movie->mediaBytes, 18);
        ASSERT_THAT(movie->tracks, SizeIs(3));
        EXPECT_EQ(movie->tracks[1].codec, "mp4a");
        EXPECT_EQ(movie->tracks[1].language, "eng");
        EXPECT_EQ(movie->tracks[1].kind, Mp4TrackKind::Audio);
        EXPECT_TRUE(movie->tracks[1].enabled);
        EXPECT_FALSE(movie->tracks[2].enabled);
        EXPECT_TRUE(movie->tracks[2].displayFlagsOffset);
    }
}

TEST_F(Mp4MovieTest, IsBrokenWhereverItIsCut) {
    for (const bool wide : {false, true}) {
        SmallMp4 source;
        source.wide = wide;
        const auto bytes = source.bytes();
        for (std::size_t size = 0; size < bytes.size(); ++size) {
            const auto reading = read(bytes.substr(0, size));
            EXPECT_FALSE(reading.movie) << size << " of " << bytes.size();
            EXPECT_FALSE(reading.problem.empty()) << size;
        }
    }
}

TEST_F(Mp4MovieTest, NeverTrustsANumber) {
    SmallMp4 source;
    source.fragments = 2;
    const auto bytes = source.bytes();
    for (std::size_t position = 0; position < bytes.size(); ++position) {
        for (const char value : {'\0', '\1', '\x7F', '\xFF'}) {
            auto hostile = bytes;
            hostile[position] = value;
            const auto reading = read(hostile);  // the sanitizers judge the reading itself
            EXPECT_NE(reading.movie.has_value(), !reading.problem.empty()) << position;
        }
    }
}

TEST_F(Mp4MovieTest, NamesWhatIsWrong) {
    SmallMp4 noTrack;
    noTrack.tracks.clear();
    SmallMp4 empty;
    for (auto& track : empty.tracks) track.sample.clear();
    auto short_ = SmallMp4().bytes();
    short_.replace(short_.size() - 20, 20, SmallMp4().box("mdat", "sampl"));
    const SmallMp4 plain;
    const auto indexLost = plain.box("ftyp", "isom") + plain.box("mdat", "sample");
    const std::vector<std::pair<std::string, std::string>> cases{
        {"", "is no MP4 file"},
        {"a text that is no movie at all", "is no MP4 file"},
        {indexLost, "has no index"},
        {noTrack.bytes() + plain.box("mdat", "x"), "has no track"},
        {empty.bytes(), "has no media data"},
        {short_, "outside its media data"},
        {plain.bytes() + std::string("\0\0\0\2rest", 8), "bytes that are no box"},
    };
    for (const auto& [content, problem] : cases) {
        EXPECT_THAT(read(content).problem, HasSubstr(problem));
        EXPECT_FALSE(read(content).uncheckable) << problem;
    }
    const auto packed = plain.box("moov", plain.box("cmov", "")) + plain.box("mdat", "sample");
    EXPECT_TRUE(read(packed).uncheckable);
    const auto reference = plain.box("moov", plain.box("rmra", ""));
    EXPECT_TRUE(read(plain.box("ftyp", "qt  ") + reference).uncheckable);
    for (const auto& rest :
         {std::string(1, '\0'), std::string(8, '\0'), std::string("\n"), std::string("1234567")}) {
        EXPECT_TRUE(read(plain.bytes() + rest).movie) << rest.size();
    }
}

TEST(OutputProof, AsksForEveryTrackAndForTheWholeLength) {
    const Mp4Track video{.kind = Mp4TrackKind::Video, .codec = "avc1"};
    const Mp4Track chapters{.kind = Mp4TrackKind::Text, .codec = "text"};
    const Mp4Reading reading{.movie =
                                 Mp4Movie{.seconds = 97.9, .tracks = {video, video, chapters}}};
    EXPECT_EQ(proveOutput(reading, {.mappedStreams = 3}).problem, "has 2 of 3 tracks");
    const struct {
        int promised;
        bool endsEarly;
    } cases[] = {{0, false}, {97, false}, {99, false}, {100, true}, {190, true}};
    for (const auto& [promised, endsEarly] : cases) {
        const auto proof = proveOutput(reading, {.mappedStreams = 2, .runtimeSeconds = promised});
        EXPECT_EQ(proof.problem, "");
        EXPECT_EQ(proof.endsEarly, endsEarly) << promised;
    }
    Mp4Reading cut{.movie = Mp4Movie{.seconds = 100, .tracks = {video, chapters}}};
    cut.movie->tracks[0].seconds = 50;
    cut.movie->tracks[1].seconds = 100;
    EXPECT_TRUE(proveOutput(cut, {.runtimeSeconds = 100}).endsEarly) << "whatever chapters say";
    const Mp4Reading longMovie{.movie = Mp4Movie{.seconds = 9950, .tracks = {{}}}};
    EXPECT_FALSE(proveOutput(longMovie, {.mappedStreams = 1, .runtimeSeconds = 10000}).endsEarly);
    const struct {
        double picture;
        std::optional<Mp4Track> indexed;
        std::optional<int> promised;
        double missed;
    } pictures[] = {{98.5, {}, {}, 0},        {50, {}, {}, 100},
                    {50, {}, 51, 0},          {10, {}, 50, 50},
                    {10, {}, 999, 100},       {50, Mp4Track{.seconds = 50}, {}, 0},
                    {50, Mp4Track{}, {}, 100}};
    for (const auto& [picture, indexed, promised, missed] : pictures) {
        cut.movie->tracks = {video, {.kind = Mp4TrackKind::Audio, .seconds = 100}};
        cut.movie->tracks[0].seconds = picture;
        const auto proof =
            proveOutput(cut, {.sourcePicture = indexed, .promisedSeconds = promised});
        EXPECT_EQ(proof.missedPicture, missed) << picture << " of " << promised.value_or(0);
    }
    EXPECT_EQ(proofText(kUntranslated, proveOutput(longMovie, {}), 1430000000),
              "165m 50s, 1 track, 1.43 GB, verified");
}

TEST(OutputProof, MeasuresTheOutputByItsSource) {
    const struct {
        double promised, source, media;  // seconds; `media` with what is never played
        std::uint64_t pictures;
        const char* verdict;
    } cases[] = {{100, 100, 100, 2500, ""},     {201, 100, 100, 2500, "half"},
                 {97, 100, 100, 2500, "late"},  {100, 99, 99, 2500, "late"},
                 {100, 100, 100, 2499, "late"}, {100, 100, 100, 2600, "lost"},
                 {100, 100, 104, 2600, ""}};
    const Mp4Reading output{
        .movie = Mp4Movie{
            .tracks = {{.kind = Mp4TrackKind::Video, .seconds = 100, .sampleCount = 2500}}}};
    for (const auto& row : cases) {
        const auto proof = proveOutput(
            output,
            {.runtimeSeconds = static_cast<int>(row.promised),
             .sourcePicture = Mp4Track{
                 .seconds = row.source, .mediaSeconds = row.media, .sampleCount = row.pictures}});
        EXPECT_EQ(proof.isCutShort && !proof.problem.empty(), row.verdict == std::string("half"));
        EXPECT_EQ(proof.endsLate, row.verdict == std::string("late")) << row.promised;
        EXPECT_EQ(proof.lostPictures, row.verdict == std::string("lost") ? 100U : 0U);
    }
}

TEST_F(Mp4MovieTest, CountsThePartsThatAMovieIsPutTogetherFrom) {
    SmallMp4 source;
    EXPECT_EQ(partsOfMp4(folder.write("plain.mp4", source.bytes())), 0U);
    for (const bool wide : {false, true}) {
        source.wide = wide;
        source.tracks[1].edits = {-1, 0, 6300};
        EXPECT_EQ(partsOfMp4(folder.write("cut.mp4", source.bytes())), 2U) << wide;
        EXPECT_TRUE(readMp4(folder.path() / "cut.mp4").movie);
    }
}

TEST_F(Mp4MovieTest, AnEndThatTheSourceLeavesOutIsLeftOutOfThePicture) {
    const Mp4Track source{.seconds = 6.3, .mediaSeconds = 10, .edits = {.parts = 1}};
    for (const bool wide : {false, true}) {
        SmallMp4 made;  // 12 s
        made.wide = wide;
        made.tracks[0].edits = {0};
        const auto file = folder.write("trimmed.mp4", made.bytes());
        ASSERT_TRUE(applyPatches(file, trimPatches(*readMp4(file).movie, source)));
        const auto movie = readMp4(file).movie;
        ASSERT_TRUE(movie);
        EXPECT_EQ(movie->tracks[0].seconds, 6.3);
        EXPECT_EQ(movie->tracks[0].edits.lastDuration.value, 6300U);
        EXPECT_EQ(movie->seconds, 12) << "the sound was not trimmed";
        EXPECT_THAT(trimPatches(*movie, source), SizeIs(0));
        EXPECT_THAT(trimPatches(*movie, {.seconds = 6, .mediaSeconds = 6.2, .edits = {.parts = 1}}),
                    SizeIs(0));
        EXPECT_THAT(trimPatches(*movie, {.seconds = 6, .mediaSeconds = 10, .edits = {.parts = 2}}),
                    SizeIs(0));
    }
}

TEST_F(Mp4MovieTest, LanguagesArriveWhereMp4CanSayThem) {
    const std::vector<OutputTrack> planned{{}, {.language = "pt-BR"}, {.language = "klingon"}};
    EXPECT_THAT(lostLanguages(planned), testing::ElementsAre("klingon"));

    const auto file = folder.write("movie.mp4", SmallMp4().bytes());
    ASSERT_TRUE(applyPatches(file, languagePatches(*readMp4(file).movie, planned)));
    EXPECT_EQ(readMp4(file).movie->tracks.at(0).language, "eng");
    EXPECT_EQ(readMp4(file).movie->tracks.at(1).language, "por");
}

TEST_F(Mp4MovieTest, TitlesThatDidNotArriveAreNamed) {
    SmallMp4 source;
    source.tracks[0].title = "Film";
    const auto movie = read(source.bytes()).movie;
    ASSERT_TRUE(movie);
    EXPECT_THAT(lostTitles({{.title = "Film"}, {.title = "Commentary"}}, *movie),
                testing::ElementsAre("Commentary"));
}

TEST_F(Mp4MovieTest, TrackFlagsAreSetInPlaceOnce) {
    SmallMp4 source;
    source.tracks.push_back({.handler = "soun", .codec = "ac-3"});
    source.tracks.push_back({.handler = "sbtl", .codec = "tx3g"});
    source.tracks.push_back({.handler = "sbtl", .codec = "tx3g", .flags = 2});
    source.tracks.push_back({.handler = "text", .codec = "text", .flags = 0});  // chapters
    const auto file = folder.write("movie.mp4", source.bytes());

    const auto before = readMp4(file).movie;
    ASSERT_TRUE(before);
    ASSERT_TRUE(applyPatches(file, trackFlagPatches(*before, {1})));
    const auto after = readMp4(file).movie;
    ASSERT_TRUE(after);
    const auto& tracks = after->tracks;
    std::vector<std::pair<bool, std::uint32_t>> seen;
    for (const auto& track : tracks) seen.emplace_back(track.enabled, track.alternateGroup);
    EXPECT_THAT(seen, testing::ElementsAre(testing::Pair(true, 0), testing::Pair(true, 1),
                                           testing::Pair(false, 1), testing::Pair(false, 2),
                                           testing::Pair(true, 2), testing::Pair(false, 0)));
    EXPECT_EQ(tracks[3].displayFlags, 0);
    EXPECT_EQ(tracks[4].displayFlags, 0xC0000000);
    EXPECT_THAT(trackFlagPatches(*after, {1}), SizeIs(0));
    EXPECT_EQ(std::filesystem::file_size(file), source.bytes().size());
}

}  // namespace
}  // namespace reelvane
