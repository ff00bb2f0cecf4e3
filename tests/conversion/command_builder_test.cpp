#include "conversion/command_builder.h"

#include <functional>
#include <gtest/gtest.h>

#include "conversion/subtitle_arguments.h"
#include "support/strings.h"

namespace reelvane {
namespace {

CommandInput movie(std::vector<AudioEntry> audio) {
    CommandInput input;
    input.file.fileURL = "IN";
    input.file.destinationURL = "OUT";
    input.file.videoTrackID = 0;
    input.file.videoCodec = "h264";
    input.file.audioTrackInformation = std::move(audio);
    input.progressFile = "PROG";
    return input;
}

std::string commandLine(const CommandInput& input) {
    return Fennimar::joined(buildArguments(input), " ");
}

TEST(CommandBuilder, CompatiblePresetKeepsTheSurroundTrackBesideTheStereoOne) {
    EXPECT_EQ(commandLine(movie({{"#1: eng (ac3) [5.1]", 48000}})),
              "-fix_sub_duration -i IN -stats -map 0:0 -map 0:1 -map 0:1 -scodec mov_text -vcodec "
              "copy -acodec aac -ac 2 -b:a 128k -c:a:1 copy -progress PROG -loglevel warning -y "
              "OUT");
}

TEST(CommandBuilder, FastPresetRepairsCopiedAAC) {
    auto input = movie({{"#1: eng (aac)", 48000}});
    input.settings.audio.conversionPreset = 1;
    input.needsFixup = true;
    EXPECT_EQ(commandLine(input),
              "-fix_sub_duration -i IN -stats -map 0:0 -map 0:1 -absf aac_adtstoasc -scodec "
              "mov_text -vcodec copy -acodec copy -progress PROG -loglevel warning -y OUT");
}

TEST(CommandBuilder, CustomPresetWithFilterRateAndBothKindsOfSubtitles) {
    auto input = movie({{"#1: eng (dts) [5.1]", 96000}});
    input.settings.audio.conversionPreset = 2;
    input.settings.audioVolume = 150;
    input.settings.disableBuiltinSubtitles = false;
    input.settings.externalSubtitleEncoding = 8;
    input.file.subtitleTrackIDs = {2, 3};
    input.file.subtitleFileURL = "SUB";
    EXPECT_EQ(commandLine(input),
              "-fix_sub_duration -i IN -sub_charenc CP1252 -i SUB -stats -map 0:0 -map [out] -map "
              "1:0 -map 0:3 -map 0:2 -scodec mov_text -vcodec copy -acodec ac3 -filter_complex "
              "[0:1]volume=1.50[out] -ar 48000 -ac 6 -b:a 448k -progress PROG -loglevel warning -y "
              "OUT");
}

TEST(CommandBuilder, WithoutAudioOnlyTheVideoIsTaken) {
    auto input = movie({});
    input.file.subtitleFileURL = "SUB";
    input.settings.produceStreamableFiles = true;
    EXPECT_EQ(commandLine(input),
              "-i IN -stats -map 0:0 -scodec mov_text -vcodec copy -progress PROG -loglevel "
              "warning -y -movflags faststart OUT");
}

TEST(CommandBuilder, ThingsThatChangeOnePlace) {
    const struct {
        const char* what;
        std::vector<AudioEntry> audio;
        std::function<void(CommandInput&)> change;
        const char* there;     // empty: nothing is looked for
        const char* notThere;  // empty: nothing is ruled out
    } rows[] = {
        {"99 per cent",
         {{"#1: eng (mp3)", 0}},
         [](auto& i) { i.settings.audioVolume = 99; },
         " -map 0:1 ",
         "volume="},
        {"101 per cent",
         {{"#1: eng (mp3)", 0}},
         [](auto& i) { i.settings.audioVolume = 101; },
         " -map 0:1 ",
         "volume="},
        {"98.9 per cent",
         {{"#1: eng (mp3)", 0}},
         [](auto& i) { i.settings.audioVolume = 98.9F; },
         "-map [out] ",
         " -map 0:1 "},
        {"101.5 per cent",
         {{"#1: eng (mp3)", 0}},
         [](auto& i) { i.settings.audioVolume = 101.5F; },
         "[0:1]volume=1.0",
         ""},
        {"50 per cent",
         {{"#1: eng (mp3)", 0}},
         [](auto& i) { i.settings.audioVolume = 50; },
         "[0:1]volume=0.50[out]",
         ""},
        {"48000 Hz", {{"#1: eng (mp3)", 48000}}, [](auto&) {}, "", "-ar"},
        {"48001 Hz", {{"#1: eng (mp3)", 48001}}, [](auto&) {}, "-acodec aac -ar 48000 -ac 2", ""},
        {"copied, so untouched",
         {{"#1: eng (aac)", 96000}},
         [](auto& i) { i.settings.audioVolume = 50; },
         "-acodec copy -progress",
         "volume"},
        {"stereo AC-3",
         {{"#1: eng (mp3)", 0}},
         [](auto& i) { i.settings.audio.conversionPreset = 1; },
         "-acodec ac3 -ac 2 -b:a 192k -progress",
         ""},
        {"bitrates outside their lists",
         {{"#1: eng (dts) [5.1]", 0}},
         [](auto& i) { i.settings.aacBitrate = 4, i.settings.ac3SurroundBitrate = -1; },
         "-ac 2 -b:a 128k -c:a:1 ac3 -ac:2 6 -b:a:1 448k -progress",
         ""},
        {"fast preset adds no track",
         {{"#1: eng (ac3) [5.1]", 0}},
         [](auto& i) { i.settings.audio.conversionPreset = 1; },
         "",
         "-c:a:1"},
        {"custom preset adds no track",
         {{"#1: eng (ac3) [5.1]", 0}},
         [](auto& i) { i.settings.audio.conversionPreset = 2; },
         "",
         "-c:a:1"},
        {"no second track wanted",
         {{"#1: eng (ac3) [5.1]", 0}},
         [](auto& i) { i.settings.includeSurroundTrack = false; },
         "",
         "-c:a:1"},
        {"surround elsewhere: same language, AC-3 first",
         {{"#1: eng (mp3)", 0},
          {"#2: ger (ac3) [5.1]", 0},
          {"#3: eng (dts) [5.1]", 0},
          {"#4: eng (ac3) [5.1]", 0},
          {"#5: eng (ac3) [5.1]", 0}},
         [](auto&) {},
         "-map 0:1 -map 0:4 -scodec",
         ""},
        {"surround in another language only",
         {{"#1: eng (mp3)", 0}, {"#2: ger (ac3) [5.1]", 0}},
         [](auto&) {},
         "",
         "-c:a:1"},
        {"DTS may be copied",
         {{"#1: eng (dts) [5.1]", 0}},
         [](auto& i) { i.settings.includeSurroundTrackTranscoded = false; },
         "-b:a 128k -c:a:1 copy -progress",
         "-ac:2"},
        {"subtitle maps follow the second track",
         {{"#1: eng (ac3) [5.1]", 0}},
         [](auto& i) { i.settings.disableBuiltinSubtitles = false, i.file.subtitleTrackIDs = {2}; },
         "-map 0:1 -map 0:1 -map 0:2 -scodec",
         ""},
        {"UTF-16 is passed as UTF-8",
         {{"#1: eng (aac)", 0}},
         [](auto& i) { i.settings.externalSubtitleEncoding = 3, i.file.subtitleFileURL = "S"; },
         "-i IN -sub_charenc UTF-8 -i S -stats",
         ""},
        {"last encoding",
         {{"#1: eng (aac)", 0}},
         [](auto& i) { i.settings.externalSubtitleEncoding = 38, i.file.subtitleFileURL = "S"; },
         "-sub_charenc ISO-8859-16 ",
         ""},
        {"encoding outside the list",
         {{"#1: eng (aac)", 0}},
         [](auto& i) { i.settings.externalSubtitleEncoding = 39, i.file.subtitleFileURL = "S"; },
         "-i IN -i S -stats",
         ""},
        {"no correction of durations",
         {{"#1: eng (aac)", 0}},
         [](auto& i) { i.settings.fixSubtitleDuration = false; },
         "",
         "-fix_sub_duration"},
    };
    for (const auto& row : rows) {
        auto input = movie(row.audio);
        row.change(input);
        const auto line = commandLine(input);
        EXPECT_TRUE(Fennimar::contains(line, row.there) || *row.there == 0) << row.what << line;
        EXPECT_FALSE(*row.notThere != 0 && Fennimar::contains(line, row.notThere))
            << row.what << line;
    }
}

TEST(CommandBuilder, ContainerIsNamedWhereTheExtensionWouldMislead) {
    const struct {
        const char* output;
        const char* video;
        const char* audio;
        int preset;
        const char* end;
    } rows[] = {
        {"o.m4v", "h264", "aac", 1, "-y o.m4v"},
        {"o.m4v", "mpeg4", "ac3", 1, "-y o.m4v"},
        {"o.m4v", "av1", "aac", 1, "-y -f mp4 o.m4v"},
        {"o.M4V", "hevc", "aac", 1, "-y -tag:v hvc1 -f mp4 o.M4V"},
        {"o.mp4", "hevc", "aac", 1, "-y -tag:v hvc1 o.mp4"},
        {"o.mp4", "av1", "dts", 2, "-y o.mp4"},
        {"o.m4v", "h264", "dts", 2, "-y -f mp4 o.m4v"},  // copied by the custom preset
        {"o.m4v", "h264", "dts", 1, "-y o.m4v"},         // transcoded
        {"o.m4v", "h264", "dts", 0, "-y -f mp4 o.m4v"},  // copied as the second track
        {"o.m4v", "hevc", "", 0, "-y -tag:v hvc1 -f mp4 o.m4v"},
    };
    for (const auto& row : rows) {
        auto input = movie({});
        if (*row.audio != 0) {
            input.file.audioTrackInformation = {{"#1: eng (" + std::string(row.audio) + ") [5.1]"}};
        }
        input.file.destinationURL = row.output;
        input.file.videoCodec = row.video;
        input.settings.audio.conversionPreset = row.preset;
        input.settings.audio.customDTS51Handling = AudioMethodCopy;
        input.settings.includeSurroundTrackTranscoded = false;
        EXPECT_TRUE(commandLine(input).ends_with(row.end)) << commandLine(input);
        input.settings.produceStreamableFiles = true;
        EXPECT_TRUE(
            commandLine(input).ends_with(" -movflags faststart " + std::string(row.output)));
    }
}

TEST(SubtitleDurations, AreLeftAloneWhereThePacketsCarryThem) {
    MKVFileInfo file{.subtitleTrackIDs = {2}, .demuxer = "matroska,webm"};
    ConversionSettings settings{.disableBuiltinSubtitles = false};
    EXPECT_FALSE(withWholeSubtitles(file, settings).fixSubtitleDuration);
    file.demuxer = "mov,mp4,m4a,3gp,3g2,mj2";
    EXPECT_FALSE(withWholeSubtitles(file, settings).fixSubtitleDuration);
    file.demuxer = "mpegts";
    EXPECT_TRUE(withWholeSubtitles(file, settings).fixSubtitleDuration);
    file.demuxer = "matroska,webm";
    settings.disableBuiltinSubtitles = true;
    EXPECT_TRUE(withWholeSubtitles(file, settings).fixSubtitleDuration);
}

}  // namespace
}  // namespace reelvane
