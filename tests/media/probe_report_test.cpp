#include "media/probe_report.h"

#include <gmock/gmock.h>

#include "media/picture_choice.h"
#include "media/report_mark.h"
#include "media/report_outline.h"
#include "support/strings.h"

namespace reelvane {
namespace {

// What ffmpeg 5.1 prints, without its banner.
constexpr auto kMatroska = R"(Input #0, matroska,webm, from '/movies/full.mkv':
  Duration: 01:42:17.03, start: 0.000000, bitrate: 813 kb/s
  Stream #0:0: Video: h264 (High), yuv420p(progressive), 320x240 [SAR 1:1 DAR 4:3], 25 fps, 25 tbr, 1k tbn
  Stream #0:1(eng): Audio: ac3, 44100 Hz, 5.1(side), fltp, 448 kb/s (default)
    Metadata:
      title           : Director: a talk
                      : of two lines
      subtitle        : none
  Stream #0:2: Audio: aac (HE-AAC), 44100 Hz, stereo, fltp
  Stream #0:3(por): Audio: flac, 96000 Hz, 7.1(wide), s32
  Stream #0:4(eng): Subtitle: subrip (default)
  Stream #0:10: Subtitle: ass
  Stream #0:11: Subtitle: hdmv_pgs_subtitle
  Stream #0:12: Video: mjpeg (Baseline), yuvj420p(pc, bt470bg/unknown/unknown), 64x64 [SAR 1:1 DAR 1:1], 90k tbr, 90k tbn
    Metadata:
      mimetype        : image/jpeg
At least one output file must be specified
)";
constexpr auto kMp4 = R"(Input #0, mov,mp4,m4a,3gp,3g2,mj2, from '/movies/full.mp4':
  Duration: 00:00:01.05, start: 0.000000, bitrate: 806 kb/s
  Stream #0:0[0x1](und): Video: h264 (High) (avc1 / 0x31637661), yuv420p(progressive), 1920x1080 [SAR 1:1 DAR 16:9], 287 kb/s, 25 fps, 25 tbr, 16k tbn (default)
  Stream #0:1[0x2](ger): Audio: dts (ac-3 / 0x332D6361), 48000 Hz, 6.1, fltp, 448 kb/s (default)
  Stream #0:2[0x3]: Audio: none (mp4a / 0x6134706D)
  Stream #0:3[0x4](eng): Subtitle: mov_text (tx3g / 0x67337874), 0 kb/s (default)
  Stream #0:4[0x0]: Video: mjpeg (Baseline), yuvj420p(pc, bt470bg/unknown/unknown), 64x64 [SAR 1:1 DAR 1:1], 90k tbr, 90k tbn (attached pic)
)";

/// All that was read of the streams, as one line.
std::string streamsIn(std::string_view text) {
    const auto report = parseProbeReport(text, {});
    const auto& record = report.record;
    auto streams = std::to_string(record.videoTrackID.value_or(-1));
    for (const auto& each : report.videoStreams) {
        streams += " " + each.codec + (each.tenBit ? "!" : "");
    }
    streams += " " + record.resolution + " " + std::to_string(record.referenceFrames.value_or(-1));
    for (const auto& track : record.audioTrackInformation) {
        streams += " " + reelvane::text(track) + " at " + std::to_string(track.hz);
    }
    for (const auto id : record.subtitleTrackIDs) streams += " text " + std::to_string(id);
    for (const auto& [id, title] : record.trackTitles) {
        streams += " title " + std::to_string(id) + " " + title;
    }
    return streams + report.refusedVideoCodec.value_or("") + " " + record.demuxer + " " +
           record.informationString;
}

TEST(ProbeReport, ReadsStreams) {
    for (const auto& [text, streams] : std::vector<std::pair<std::string, std::string>>{
             {kMatroska,
              "0 h264 320x240 -1 #1: eng (ac3) [5.1] at 44100 #2: unk (aac) at 44100 #3: por "
              "(flac) at 96000 text 4 text 10 title 1 Director: a talk matroska,webm Duration: "
              "01:42:17  Bitrate: 813 kb/s  Resolution: 320x240  Audiotracks: 3 (3)"},
             {kMp4, "0 h264 1920x1080 -1 #1: ger (dts) [5.1] at 48000 #2: unk (none) at 0 text 3 "},
             {"  Stream #0:7[0x1e0]: Video: mpeg2video, 720x576 [SAR 64:45 DAR 16:9], max. 9 kb/s",
              "7 mpeg2video 720x576 -1 "},
             {"    Stream #0:7[0x100](ger): Video: h264 (High 10) ([27] / 0x001B), 4x3, |refs: 9|",
              "7 h264! 4x3 9 "},
             {"  Stream #0:7[0x2]: Video: none, none", "7 none  -1 "},
             {"  Stream #0:7: Video: h264 (avc1 / 0x31637661), none, 12x0, 0x5", "7 h264  -1 "},
             {"  Stream #0:0: Video: hevc, 1x1\r\n  Stream #0:1: Video: h264, 2x2\n"
              "  Stream #0:2: Video: png, 3x3\n    Metadata:\n      mime type: image/png\n"
              "      mimetype        : image/png",
              "1 hevc h264 2x2 -1 "},
             {"  Stream #0:0: Video: wmv3x, 1x1\n  Stream #0:1: Video: vp9 (0)\n"
              "  Stream #0:2: Audio: ",
              "0 wmv3x 1x1 -1vp9 "},
             // Words of other versions, and a stream that stands in a group and in two programs.
             {"  Stream group #0:0[0xc]: Tile Grid: hevc, 3x3 (default)\n"
              "    Stream #0:0(ssa): Subtitle: dvd_subtitle (dvd_subtitle), 3x3\n"
              "  Program 1 \n    Metadata:\n      title           : no stream's\n"
              "  Stream #0:1(eng): Subtitle: subrip (srt) (default)\n"
              "    Metadata:\n      title           : Main\n"
              "  Stream #0:2(eng): Audio: dts (dca) (DTS-HD MA), 48000 Hz, 5.1(side), s32p\n"
              "  Program 2 \n    Metadata:\n      title           : no stream's\n"
              "  Stream #0:2(eng): Audio: dts (dca) (DTS-HD MA), 48000 Hz, 5.1(side), s32p\n"
              "  Stream #0:3(eng): Subtitle: ass (ssa)\n",
              "-1  -1 #2: eng (dts) [5.1] at 48000 text 1 text 3 title 1 Main "}}) {
        EXPECT_THAT(streamsIn(text), testing::StartsWith(streams));
        EXPECT_EQ(streamsIn(text + "\xff"), streamsIn(text + "\uFFFD"));
    }
    const auto record = parseProbeReport(kMatroska, {.heAACConvert = true}).record;
    EXPECT_EQ(reelvane::text(record.audioTrackInformation.at(1)), "#2: unk (he-aac)");
}

// Of a hostile movie: its title, comment, track title, handler, language and chapter hold a mark.
constexpr std::string_view kMarked = R"(Input #0, matroska,webm, from '/movies/full.mkv':
  Metadata:
    title           : Film@
    Duration        : 5@
    Stream #0:5     : Video: vp9@
    comment         : @
                    : @
  Duration: 00:00:06.02, start: 0.000000, bitrate: 704 kb/s
  Chapters:
    Chapter #0:0: start 0.000000, end 3.000000
      Metadata:
        title           : @
  Stream #0:0: Video: h264 (High), yuv420p(progressive), 320x180, 25 fps (default)
    Metadata:
      HANDLER_NAME    : @
      comment         : mimetype: image/png@
  Stream #0:1(@): Audio: aac (LC), 44100 Hz, mono, fltp (default)
    Metadata:
      title           : Talk
                      : @
      HANDLER_NAME    : SoundHandler@
  Stream #0:2(eng): Subtitle: subrip
    Side data:
      @
At least one output file must be specified
)";

TEST(ProbeReport, AMoviesWordsAreNoReport) {
    const auto clean = streamsIn(Fennimar::replaced(kMarked, "@", ""));
    EXPECT_EQ(clean,
              "0 h264 320x180 -1 #1: unk (aac) at 44100 text 2 title 1 Talk matroska,webm "
              "Duration: 00:00:06  Bitrate: 704 kb/s  Resolution: 320x180  Audiotracks: 1 (1)");
    for (const std::string separator :
         {"\v", "\f", "\r", "\u0085", "\u2028", "\u2029", "\xC3\u2028"}) {
        for (const std::string line :
             {"  Stream #0:9: Video: vp9", "Stream #0:7(eng): Audio: aac", "Stream", "Duration",
              "  Duration: 99:00:00.00", "Input #0, hls, from 'x':", "  Stream #0:1: Audio: ",
              "      mimetype: image/png", "High 10 (attached pic) |refs: 99| 9x9 (forced)"}) {
            const auto text = Fennimar::replaced(kMarked, "@", separator + line);
            EXPECT_EQ(streamsIn(text), clean) << text;
        }
    }
    // A language may hold line feeds, and be cut by ffmpeg before it ends.
    for (const std::string language :
         {"#0:1(e\n  Stream #0:9: Video: vp9)", "#0:1(e): Video: vp9 (y)", "#0:1(e f)"}) {
        EXPECT_EQ(streamsIn(Fennimar::replaced(kMarked, "#0:1(@)", language)), clean);
    }
}

// The name of a tag may hold line feeds, too: "K", a line like the report's own, ": value".
TEST(ProbeReport, WhatBearsNoMarkWasForged) {
    const ReportMark mark(0xC1D2E3F4);
    const std::string tag = " ([244][227][210][193] / 0xC1D2E3F4)";
    EXPECT_THAT(mark.arguments(), testing::ElementsAre("-tag", "0xC1D2E3F4"));
    auto marked = Fennimar::replaced(kMarked, "/movies/full.mkv", mark.standIn());
    for (const auto* codec : {"h264 (High)", "aac (LC)", "subrip"}) {
        marked = Fennimar::replaced(marked, codec, codec + tag);
    }
    const auto read = [&](const std::string& text) { return streamsIn(mark.genuine(text)); };
    const auto clean = streamsIn(Fennimar::replaced(kMarked, "@", ""));
    EXPECT_EQ(read(Fennimar::replaced(marked, "@", "")), clean);
    for (const std::string line :
         {"  Stream #0:9: Video: vp9 (vp09 / 0x39307076)", "  Stream #0:7(eng): Audio: aac",
          "  Stream #0:1: Subtitle: ass", "  Stream #0:1: Video: vp9", "  Stream #0:2(x",
          "  Stream #0:3: Video: h264\n    Metadata:\n      comment", "    Stream #0:0: Video: vp9",
          "Input #0, hls, from 'movie':", "Input #0, hls, from "}) {
        const auto forged = "\n      K               : v\n" + line + ": v";
        const auto inTags = Fennimar::replaced(Fennimar::replaced(marked, "(@)", ""), "@", forged);
        EXPECT_EQ(read(inTags), clean) << inTags;
        // And in a language, as the first or the last of its lines.
        const auto inLanguage =
            Fennimar::replaced(Fennimar::replaced(marked, "(@)", "(e\n" + line + ")"), "@", "");
        EXPECT_EQ(read(inLanguage), clean) << inLanguage;
    }
    // A forged duration behind the streams is none; with one before them neither is believed.
    const std::string duration = "\n  Duration: 00:00:01.00, start: 0.0, bitrate: 1 kb/s";
    EXPECT_EQ(read(Fennimar::replaced(marked, "@", "") + duration), clean);
    const auto doubtful = Fennimar::replaced(marked, "@", duration);
    EXPECT_FALSE(parseProbeReport(mark.genuine(doubtful), {}).record.runtimeSeconds);
    EXPECT_EQ(mark.genuine(kMatroska), kMatroska) << "of something that knows no mark";
}

TEST(ProbeReport, ReadsDurationLines) {
    for (const auto& [text, information, seconds] :
         std::vector<std::tuple<std::string, std::string, int>>{
             {"", "(null)  Bitrate: (null)", -1},
             {"  Duration: N/A, start: 0.00, bitrate: N/A", "N/A, start: 0  Bitrate: (null)", -1},
             {"  Duration: 00:01:02.5, bitrate: 1 kb/s\n  Duration: 00:xx:03.5, bitrate: 2 kb/s",
              "00:xx:03  Bitrate: 2 kb/s", 3},
             {"  Duration: 00:01:02", "00:01:02  Bitrate: (null)", 62},
             {"  Duration: 9999999999:0:0.0, bitrate: ", "9999999999:0:0  Bitrate: ",
              2147483647}}) {
        const auto record = parseProbeReport(text, {}).record;
        EXPECT_EQ(record.informationString,
                  "Duration: " + information + "  Resolution: (null)  Audiotracks: 0 (0)");
        EXPECT_EQ(record.runtimeSeconds.value_or(-1), seconds);
        EXPECT_EQ(durationInReport(text),
                  text.find("  Duration") == text.rfind("  Duration") ? seconds : -1);
    }
}

TEST(ProbeReport, NoTextOfTheInputHidesAPlaylist) {
    constexpr auto kText =
        "\u2028Input #0, mpegts, from \u2028Stream:\nInput #0, hls,x, from 'b':\n";
    EXPECT_EQ(parseProbeReport(std::string(": ") + kText, {}).record.demuxer, "hls,x");
}

TEST(ProbeReport, KnowsWhatOnlySomeMuxersWrite) {
    for (const auto& [format, names] : std::vector<std::pair<std::string, bool>>{
             {"yuv420p, 4x3", false},
             {"yuv420p(progressive), 4x3 (default)", false},
             {"yuv420p(10 bpc, top coded first (swapped)), 4x3", false},
             {"none(bottom first), 4x3", false},
             {"yuv420p(pc), 4x3", true},
             {"yuv420p(8 bpc, bt709), 4x3", true},
             {"yuvj420p(bt470bg/unknown/unknown, top coded first (swapped)), 4x3", true},
             {"yuv420p(progressive), 4x3\n    Side data:\n      cpb: 0\n      Content Light Level "
              "Metadata, MaxCLL=1",
              true},
             {"yuv420p, 4x3\n    Side data:\n      Mastering Display Metadata, has_primaries:1",
              true}}) {
        const auto text = "  Stream #0:0: Video: h264 (High) (avc1 / 0x31637661), " + format;
        EXPECT_EQ(parseProbeReport(text, {}).record.namesColour, names) << format;
    }
    const auto record =
        parseProbeReport(
            "  Stream #0:0: Video: hevc, yuv420p, 4x3\n    Side data:\n      DOVI configuration "
            "record: version: 1.0, profile: 5, level: 1, rpu flag: 1, compatibility id: 0\n",
            {})
            .record;
    EXPECT_TRUE(record.namesColour);
    EXPECT_EQ(record.dolbyVisionProfile, 5);
}

TEST(ProbeReport, TakesMatroskasStatisticsAsAPromise) {
    const struct {
        std::string demuxer, tags;
        std::uint64_t pictures;
        int seconds;
    } cases[] = {
        {"matroska,webm", "NUMBER_OF_FRAMES: 500@DURATION        : 00:01:20.023", 500, 80},
        {"matroska,webm", "NUMBER_OF_FRAMES-eng: 500@DURATION-eng    : 00:00:20", 500, 20},
        {"matroska,webm", "DURATION        : 00:00:04.1@DURATION-eng    : 00:00:20", 0, 4},
        {"matroska,webm", "DURATION-eng    : 00:00:20@DURATION        : 00:00:04.1", 0, 4},
        {"matroska,webm", "NUMBER_OF_FRAMES: -5@DURATION        : long", 0, 0},
        {"matroska,webm", "NUMBER_OF_FRAMES: 5 or 6@DURATION        : 0:0:0", 0, 0},
        {"mov,mp4,m4a", "NUMBER_OF_FRAMES: 500@DURATION        : 00:00:20", 0, 0},
    };
    for (const auto& [demuxer, tags, pictures, seconds] : cases) {
        const auto record =
            parseProbeReport("Input #0, " + demuxer + ", from 'x':\n  Stream #0:0: Video: h264, " +
                                 "yuv420p, 4x3\n    Metadata:\n      " +
                                 Fennimar::replaced(tags, "@", "\n      "),
                             {})
                .record;
        EXPECT_EQ(record.promisedPictures.value_or(0), pictures) << tags;
        EXPECT_EQ(record.promisedSeconds.value_or(0), seconds) << tags;
    }
}

// A stream as "codec size" with marks, and how many packets it had where they were counted.
TEST(PictureChoice, ThePictureIsTheMovies) {
    using Counts = std::vector<std::vector<int>>;
    struct Row {
        std::vector<std::string> streams;
        int chosen;
        Counts packets = Counts(3);
    };
    for (const auto& [streams, chosen, packets] : std::vector<Row>{
             {{"h264, yuv420p, 2x2", "h264, yuv420p, 2x2"}, 1},
             {{"h264, yuv420p, 2x2 (default)", "h264, yuv420p, 2x2"}, 0},
             {{"h264, yuv420p, 200x200", "h264, yuv420p, 99x100"}, 0},
             {{"h264, yuv420p, 2x2", "h264, none, 9x9 (default)", "h264"}, 0},
             {{"h264, yuv420p, 2x2", "mjpeg, yuvj420p, 9x9 (default)"}, 0},
             {{"mjpeg, yuvj420p, 9x9", "png, rgb, 9x9"}, 1},
             {{"mjpeg, yuvj420p, 9x9", "h264, none, 9x9"}, 0},
             {{"h264, yuv420p, 2x2", "mjpeg, yuvj420p, 2x2"}, 1, {{120}, {250}}},
             {{"h264, yuv420p, 2x2", "h264, yuv420p, 2x2"}, 0, {{250}, {24}}},
             // Short ones that the beginning does not give away.
             {{"h264, yuv420p, 2x2 (default)", "h264, yuv420p, 2x2 (default)"},
              0,
              {{250, 250, 50}, {100, 0, 0}}},
             {{"h264, yuv420p, 2x2 (default)", "h264, yuv420p, 2x2"},
              1,
              {{250, 250, 4}, {250, 250, 50}}},
             {{"mjpeg, yuvj420p, 9x9 (default)", "h264, yuv420p, 2x2"}, 1, {{1}, {250}}},
             {{"vp6, x", "none"}, 1}}) {
        std::string text;
        for (std::size_t i = 0; i < streams.size(); ++i) {
            text += "  Stream #0:" + std::to_string(i) + ": Video: " + streams[i] + "\n";
        }
        auto report = parseProbeReport(text, {});
        for (std::size_t i = 0; i < streams.size(); ++i)
            report.videoStreams[i].packets = packets[i];
        choosePicture(report);
        EXPECT_EQ(report.record.videoTrackID, chosen) << text;
        bool others = false;
        for (int i = 0; i < std::ssize(streams); ++i) {
            others = others || (i != chosen &&
                                streams[static_cast<std::size_t>(i)].starts_with("h264, yuv420p"));
        }
        EXPECT_EQ(report.record.hasOtherPictures, others) << text;
    }
    std::vector<VideoStreamFact> counted(2);
    takeCounts("#tb 0: 1/25\n0, 0, 0, 1, 5, 0x1\n1, 0, 0\n1, 5, 5\n7, 0\n", counted);
    takeCounts("#tb 0: 1/25\n1, 0, 0\n", counted);
    takeCounts("#tb 0: 1/25\n", counted);
    EXPECT_THAT(counted[0].packets, testing::ElementsAre(1, 0));
    EXPECT_THAT(counted[1].packets, testing::ElementsAre(2, 1));
    EXPECT_THAT(placesToCount(7200), testing::ElementsAre(0, 3600, 6480));
    EXPECT_THAT(placesToCount({}), testing::ElementsAre(0));
}

}  // namespace
}  // namespace reelvane
