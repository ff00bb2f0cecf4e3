#include "conversion/track_plan.h"

#include <algorithm>
#include <gmock/gmock.h>

#include "conversion/command_builder.h"
#include "conversion/mapped_streams.h"
#include "support/strings.h"

namespace reelvane {
namespace {

using Fate = TrackOutcome::Fate;
using testing::ElementsAre;

std::vector<TrackOutcome> planOf(const CommandInput& input) {
    return trackPlan(input.file, input.audioTrackIndex, input.settings);
}

std::vector<std::string> lines(const CommandInput& input) {
    std::vector<std::string> texts;
    for (const auto& track : planOf(input)) texts.push_back(trackLine(track));
    return texts;
}

/// The plan and the command, both told as what each kept audio track becomes and what is mapped.
void expectAgreement(const CommandInput& input) {
    const auto arguments = buildArguments(input);
    SCOPED_TRACE(Fennimar::joined(arguments, " "));
    const auto valueOf = [&](std::string_view option) {
        const auto found = std::ranges::find(arguments, option);
        return found == arguments.end() ? "" : *std::next(found);
    };
    const auto filter = valueOf("-filter_complex");
    auto mapped = mappedStreams(arguments);
    for (auto& stream : mapped) {
        if (stream == "[out]") stream = Fennimar::partBefore(filter, "]").substr(1);
    }
    const auto format = [&](const char* codec, const char* channels, const char* bitrate) {
        if (valueOf(codec) == "copy") return std::string("copied");
        return (valueOf(codec) == "aac" ? "AAC " : "AC-3 ") +
               std::string(valueOf(channels) == "2" ? "stereo " : "5.1 ") + valueOf(bitrate);
    };
    std::vector<std::string> formats;
    if (!valueOf("-acodec").empty()) {
        formats.push_back(format("-acodec", "-ac", "-b:a") +
                          (valueOf("-ar").empty() ? "" : ", 48 kHz") +
                          (filter.empty() ? "" : ", volume 150 %"));
    }
    if (!valueOf("-c:a:1").empty()) formats.push_back(format("-c:a:1", "-ac:2", "-b:a:1"));

    std::vector<std::string> kept;
    std::vector<std::string> keptFormats;
    for (const auto& track : planOf(input)) {
        if (track.fate == Fate::LeftOut) continue;
        const auto number = Fennimar::leadingInteger(track.track.substr(1));
        kept.push_back(track.fate == Fate::Added ? "1:0" : "0:" + std::to_string(number));
        if (track.kind != TrackOutcome::Kind::Audio) continue;
        keptFormats.emplace_back(Fennimar::partBefore(track.outcome, " as "));
    }
    EXPECT_EQ(keptFormats, formats);
    EXPECT_THAT(kept, testing::UnorderedElementsAreArray(mapped));
    kept.resize(1 + formats.size());  // text tracks are mapped in another order
    mapped.resize(kept.size());
    EXPECT_EQ(kept, mapped);
}

TEST(TrackPlan, AgreesWithTheCommandLine) {
    const std::vector<std::vector<AudioEntry>> movies = {
        {},
        {{"#1: eng (ac3) [5.1]", 48000}, {"#2: ger (dts)", 96000}},
        {{"#1: eng (dts) [5.1]"}, {"#2: eng (aac)"}, {"#3: eng (ac3) [5.1]"}},
        {{"#1: unk (mp3)", 96000}, {"#2: unk (dts) [5.1]"}, {"#3: ger (vorbis)"}}};
    for (unsigned choice = 0; choice < 3U << 6U; ++choice) {
        const auto flag = [&](unsigned bit) { return (choice >> bit & 1U) != 0; };
        CommandInput input{.settings = {.aacBitrate = 3,
                                        .audioVolume = flag(0) ? 150.F : 100.F,
                                        .includeSurroundTrack = flag(1),
                                        .includeSurroundTrackTranscoded = flag(2),
                                        .disableBuiltinSubtitles = flag(3)}};
        input.settings.audio = {.conversionPreset = static_cast<int>(choice >> 6U),
                                .ac3Downmix = flag(4)};
        input.file.videoTrackID = 7;
        input.file.subtitleTrackIDs = {4, 5};
        if (flag(5)) input.file.subtitleFileURL = "/f/Film.srt";
        for (const auto& audio : movies) {
            input.file.audioTrackInformation = audio;
            for (input.audioTrackIndex = 0; input.audioTrackIndex <= 2; ++input.audioTrackIndex) {
                if (audio.empty() || input.audioTrackIndex < audio.size()) expectAgreement(input);
            }
        }
    }
}

TEST(TrackPlan, LeavesOutWhatIsNotKnown) {
    CommandInput input{.settings = {.audioVolume = 150, .disableBuiltinSubtitles = false}};
    input.file = {.audioTrackInformation = {{"#1: eng (dts) [5.1]", 96000}, {"#3: ger (ac3)"}},
                  .subtitleTrackIDs = {4, 5},
                  .forcedSubtitleTrackIDs = {4},
                  .subtitleLanguages = {"ger", "und"},
                  .videoTrackID = 0,
                  .subtitleFileURL = "/f/Film.\xFF.srt",
                  .videoCodec = "h264",
                  .resolution = "1920x1080",
                  .subtitleCount = 4};
    EXPECT_THAT(
        lines(input),
        ElementsAre("#0 h264 1920x1080: copied",
                    "#1 eng dts 5.1 → AAC stereo 128k, 48 kHz, volume 150 %",
                    "#1 again → AC-3 5.1 448k", "#3 ger ac3: left out",
                    "#4 ger forced subtitle: text track", "#5 subtitle: text track",
                    "2 subtitles: left out, not text", "Film.\uFFFD.srt: added as a text track"));
    input.settings = {};
    input.file = {
        .audioTrackInformation = {{"#1: eng (ac3) [5.1]"}, {"#2: eng (aac)"}, {"#3: unk ()"}},
        .subtitleTrackIDs = {4}};
    EXPECT_THAT(lines(input), ElementsAre("#0 video: copied", "#1 eng ac3 5.1 → AAC stereo 128k",
                                          "#1 again, copied as AC-3 5.1", "#2 eng aac: left out",
                                          "#3 audio: left out", "#4 subtitle: left out"));
    input.audioTrackIndex = 1;
    EXPECT_THAT(lines(input), ElementsAre("#0 video: copied", "#2 eng aac: copied",
                                          "#1 eng ac3 5.1: copied as a second track",
                                          "#3 audio: left out", "#4 subtitle: left out"));
    input.file = {.subtitleTrackIDs = {1}, .subtitleFileURL = "/f/a.srt", .subtitleCount = 2};
    EXPECT_THAT(lines(input), ElementsAre("#0 video: copied", "#1 subtitle: left out",
                                          "1 subtitle: left out, not text", "a.srt: left out"));
}

}  // namespace
}  // namespace reelvane
