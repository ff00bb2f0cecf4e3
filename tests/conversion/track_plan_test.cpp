#include "conversion/track_plan.h"

#include <algorithm>
#include <gmock/gmock.h>

#include "conversion/command_builder.h"
#include "conversion/stream_plan.h"
#include "support/localization.h"
#include "support/strings.h"
#include "tests/fakes/audio_tracks.h"

namespace reelvane {
namespace {

std::string lines(const CommandInput& input) {
    std::string text;
    for (const auto& track :
         trackPlan(kUntranslated, input.file, input.audioTrackIndex, input.settings)) {
        text += trackLine(track) + "\n";
    }
    return text;
}

/// What the argument list makes of a sound track, in the plan's words.
std::string soundIn(const std::vector<std::string>& arguments, const char* codec,
                    const char* channels, const char* bitrate) {
    const auto after = [&](std::string_view option) {
        return *std::next(std::ranges::find(arguments, option));
    };
    if (after(codec) == "copy") return "copied";
    return (after(codec) == "aac" ? "AAC " : "AC-3 ") +
           std::string(after(channels) == "2" ? "stereo " : "5.1 ") + after(bitrate);
}

void expectAgreement(const CommandInput& input) {
    const auto arguments = buildArguments(input);
    SCOPED_TRACE(Fennimar::joined(arguments, " ") + "\n" + lines(input));
    const auto has = [&](const char* option) { return std::ranges::count(arguments, option) > 0; };
    std::vector<std::string> sounds;
    if (has("-acodec")) sounds.push_back(soundIn(arguments, "-acodec", "-ac", "-b:a"));
    if (has("-ar")) sounds.back() += ", 48 kHz";
    if (has("-filter_complex")) sounds.back() += ", volume 150 %";
    if (has("-c:a:1")) sounds.push_back(soundIn(arguments, "-c:a:1", "-ac:2", "-b:a:1"));

    std::vector<std::string> maps;
    std::vector<std::string> told;
    for (const auto& track :
         trackPlan(kUntranslated, input.file, input.audioTrackIndex, input.settings)) {
        if (track.fate == TrackOutcome::Fate::LeftOut) continue;
        const bool sound = track.kind == TrackOutcome::Kind::Audio;
        const bool filtered = sound && told.empty() && has("-filter_complex");
        const auto number = std::to_string(Fennimar::leadingInteger(track.track.substr(1)));
        const bool added = track.fate == TrackOutcome::Fate::Added;
        maps.push_back(filtered ? "[out]" : added ? "1:0" : "0:" + number);
        if (sound) told.emplace_back(Fennimar::partBefore(track.outcome, " as "));
    }
    EXPECT_EQ(told, sounds);
    std::vector<std::string> mapped;
    for (std::size_t i = 0; i + 1 < arguments.size(); ++i) {
        if (arguments[i] == "-map") mapped.push_back(arguments[i + 1]);
    }
    EXPECT_THAT(maps, testing::UnorderedElementsAreArray(mapped));
}

TEST(StreamPlan, TheOutputsTracksAreKnownInTheirOrder) {
    using Kind = OutputTrack::Kind;
    const MKVFileInfo movie{
        .audioTrackInformation = {audioTrack("#1: ger (dts) [5.1]"), audioTrack("#2: und (aac)")},
        .subtitleTrackIDs = {4, 5},
        .forcedSubtitleTrackIDs = {4},
        .subtitleLanguages = {"eng", "und"},
        .trackTitles = {{0, "Film"}, {2, "Commentary"}},
        .subtitleFileURL = "/movies/Film.Forced.srt"};
    const StreamPlan plan{.mainAudio = {{.entry = 1, .volume = 1.5}},
                          .surround = {{.entry = 0}},
                          .subtitles = {4, 5},
                          .externalSubtitle = true};
    EXPECT_THAT(
        outputTracks(plan, movie),
        testing::ElementsAre(
            OutputTrack{.stream = 0, .title = "Film"},
            OutputTrack{.kind = Kind::Audio, .stream = 2, .title = "Commentary"},
            OutputTrack{.kind = Kind::Audio, .stream = 1, .language = "ger"},
            OutputTrack{.kind = Kind::Subtitle, .forced = true},
            OutputTrack{.kind = Kind::Subtitle, .stream = 5},
            OutputTrack{.kind = Kind::Subtitle, .stream = 4, .language = "eng", .forced = true}));
}

TEST(TrackPlan, AgreesWithTheCommandLine) {
    const std::vector<std::vector<AudioTrack>> movies = {
        {},
        {audioTrack("#1: eng (ac3) [5.1]", 48000), audioTrack("#2: ger (dts)", 96000)},
        {audioTrack("#1: eng (dts) [5.1]"), audioTrack("#2: eng (aac)"),
         audioTrack("#3: eng (ac3) [5.1]")},
        {audioTrack("#1: unk (mp3)", 96000), audioTrack("#2: unk (dts) [5.1]"),
         audioTrack("#3: ger (vorbis)")}};
    for (unsigned choice = 0; choice < 3U << 5U; ++choice) {
        const auto flag = [&](unsigned bit) { return (choice >> bit & 1U) != 0; };
        CommandInput input{.settings = {.audioVolume = flag(0) ? 150.F : 100.F,
                                        .includeSurroundTrack = flag(1),
                                        .includeSurroundTrackTranscoded = flag(2),
                                        .disableBuiltinSubtitles = flag(3)}};
        input.settings.audio.conversionPreset = conversionPresetOf(static_cast<int>(choice >> 5U));
        input.file.subtitleTrackIDs = {4, 5};
        if (flag(4)) input.file.subtitleFileURL = "/f/Film.srt";
        for (const auto& audio : movies) {
            input.file.audioTrackInformation = audio;
            for (std::size_t i = 0; i < std::max<std::size_t>(audio.size(), 1); ++i) {
                input.audioTrackIndex = i;
                expectAgreement(input);
            }
        }
    }
}

TEST(TrackPlan, LeavesOutWhatIsNotKnown) {
    CommandInput input{.settings = {.audioVolume = 150, .disableBuiltinSubtitles = false}};
    input.file = {.audioTrackInformation = {audioTrack("#1: eng (dts) [5.1]", 96000),
                                            audioTrack("#3: ger (ac3)")},
                  .subtitleTrackIDs = {4, 5},
                  .forcedSubtitleTrackIDs = {4},
                  .subtitleLanguages = {"ger", "und"},
                  .subtitleFileURL = "/f/Film.\xFF.srt",
                  .videoCodec = "h264",
                  .resolution = "1920x1080",
                  .subtitleCount = 4};
    EXPECT_EQ(lines(input),
              "#0 h264 1920x1080: copied\n#1 eng dts 5.1 → AAC stereo 128k, 48 kHz, volume 150 %\n"
              "#1 again → AC-3 5.1 448k\n#3 ger ac3: left out, only the chosen sound is taken\n#4 "
              "ger forced subtitle: text track\n"
              "#5 subtitle: text track\n2 subtitles: left out, no text that ffmpeg can read\n"
              "Film.\uFFFD.srt: added as a text track\n");
    const auto leftOut = [&input] {
        return leftOutText(kUntranslated,
                           trackPlan(kUntranslated, input.file, input.audioTrackIndex, {}));
    };
    EXPECT_EQ(leftOut(), "1 audio, 4 subtitle tracks left out");
    input = {.audioTrackIndex = 1};
    EXPECT_EQ(leftOut(), "");
    input.file.audioTrackInformation = {audioTrack("#1: eng (ac3) [5.1]"),
                                        audioTrack("#2: eng (aac)"), audioTrack("#3: unk ()")};
    EXPECT_EQ(lines(input),
              "#0 video: copied\n#2 eng aac: copied\n#1 eng ac3 5.1: copied as a second track\n"
              "#3 audio: left out, only the chosen sound is taken\n");
    input = {.file = {.subtitleTrackIDs = {1}, .subtitleFileURL = "/f/a.srt"}};
    EXPECT_EQ(lines(input),
              "#0 video: copied\n#1 subtitle: left out, the movie has no sound\n"
              "a.srt: left out, the movie has no sound\n");
}

}  // namespace
}  // namespace reelvane
