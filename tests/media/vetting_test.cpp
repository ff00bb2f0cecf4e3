#include "media/vetting.h"

#include <gmock/gmock.h>

#include "support/localization.h"
#include "tests/fakes/audio_tracks.h"

namespace reelvane {
namespace {

ProbeReport movie(std::string resolution, int referenceFrames) {
    return {.record = {.videoTrackID = 0,
                       .resolution = std::move(resolution),
                       .referenceFrames = referenceFrames}};
}

/// All that the user is told of a file named "a?.mkv", whose name is not UTF-8.
std::string alertsFor(const ProbeReport& report) {
    std::string text;
    for (const auto& [key, title, message, button, delayed] :
         vet(kUntranslated, report, "a\xff.mkv", "Reelvane").alerts) {
        text.append(key).append(delayed ? " later " : " ").append(title).append("|");
        text.append(message).append("|").append(button).append("\n");
    }
    return text;
}

TEST(Vetting, TellsInOrderAndRefusesUnderTheApplicationsName) {
    auto report = movie("3840x2160", 2);
    report.videoStreams = {{.codec = "hevc"}, {.codec = "h264", .tenBit = true}};
    EXPECT_TRUE(vet(kUntranslated, report, "a", "b").accepted);
    auto refused = movie("4000x2000", 9);
    refused.refusedVideoCodec = "vp9";
    EXPECT_FALSE(vet(kUntranslated, refused, "a", "b").accepted);
    EXPECT_EQ(
        alertsFor(report) + alertsFor(refused) + alertsFor({}),
        R"(wrongvideowarning Warning|The file 'a�.mkv' doesn't contain a H264/MPEG4 video track (videocodec: hevc) so the result may not be playable.|OK
10bitvideowarning Warning|The file 'a�.mkv' contains a 10-bit video track so the result will not be playable on the Apple TV. It should still play with other players (VLC/Mplayer).|OK
warningtoohighres later Warning|The file 'a�.mkv' will probably not play back fine on the Apple TV  as it has a too large resolution. You can try converting the produced MP4 file using 'QuickTime Player' to a 1080p M4V file to view this video on the Apple TV.|OK
warningtoomanyrefframes later Warning|The file 'a�.mkv' will probably not play back fine on the 'Playstation 3' or other devices as it contains more 'reference frames' than the PS3 supports. You can try converting the produced MP4 file using 'QuickTime Player' to a 720p M4V file to view this video on the PS3.|OK
 later Reelvane|Warning: the file 'a�.mkv' contains an invalid video codec (vp9) and can't be converted by Reelvane.|OK
 later Reelvane|Warning: the file 'a�.mkv' doesn't seem to be a valid MKV and can't be converted by Reelvane. If you are sure the file is valid please contact us regarding this issue.|OK
)");
    EXPECT_EQ(
        alertsFor({.record = {.audioTrackInformation = {audioTrack("#1: eng (none)")},
                              .videoTrackID = 0,
                              .dolbyVisionProfile = 5}}),
        R"(dolbyvisionwarning later Warning|The picture of the file 'a�.mkv' is in Dolby Vision profile 5. Only devices with Dolby Vision show its right colours; on others it is green and purple.|OK
 later Reelvane|The sound of the file 'a�.mkv' has a format that ffmpeg does not know, so the file can only be converted without sound.|OK
)");
    EXPECT_EQ(alertsFor({.record = {.audioTrackInformation = {audioTrack("#1: eng (none)"),
                                                              audioTrack("#2: unk (aac)")},
                                    .videoTrackID = 0,
                                    .dolbyVisionProfile = 8}}),
              "");
    report.record.demuxer = "concat";
    EXPECT_EQ(alertsFor(report), alertsFor({})) << "a playlist";
}

TEST(Vetting, ThePictureHasALimitAndABudget) {
    std::string budgets;
    for (const auto* size : {"1920x1080", "1920x1088", "1920x800", "1280x720", "720x576"}) {
        budgets += std::to_string(referenceFrameBudget(size).value()) + " ";
    }
    EXPECT_EQ(budgets, "4 4 5 9 20 ");
    EXPECT_EQ(alertsFor(movie("1920x1080", 4)), "");
    EXPECT_THAT(alertsFor(movie("1920x1080", 5)), testing::StartsWith("warningtoomany"));
    EXPECT_THAT(alertsFor(movie("1921x1080", 0)), testing::StartsWith("warningtoohighres"));
    EXPECT_EQ(alertsFor(movie("0x31637661", 16)) + alertsFor(movie("", 16)), "");
}

}  // namespace
}  // namespace reelvane
