#include "conversion/cue_count.h"

#include <gmock/gmock.h>

#include "support/localization.h"
#include "tests/fakes/fake_process_launcher.h"

namespace reelvane {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::string_view kHeader =
    "#software: Lavf59.27.100\n#tb 0: 1/1000\n#media_type 0: subtitle\n#codec_id 0: subrip\n";

MKVFileInfo record() {
    return {.subtitleTrackIDs = {2, 3},
            .fileName = "a.mkv",
            .fileURL = "/v/a.mkv",
            .subtitleFileURL = "/v/a.srt",
            .subtitleFormat = {.demuxer = "srt"}};
}

TEST(CueCount, AsksForTheMappedTextTracksAlone) {
    using Kind = OutputTrack::Kind;
    const auto streams = textStreams({{.stream = 0},
                                      {.kind = Kind::Audio, .stream = 1},
                                      {.kind = Kind::Subtitle},
                                      {.kind = Kind::Subtitle, .stream = 3},
                                      {.kind = Kind::Subtitle, .stream = 2}});
    EXPECT_THAT(streams, ElementsAre("1:0", "0:3", "0:2"));
    EXPECT_THAT(
        cueListArguments(record(), streams),
        ElementsAre("-loglevel", "quiet", "-i", "/v/a.mkv", "-f", "srt", "-i", "/v/a.srt", "-map",
                    "1:0", "-map", "0:3", "-map", "0:2", "-c", "copy", "-f", "framecrc", "-"));
    EXPECT_THAT(cueListArguments(record(), {"1:0"}),
                ElementsAre("-loglevel", "quiet", "-f", "srt", "-i", "/v/a.srt", "-map", "0:0",
                            "-c", "copy", "-f", "framecrc", "-"));
    EXPECT_EQ(parseCueList("0, 0, 0, 1, 1, 0x0\n", {"1:0"}), std::nullopt) << "no unit";
    EXPECT_EQ(parseCueList("Killed\n", {"1:0"}), std::nullopt);
}

TEST(CueCount, KnowsWhatShowsNothing) {
    const std::vector<std::pair<std::string, std::string>> blank{
        {"subrip", ""},
        {"subrip", "<i> </i>\r\n"},
        {"subrip", "{\\an8}"},
        {"sami", "&nbsp;"},
        {"ass", "0,0,Default,,0,0,0,,{\\fad(1,2)}\\N"},
        {"mov_text", "\0\1 "s}};
    for (const auto& [codec, cue] : blank) EXPECT_TRUE(isBlankCue(codec, cue)) << cue;
    const std::vector<std::pair<std::string, std::string>> shown{
        {"subrip", "<i>a</i>"},
        {"subrip", "a < b"},
        {"subrip", "<3"},
        {"ass", "0,0,Default,,0,0,0,,a, b"},
        {"mov_text", "\0\1a"s}};
    for (const auto& [codec, cue] : shown) EXPECT_FALSE(isBlankCue(codec, cue)) << cue;
}

TEST(CueCount, SaysWhichCuesDidNotArrive) {
    struct Case {
        std::string lines;  // begin, duration, bytes
        std::string content;
        std::uint64_t arrived;
        std::vector<std::string> notes;
    };
    const std::vector<Case> cases{
        {"0, 0, 0, 900, 2, 0x1\n0, 1000, 1000, 900, 2, 0x1\n", "", 2, {}},
        {"0, 0, 0, 900, 2, 0x1\n0, 1000, 1000, 900, 2, 0x1\n",
         "abcd",
         1,
         {"1 of 2 subtitles of a.srt are missing"}},
        {"0, 0, 0, 900, 2, 0x1\n0, 1000, 1000, 900, 3, 0x1\n", "ab{}\n", 1, {}},
        {"0, 0, 0, 900, 2, 0x1\n0, 800, 800, 900, 2, 0x1\n0, 800, 800, 900, 2, 0x1\n",
         "",
         3,
         {"1 of 3 subtitles of a.srt are not seen", "1 of 3 subtitles of a.srt end early"}},
        {"Error\n", "", 2, {"can't be told whether all subtitles of a.mkv"}}};
    for (const auto& [lines, content, arrived, expected] : cases) {
        FakeProcessLauncher launcher;
        launcher.answer = [&](const ProcessRequest& request) {
            const bool data = request.arguments.at(request.arguments.size() - 2) == "data";
            return FinishedProcess{.output = data ? content : std::string(kHeader) + lines};
        };
        const auto notes =
            cueNotes(kUntranslated, record(), {{}, {.kind = OutputTrack::Kind::Subtitle}},
                     {arrived}, {.launcher = &launcher, .ffmpeg = "ffmpeg"});
        ASSERT_EQ(notes.size(), expected.size()) << lines;
        for (std::size_t i = 0; i < notes.size(); ++i) {
            EXPECT_THAT(notes[i].text, HasSubstr(expected[i]));
        }
    }
    FakeProcessLauncher launcher;
    EXPECT_THAT(cueNotes(kUntranslated, record(), {{.stream = 0}}, {}, {.launcher = &launcher}),
                IsEmpty());
    EXPECT_THAT(launcher.runs, IsEmpty()) << "no text, no run";
}

}  // namespace
}  // namespace reelvane
