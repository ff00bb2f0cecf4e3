#include "conversion/command_builder.h"

#include <gmock/gmock.h>

#include "support/strings.h"
#include "tests/fakes/audio_tracks.h"

namespace reelvane {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

CommandInput movie(std::vector<AudioTrack> audio, const ConversionSettings& settings = {}) {
    CommandInput input{.settings = settings, .progressFile = "PROG"};
    input.file.fileURL = "IN";
    input.file.destinationURL = "OUT";
    input.file.videoTrackID = 0;
    input.file.videoCodec = "h264";
    input.file.audioTrackInformation = std::move(audio);
    input.file.subtitleTrackIDs = {2, 3};
    return input;
}

std::string commandLine(const CommandInput& input) {
    return Fennimar::joined(buildArguments(input), " ");
}

TEST(CommandBuilder, WholeCommands) {
    EXPECT_EQ(commandLine(movie({audioTrack("#1: eng (ac3) [5.1]", 48000)})),
              "-fix_sub_duration -i IN -stats -map 0:0 -map 0:1 -map 0:1 -scodec mov_text -vcodec "
              "copy -acodec aac -ac 2 -b:a 128k -c:a:1 copy -progress PROG -loglevel warning -y "
              "OUT");
    auto repaired = movie({audioTrack("#1: eng (aac)", 48000)},
                          {.audio = {.conversionPreset = ConversionPreset::Fast}});
    repaired.needsFixup = true;
    EXPECT_EQ(commandLine(repaired),
              "-fix_sub_duration -i IN -stats -map 0:0 -map 0:1 -absf aac_adtstoasc -scodec "
              "mov_text -vcodec copy -acodec copy -progress PROG -loglevel warning -y OUT");
    auto custom = movie({audioTrack("#1: eng (dts) [5.1]", 96000)},
                        {.audio = {.conversionPreset = ConversionPreset::Custom},
                         .audioVolume = 150,
                         .disableBuiltinSubtitles = false,
                         .externalSubtitleEncoding = 8});
    custom.file.subtitleFileURL = "SUB";
    EXPECT_EQ(commandLine(custom),
              "-fix_sub_duration -i IN -sub_charenc CP1252 -i SUB -stats -map 0:0 -map [out] -map "
              "1:0 -map 0:3 -map 0:2 -scodec mov_text -vcodec copy -acodec ac3 -filter_complex "
              "[0:1]volume=1.50[out] -ar 48000 -ac 6 -b:a 448k -progress PROG -loglevel warning -y "
              "OUT");
    custom.file.audioTrackInformation = {audioTrack("#1: eng (none)", 48000)};
    EXPECT_EQ(commandLine(custom),
              "-i IN -stats -map 0:0 -scodec mov_text -vcodec copy -progress PROG -loglevel "
              "warning -y OUT");
}

TEST(CommandBuilder, ThingsThatChangeOnePlace) {
    using Audio = std::vector<AudioTrack>;
    const Audio mp3{audioTrack("#1: eng (mp3)", 48000)};
    const Audio aac{audioTrack("#1: eng (aac)", 96000)};
    const Audio ac3{audioTrack("#1: eng (ac3) [5.1]")};
    const Audio dts{audioTrack("#1: eng (dts) [5.1]")};
    const Audio many{audioTrack("#1: eng (aac)"), audioTrack("#2: ger (ac3) [5.1]"),
                     audioTrack("#3: eng (dts) [5.1]"), audioTrack("#4: eng (ac3) [5.1]")};
    struct Row {
        Audio audio{};
        ConversionSettings settings{};
        const char* there = "";
        const char* notThere = "?";
    };
    const std::vector<Row> rows = {
        {mp3, {.audioVolume = 99}, " -map 0:1 ", "volume="},
        {mp3, {.audioVolume = 101.5F}, "[0:1]volume=1.0"},
        {mp3, {.audioVolume = 50}, "[0:1]volume=0.50[out]", "-ar"},
        {aac, {.audioVolume = 50}, "-acodec copy -progress", "volume"},
        {{audioTrack("#1: eng (mp3)", 48001)}, {}, "-acodec aac -ar 48000 -ac 2"},
        {mp3, {.audio = {.conversionPreset = ConversionPreset::Fast}}, "ac3 -ac 2 -b:a 192k -prog"},
        {dts,
         {.aacBitrate = 4, .ac3SurroundBitrate = -1},
         "128k -c:a:1 ac3 -ac:2 6 -b:a:1 448k -p"},
        {dts, {.includeSurroundTrackTranscoded = false}, "-c:a:1 copy"},
        {ac3, {.audio = {.conversionPreset = ConversionPreset::Fast}}, "", "-c:a:1"},
        {ac3, {.includeSurroundTrack = false}, "", "-c:a:1"},
        {many, {.disableBuiltinSubtitles = false}, "-map 0:1 -map 0:4 -map 0:3 -map 0:2 -scodec"},
        {{many[0], many[1]}, {}, "", "-c:a:1"},
        {aac, {.fixSubtitleDuration = false}, "", "-fix_sub_duration"},
    };
    for (const auto& row : rows) {
        const auto line = commandLine(movie(row.audio, row.settings));
        EXPECT_THAT(line, HasSubstr(row.there));
        EXPECT_THAT(line, Not(HasSubstr(row.notThere)));
    }
}

TEST(CommandBuilder, ContainerIsNamedWhereTheExtensionWouldMislead) {
    struct Row {
        const char *output, *video, *audio;
        int preset;
        const char* end;
    };
    const std::vector<Row> rows = {
        {"o.m4v", "h264", "aac", 1, "-y o.m4v"},
        {"o.m4v", "av1", "aac", 1, "-y -f mp4 o.m4v"},
        {"o.M4V", "hevc", "aac", 1, "-y -tag:v hvc1 -f mp4 o.M4V"},
        {"o.mp4", "hevc", "dts", 2, "-y -tag:v hvc1 o.mp4"},
        {"o.m4v", "h264", "dts", 2, "-y -f mp4 o.m4v"},  // copied by the custom preset
        {"o.m4v", "h264", "dts", 1, "-y o.m4v"},         // transcoded
        {"o.m4v", "h264", "dts", 0, "-y -f mp4 o.m4v"},  // copied as the second track
    };
    for (const auto& row : rows) {
        auto input = movie({audioTrack("#1: eng (" + std::string(row.audio) + ") [5.1]")});
        input.file.destinationURL = row.output;
        input.file.videoCodec = row.video;
        input.settings.audio.conversionPreset = conversionPresetOf(row.preset);
        input.settings.audio.customDTS51Handling = AudioMethodCopy;
        input.settings.includeSurroundTrackTranscoded = false;
        EXPECT_THAT(commandLine(input), EndsWith(row.end));
        input.file.namesColour = true;
        const bool named =
            Fennimar::contains(row.end, "-f mp4") || !Fennimar::contains(row.end, "4v");
        EXPECT_EQ(commandLine(input).ends_with(row.end), named) << "the other muxer drops colours";
        input.file.audioTrackInformation.clear();
        input.settings.produceStreamableFiles = true;
        EXPECT_THAT(commandLine(input),
                    EndsWith(std::string(" -movflags faststart ") + row.output));
        input.file.dolbyVisionProfile = 8;
        const auto* muxer = Fennimar::contains(row.output, "mp4") ? "" : "-f mp4 ";
        EXPECT_THAT(commandLine(input),
                    HasSubstr("-strict unofficial " + std::string(muxer) + "-mov"));
    }
}

}  // namespace
}  // namespace reelvane
