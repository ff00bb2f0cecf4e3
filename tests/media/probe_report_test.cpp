#include "media/probe_report.h"

#include <gtest/gtest.h>
#include <stdexcept>

#include "media/report_outline.h"

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
    const auto [record, videoStreams, refused] = parseProbeReport(text, {});
    auto streams = std::to_string(record.videoTrackID.value_or(-1));
    for (const auto& [codec, tenBit] : videoStreams) streams += " " + codec + (tenBit ? "!" : "");
    streams += " " + record.resolution + " " + std::to_string(record.referenceFrames.value_or(-1));
    for (const auto& [entry, hz] : record.audioTrackInformation) {
        streams += " " + entry + " at " + std::to_string(hz);
    }
    for (const auto id : record.subtitleTrackIDs) streams += " text " + std::to_string(id);
    return streams + refused.value_or("");
}

TEST(ProbeReport, ReadsStreams) {
    for (const auto& [text, streams] : std::vector<std::pair<std::string, std::string>>{
             {kMatroska,
              "0 h264 320x240 -1 #1: eng (ac3) [5.1] at 44100 #2: unk (aac) at 44100 #3: por "
              "(flac) at 96000 text 4 text 10"},
             {kMp4, "0 h264 1920x1080 -1 #1: ger (dts) [5.1] at 48000 #2: unk (none) at 0 text 3"},
             {"Stream #0:7[0x1e0]: Video: mpeg2video, 720x576 [SAR 64:45 DAR 16:9], max. 9 kb/s",
              "7 mpeg2video 720x576 -1"},
             {"Stream #0:7[0x100](ger): Video: h264 (High 10) ([27] / 0x001B), 4x3, |refs: 9|",
              "7 h264! 4x3 9"},
             {"Stream #0:7[0x2]: Video: none, none", "7 none  -1"},
             {"Stream #0:0: Video: hevc, 1x1\nStream #0:1: Video: h264, 2x2\n"
              "Stream #0:2: Video: png, 3x3\n  mime type: image/png",
              "1 hevc h264 2x2 -1"},
             {"Stream #0:0: Video: wmv3x, 1x1\nStream #0:1: Video: vp9 (0)\nStream #0:2: Audio: ",
              "0 wmv3x 1x1 -1vp9"},
             {std::string(kMp4) + "\xff", "-1  -1"}}) {
        EXPECT_EQ(streamsIn(text), streams);
    }
    const auto record = parseProbeReport(kMatroska, {.heAACConvert = true}).record;
    EXPECT_EQ(record.audioTrackInformation.at(1).text, "#2: unk (he-aac)");
    EXPECT_EQ(record.trackTitles, (std::map<int, std::string>{{1, "Director: a talk"}}));
    EXPECT_EQ(record.demuxer, "matroska,webm");
    EXPECT_EQ(record.informationString,
              "Duration: 01:42:17  Bitrate: 813 kb/s  Resolution: 320x240  Audiotracks: 3 (3)");
}

TEST(ProbeReport, ReadsDurationLines) {
    for (const auto& [text, information, seconds] :
         std::vector<std::tuple<std::string, std::string, int>>{
             {"", "(null)  Bitrate: (null)", -1},
             {"Duration: N/A, start: 0.00, bitrate: N/A", "N/A, start: 0  Bitrate: (null)", -1},
             {"Duration: 00:01:02.5, bitrate: 1 kb/s\n Duration: 00:xx:03.5, bitrate: 2 kb/s",
              "00:xx:03  Bitrate: 2 kb/s", 3},
             {"Duration: 9999999999:0:0.0, bitrate: ", "9999999999:0:0  Bitrate: ", 2147483647}}) {
        const auto record = parseProbeReport(text, {}).record;
        EXPECT_EQ(record.informationString,
                  "Duration: " + information + "  Resolution: (null)  Audiotracks: 0 (0)");
        EXPECT_EQ(record.runtimeSeconds.value_or(-1), seconds);
    }
    EXPECT_THROW((void)parseProbeReport("Duration: 00:00:01.00", {}), std::out_of_range);
    EXPECT_EQ(durationInReport(kMatroska), 6137);
    EXPECT_EQ(durationInReport(std::string(kMatroska) + kMp4), -1);
    EXPECT_THROW((void)durationInReport("Duration: N/A, start: 0.0"), std::out_of_range);
}

TEST(ProbeReport, NoTextOfTheInputHidesAPlaylist) {
    constexpr auto kText =
        "\u2028Input #0, mpegts, from \u2028Stream:\nInput #0, hls,x, from 'b':\n";
    const auto report = parseProbeReport(std::string(": ") + kText, {});
    EXPECT_EQ(report.record.demuxer, "hls,x");
}

}  // namespace
}  // namespace reelvane
