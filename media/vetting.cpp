#include "media/vetting.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "media/picture_choice.h"
#include "media/report_outline.h"
#include "support/alerts.h"
#include "support/dispatch.h"
#include "support/localization.h"
#include "support/make_string.h"
#include "support/ports/translations.h"
#include "support/strings.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

constexpr auto kExpectedVideoCodecs = std::to_array<std::string_view>({"h264", "mpeg4"});
constexpr double kPictureAreaBudget = 8388608;  // pixels: 2 to the power 23
constexpr int kTooWide = 1921;                  // pixels
constexpr float kAlertDelay = 0.1F;             // seconds
constexpr bool kAtOnce = false;
constexpr bool kDelayed = true;

struct PictureSize {
    int width = 0;
    int height = 0;
};

PictureSize sizeOf(std::string_view resolution) {
    return {.width = Fennimar::leadingInteger(resolution),
            .height = Fennimar::leadingInteger(
                Fennimar::partAfter(resolution, "x").value_or(std::string_view{}))};
}

/// Fills the file's name, and what follows it, into the sentence.
VettingAlert warning(const Translations& translations, std::string_view key, bool delayed,
                     std::string_view sentence, std::string_view fileName,
                     std::string_view more = {}) {
    return {.key = std::string(key),
            .title = std::string(localizable("Warning")),
            .message =
                makeString(translations.localized(sentence), Fennimar::validUtf8(fileName), more),
            .button = "OK",
            .delayed = delayed};
}

VettingAlert error(std::string_view appName, std::string message) {
    return {.title = std::string(appName),
            .message = std::move(message),
            .button = "OK",
            .delayed = true};
}

VettingAlert refusedCodecAlert(const Translations& translations, std::string_view fileName,
                               std::string_view codec, std::string_view appName) {
    return error(appName, makeString(translations.localized(
                                         "Warning: the file '%@' contains an invalid video codec "
                                         "(%@) and can't be converted by %@."),
                                     Fennimar::validUtf8(fileName), codec, appName));
}

void warnOfStream(const Translations& translations, const VideoStreamFact& stream,
                  std::string_view fileName, std::vector<VettingAlert>& alerts) {
    if (std::ranges::find(kExpectedVideoCodecs, stream.codec) == kExpectedVideoCodecs.end()) {
        alerts.push_back(warning(
            translations, "wrongvideowarning", kAtOnce,
            localizable("The file '%@' doesn't contain a H264/MPEG4 video track (videocodec: %@) "
                        "so the result may not be playable."),
            fileName, stream.codec));
    }
    if (stream.tenBit) {
        alerts.push_back(warning(
            translations, "10bitvideowarning", kAtOnce,
            localizable("The file '%@' contains a 10-bit video track so the result will not be "
                        "playable on the Apple TV. It should still play with other players "
                        "(VLC/Mplayer)."),
            fileName));
    }
}

/// Sound that ffmpeg cannot even name does not stop a movie that can go without it.
void warnOfSound(const Translations& translations, const MKVFileInfo& record,
                 std::string_view fileName, std::string_view appName,
                 std::vector<VettingAlert>& alerts) {
    const auto& tracks = record.audioTrackInformation;
    const bool isUnknown =
        std::ranges::all_of(tracks, [](const AudioTrack& track) { return !track.isKnown(); });
    if (tracks.empty() || !isUnknown) return;
    alerts.push_back(error(
        appName,
        makeString(translations.localized("The sound of the file '%@' has a format that ffmpeg "
                                          "does not know, so the file can only be converted "
                                          "without sound."),
                   fileName)));
}

void warnOfDolbyVision(const Translations& translations, const MKVFileInfo& record,
                       std::string_view fileName, std::vector<VettingAlert>& alerts) {
    constexpr int kWithoutBaseLayer = 5;  // the profile whose picture only Dolby Vision can show
    if (record.dolbyVisionProfile != kWithoutBaseLayer) return;
    alerts.push_back(warning(
        translations, "dolbyvisionwarning", kDelayed,
        localizable("The picture of the file '%@' is in Dolby Vision profile 5. Only devices with "
                    "Dolby Vision show its right colours; on others it is green and purple."),
        fileName));
}

void warnOfPicture(const Translations& translations, const MKVFileInfo& record,
                   std::string_view fileName, std::vector<VettingAlert>& alerts) {
    if (record.resolution.empty()) return;
    if (sizeOf(record.resolution).width >= kTooWide) {
        alerts.push_back(warning(
            translations, "warningtoohighres", kDelayed,
            localizable(
                "The file '%@' will probably not play back fine on the Apple TV  as it has a "
                "too large resolution. You can try converting the produced MP4 file using "
                "'QuickTime Player' to a 1080p M4V file to view this video on the Apple TV."),
            fileName));
    }
    const auto budget = referenceFrameBudget(record.resolution);
    if (budget && record.referenceFrames.value_or(0) > *budget) {
        alerts.push_back(warning(
            translations, "warningtoomanyrefframes", kDelayed,
            localizable("The file '%@' will probably not play back fine on the 'Playstation 3' "
                        "or other devices as it contains more 'reference frames' than the PS3 "
                        "supports. You can try converting the produced MP4 file using "
                        "'QuickTime Player' to a 720p M4V file to view this video on the PS3."),
            fileName));
    }
}

}  // namespace

Verdict vet(const Translations& translations, const ProbeReport& report, std::string_view fileName,
            std::string_view appName) {
    if (isPlaylistDemuxer(report.record.demuxer)) {
        return {.alerts = {invalidFileAlert(translations, fileName, appName)}};
    }
    Verdict verdict;
    const auto shownName = Fennimar::validUtf8(fileName);
    for (const auto& stream : likelyPictures(report.videoStreams)) {
        warnOfStream(translations, stream, shownName, verdict.alerts);
    }
    if (report.refusedVideoCodec) {
        verdict.alerts.push_back(
            refusedCodecAlert(translations, fileName, *report.refusedVideoCodec, appName));
        return verdict;
    }
    warnOfPicture(translations, report.record, shownName, verdict.alerts);
    warnOfDolbyVision(translations, report.record, shownName, verdict.alerts);
    verdict.accepted = report.record.videoTrackID.has_value();
    if (verdict.accepted) {
        warnOfSound(translations, report.record, shownName, appName, verdict.alerts);
    }
    if (!verdict.accepted) {
        verdict.alerts.push_back(invalidFileAlert(translations, fileName, appName));
    }
    return verdict;
}

VettingAlert aliasAlert(const Translations& translations, std::string_view fileName) {
    return warning(
        translations, "warningalias", kDelayed,
        localizable("The file '%@' is an alias. We can't open the target of the alias because of "
                    "limitations in Apple's 'sandbox'. Please complaint to Apple if you want "
                    "Aliases to work in sandboxed apps."),
        fileName);
}

VettingAlert cutMovieAlert(const Translations& translations, std::string_view fileName) {
    return warning(translations, "warningcutmovie", kDelayed,
                   localizable("The movie '%@' was cut, and its cuts can't be carried over: what "
                               "was cut out may be seen again, and the sound may not fit the "
                               "picture. Please export it first with the program that it was cut "
                               "with, and convert what that makes."),
                   fileName);
}

VettingAlert invalidFileAlert(const Translations& translations, std::string_view fileName,
                              std::string_view appName) {
    return error(
        appName,
        makeString(
            translations.localized(
                "Warning: the file '%@' doesn't seem to be a valid MKV and can't be converted by "
                "%@. If you are sure the file is valid please contact us regarding this issue."),
            Fennimar::validUtf8(fileName), appName));
}

std::optional<int> referenceFrameBudget(std::string_view resolution) {
    const auto size = sizeOf(resolution);
    const auto area = static_cast<double>(size.width) * static_cast<double>(size.height);
    if (area <= 0) return std::nullopt;
    return static_cast<int>(std::floor(kPictureAreaBudget / area));
}

void raise(Vantor& vantor, const VettingAlert& alert) {
    auto show = [&vantor, copy = alert] {
        if (copy.key.empty()) {
            alert_apptitled(vantor, copy.message, copy.button);
        } else {
            alert_dontwarnagain_version(
                vantor, {.identifier = copy.key,
                         .title = copy.title,
                         .message = copy.message,
                         .button = copy.button,
                         .suppressionTitle = std::string(localizable("Don't warn again"))});
        }
    };
    if (alert.delayed) {
        dispatch_after_main(vantor, kAlertDelay, std::move(show));
    } else {
        show();
    }
}

}  // namespace reelvane
