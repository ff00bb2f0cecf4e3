#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "tests/end_to_end/media_facts.h"
#include "tests/end_to_end/movies.h"
#include "tests/end_to_end/sandbox.h"

namespace reelvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::TestWithParam;
using testing::ValuesIn;

namespace fs = std::filesystem;

/// One movie and its tracks after the conversion with preset 0, 1 and 2 ("" leaves that one out).
struct Row {
    std::string movie;
    std::array<std::string, 3> tracks{};
    std::vector<std::string> options{};
    std::string brand = "M4V";
    Picture picture = Picture::Packets;
    std::string cues{};
};

std::ostream& operator<<(std::ostream& stream, const Row& row) {
    return stream << row.movie;
}

const std::vector<Row> kRows = {
    {"aac.mkv", {"h264:avc1 aac:2:eng", "h264:avc1 aac:2:eng", "h264:avc1 aac:2:eng"}},
    {"ac3-51.mkv", {"h264:avc1 aac:2:eng ac3:6:eng", "h264:avc1 ac3:6:eng", "h264:avc1 ac3:6:eng"}},
    {"dts-51.mkv", {"h264:avc1 aac:2:ger ac3:6:ger", "h264:avc1 ac3:6:ger", "h264:avc1 ac3:6:ger"}},
    {"dts-51.mkv", {"", "", "h264:avc1 dts:6:ger"}, {"--set", "CustomDTS51Handling=3"}, "isom"},
    {"mp3.mkv", {"h264:avc1 aac:2:und", "h264:avc1 ac3:2:und", "h264:avc1 ac3:2:und"}},
    {"vorbis.mkv", {"h264:avc1 aac:2:und", "h264:avc1 ac3:2:und", "h264:avc1 ac3:2:und"}},
    {"silent.mkv", {"h264:avc1", "h264:avc1", "h264:avc1"}},
    {"two-languages.mkv", {"h264:avc1 aac:2:ger", "h264:avc1 ac3:2:ger", "h264:avc1 ac3:2:ger"}},
    {"two-languages.mkv", {"h264:avc1 aac:2:eng", "", ""}, {"--audio", "0"}},
    {"srt.mkv",
     {"h264:avc1 aac:2:und mov_text:ger", "", "h264:avc1 aac:2:und mov_text:ger"},
     {"--set", "DisableBuiltinSubtitles=0"},
     "M4V",
     Picture::Packets,
     std::string(kCues)},
    {"srt.mkv", {"", "h264:avc1 aac:2:und", ""}},
    {"ass.mkv",
     {"h264:avc1 aac:2:und mov_text:ger", "", ""},
     {"--set", "DisableBuiltinSubtitles=0"},
     "M4V",
     Picture::Packets,
     std::string(kCues)},
    {"hevc.mkv", {"hevc:hvc1 aac:2:und", "hevc:hvc1 aac:2:und", ""}, {}, "isom"},
    {"hdr10.mkv", {"", "hevc:hvc1:1000 aac:2:und", ""}, {}, "isom"},
    {"hdr10.mkv", {"", "hevc:hvc1:1000 aac:2:und", ""}, {"--set", "DefaultExtension=0"}, "isom"},
    {"av1.mkv", {"av1:av01 aac:2:und", "", ""}, {}, "isom"},
    {"av1.mkv", {"av1:av01 aac:2:und", "", ""}, {"--set", "DefaultExtension=0"}, "isom"},
    {"eac3.mkv", {"h264:avc1 aac:2:eng", "h264:avc1 ac3:2:eng", ""}},
    {"aac.mp4", {"h264:avc1 aac:2:und", "", ""}, {"--set", "ProduceStreamableFiles=1"}},
    {"aac.mp4", {"", "h264:avc1 aac:2:und", ""}, {"--set", "DefaultExtension=0"}, "isom"},
    {"aac.mov", {"h264:avc1 aac:2:und", "", ""}},
    {"aac.flv", {"h264:avc1 aac:2:und", "", ""}},
    {"aac.ts", {"h264:avc1 aac:2:und", "", ""}, {}, "M4V", Picture::Frames},
    {"ac3.ts", {"h264:avc1 aac:2:und", "h264:avc1 ac3:2:und", ""}, {}, "M4V", Picture::Frames},
    {"mpeg2.mpg", {"mpeg2video:mp4v aac:2:und", "mpeg2video:mp4v ac3:2:und", ""}, {}, "isom"},
};

class Conversion : public TestWithParam<Row> {
protected:
    static void check(const fs::path& output, const fs::path& source, const Row& row) {
        EXPECT_EQ(brandOf(output), row.brand);
        EXPECT_NEAR(durationOf(output), durationOf(source), 0.3);
        EXPECT_EQ(pictureHash(output, row.picture), pictureHash(source, row.picture));
        EXPECT_EQ(row.cues.empty() ? "" : cuesOf(output), row.cues);
    }
    static void convert(std::size_t preset, const Row& row) {
        SCOPED_TRACE("preset " + std::to_string(preset));
        const Sandbox sandbox;
        const auto source = movie(row.movie);
        auto options = row.options;
        options.insert(options.end(), {"--set", "ConversionPreset=" + std::to_string(preset)});
        const auto outcome = sandbox.convert(source, options);
        ASSERT_EQ(outcome.status, 0) << outcome.output;
        const auto codec = row.tracks.at(preset).substr(0, row.tracks.at(preset).find(':'));
        const auto warning = "(videocodec: " + codec + ") so the result may not be playable.";
        EXPECT_EQ(outcome.output.find(warning) == std::string::npos, codec == "h264") << codec;

        const bool mp4 = std::ranges::count(options, "DefaultExtension=0") == 1;
        const auto output = sandbox.out() / source.stem().concat(mp4 ? ".mp4" : ".m4v");
        ASSERT_THAT(sandbox.leftovers(), ElementsAre(output.filename().native()));
        EXPECT_EQ(tracksOf(output), row.tracks.at(preset));
        check(output, source, row);
        EXPECT_TRUE(fs::exists(source));
    }
};

TEST_P(Conversion, KeepsThePictureAndHasTheExpectedTracks) {
    for (std::size_t preset = 0; preset < GetParam().tracks.size(); ++preset) {
        if (!GetParam().tracks.at(preset).empty()) convert(preset, GetParam());
    }
}

std::string rowName(const testing::TestParamInfo<Row>& row) {
    auto name = std::to_string(row.index) + "_" + row.param.movie;
    std::replace_if(
        name.begin(), name.end(), [](char c) { return c == '.' || c == '-'; }, '_');
    return name;
}
INSTANTIATE_TEST_SUITE_P(Movies, Conversion, ValuesIn(kRows), rowName);

TEST(Conversion, SubtitleFileBesideTheMovieIsReadInItsEncoding) {
    const Sandbox sandbox;
    const auto film = sandbox.root() / "My Film (2019) 100% – ü.mkv";
    fs::copy_file(movie("aac.mkv"), film);
    auto text = subtitleFile();
    text.replace(text.find("üß"), 4, "\xFC\xDF");
    auto subtitles = film;
    std::ofstream(subtitles.replace_extension(".de.srt"), std::ios::binary) << text;

    const auto outcome =
        sandbox.convert(film, {"--set", "ExternalSubtitleEncoding=8", subtitles.native()});
    ASSERT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_EQ(cuesOf(sandbox.out() / film.filename().replace_extension(".m4v")), kCues);
}

/// A movie that cannot be converted, and what the user is told.
struct Refusal {
    std::string movie;
    std::string sentence;
};
std::ostream& operator<<(std::ostream& stream, const Refusal& refusal) {
    return stream << refusal.movie;
}
std::string refusalName(const testing::TestParamInfo<Refusal>& refusal) {
    return refusal.param.movie.substr(0, refusal.param.movie.find('.'));
}
class Refused : public TestWithParam<Refusal> {};

TEST_P(Refused, SaysWhyAndLeavesNothing) {
    const Sandbox sandbox;
    const auto outcome = sandbox.convert(movie(GetParam().movie));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output, HasSubstr(GetParam().sentence));
    EXPECT_THAT(sandbox.leftovers(), IsEmpty());
}
INSTANTIATE_TEST_SUITE_P(
    Movies, Refused,
    testing::Values(Refusal{"vp9.webm", "contains an invalid video codec (vp9)"},
                    Refusal{"msmpeg4v3.wmv", "contains an invalid video codec (msmpeg4v3)"},
                    Refusal{"wmv2.wmv", "a video track that can't be embedded into MP4s."},
                    Refusal{"theora.ogm", "a video track that can't be embedded into MP4s."}),
    refusalName);

TEST(Refused, PlaylistIsNoMovie) {
    const Sandbox sandbox;
    const auto playlist = sandbox.root() / "playlist.ts";
    std::ofstream(playlist) << "#EXTM3U\n#EXT-X-TARGETDURATION:3\n#EXTINF:3,\n"
                            << movie("ac3.ts").native() << "\n#EXT-X-ENDLIST\n";
    const auto outcome = sandbox.convert(playlist);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output, HasSubstr("doesn't seem to be a valid MKV"));
    EXPECT_THAT(sandbox.leftovers(), IsEmpty());
}

}  // namespace
}  // namespace reelvane
