#include "media/probe_report.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "media/picture_choice.h"
#include "media/report_outline.h"
#include "support/localization.h"
#include "support/make_string.h"
#include "support/strings.h"

namespace reelvane {
namespace {

constexpr auto kRefusedVideoCodecs = std::to_array<std::string_view>(
    {"dvvideo", "prores", "wmv3", "vp6f", "dnxhd", "vp9", "vp8", "msmpeg4v3", "aic"});
constexpr auto kSurroundLayouts =
    std::to_array<std::string_view>({"5.1,", "5.1(side),", "6.1,", "7.1,"});
constexpr auto kTextSubtitles =
    std::to_array<std::string_view>({"ssa", "subrip", "srt", "sami", "subviewer", "microdvd"});
constexpr auto kTextSubtitleCodecs = std::to_array<std::string_view>({"ass", "mov_text", "webvtt"});
constexpr auto kFieldOrders =
    std::to_array<std::string_view>({"progressive", "top first", "bottom first",
                                     "top coded first (swapped)", "bottom coded first (swapped)"});
constexpr auto kColourSideData = std::to_array<std::string_view>(
    {"Mastering Display", "Content Light Level", "DOVI configuration record"});
constexpr std::size_t kLongestLanguage = 35;  // RFC 5646, 4.4.1

/// "h264" out of "h264 (High), yuv420p".
std::string_view codecIn(std::string_view details) {
    return Fennimar::partBefore(Fennimar::partBefore(details, ","), " ");
}

bool isNumber(std::string_view text) {
    return Fennimar::isDigit(text.empty() ? ' ' : text[0]) && text[0] != '0' &&
           text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// Empty when there is none; the last of several counts. A codec's tag ("0x31637661") is none.
std::string_view resolutionIn(std::string_view details) {
    std::string_view resolution;
    for (const auto word : Fennimar::split(details, " ")) {
        const auto size = Fennimar::trimmedTo(word, "0123456789x");
        const auto height = Fennimar::partAfter(size, "x");
        if (height && isNumber(Fennimar::partBefore(size, "x")) && isNumber(*height)) {
            resolution = size;
        }
    }
    return resolution;
}

/// "yuv420p(tv, bt709, progressive)" out of "h264 (High), yuv420p(tv, bt709, progressive), 4x3".
std::string_view pixelFormatIn(std::string_view details) {
    const auto rest = Fennimar::partAfter(details, ", ").value_or(std::string_view{});
    const auto comma = rest.find(',');
    const auto open = rest.find('(');
    if (open == std::string_view::npos || comma < open) return rest.substr(0, comma);
    return rest.substr(0, rest.find("),", open));
}

/// Whether the pixel format names a range ("tv") or colours ("bt709", "bt470bg/unknown/unknown").
bool namesColour(std::string_view pixelFormat) {
    const auto named = Fennimar::partAfter(pixelFormat, "(");
    if (!named) return false;
    const auto words = Fennimar::split(*named, ", ");
    return std::ranges::any_of(words, [](std::string_view word) {
        const auto plain = word.ends_with(')') && !Fennimar::contains(word, "(")
                               ? word.substr(0, word.size() - 1)
                               : word;
        return !plain.ends_with(" bpc") &&
               std::ranges::find(kFieldOrders, plain) == kFieldOrders.end();
    });
}

std::optional<int> dolbyVisionProfileIn(const StreamBlock& block) {
    for (const auto line : block.sideData) {
        if (!Fennimar::contains(line, "DOVI configuration record")) continue;
        return Fennimar::leadingInteger(Fennimar::partAfter(line, "profile: ").value_or("0"));
    }
    return std::nullopt;
}

VideoStreamFact videoFact(const StreamBlock& block) {
    const auto details = block.details;
    const auto format = pixelFormatIn(details);
    VideoStreamFact fact{.index = block.index,
                         .codec = std::string(codecIn(details)),
                         .tenBit = Fennimar::contains(details, "High 10"),
                         .resolution = std::string(resolutionIn(details)),
                         .isDefault = Fennimar::contains(details, "(default)"),
                         .namesColour = namesColour(format),
                         .dolbyVisionProfile = dolbyVisionProfileIn(block)};
    fact.isEmpty = fact.resolution.empty() || format.starts_with("none");
    fact.namesColour = fact.namesColour || std::ranges::any_of(block.sideData, [](auto line) {
                           return Fennimar::containsAny(line, kColourSideData);
                       });
    fact.promisedPictures = block.promisedPictures;
    fact.promisedSeconds = block.promisedSeconds;
    if (const auto references = Fennimar::partAfter(details, "|refs: ")) {
        fact.referenceFrames = Fennimar::leadingInteger(Fennimar::partBefore(*references, "|"));
    }
    return fact;
}

bool isTextSubtitle(std::string_view details) {
    return Fennimar::containsAny(details, kTextSubtitles) ||
           std::ranges::find(kTextSubtitleCodecs, codecIn(details)) != kTextSubtitleCodecs.end();
}

/// Empty for what is no language tag: in an audio track's text the language is one word of several.
std::string languageIn(const StreamBlock& block) {
    const auto language = Fennimar::trimmedOf(block.language, "0123456789()");
    const bool isTag =
        language.size() <= kLongestLanguage && std::ranges::all_of(language, [](char character) {
            const auto lower = Fennimar::lowercased({&character, 1})[0];
            return (lower >= 'a' && lower <= 'z') || character == '-' || character == '_' ||
                   Fennimar::isDigit(character);
        });
    return isTag ? std::string(language) : std::string();
}

/// A title without what is left of a character that ffmpeg has cut in two: it prints 255 bytes.
std::string_view titleOf(const StreamBlock& block) {
    constexpr std::string_view kReplacement = "\uFFFD";
    auto title = block.title;
    while (title.ends_with(kReplacement)) title.remove_suffix(kReplacement.size());
    return title;
}

int samplingRateIn(std::string_view details) {
    const auto pieces = Fennimar::split(Fennimar::partBefore(details, " Hz"), ", ");
    return Fennimar::leadingInteger(pieces.back());
}

/// The second pass: takes the streams one by one into the report.
class StreamReader {
public:
    StreamReader(const ProbeOptions& options, ProbeReport& report)
        : options_(options),
          report_(report) {}

    /// False when a refused codec ends the reading.
    [[nodiscard]] bool read(const StreamBlock& block) {
        auto& record = report_.record;
        if (const auto title = titleOf(block); !title.empty()) {
            record.trackTitles[block.index] = title;
        }
        if (block.kind == "Video") return readVideo(block);
        if (block.kind == "Audio") {
            readAudio(block);
        } else if (block.kind == "Subtitle") {
            ++record.subtitleCount;
            if (!isTextSubtitle(block.details)) return true;
            record.subtitleTrackIDs.push_back(block.index);
            record.subtitleLanguages.push_back(languageIn(block));
            if (Fennimar::contains(block.details, "(forced)")) {
                record.forcedSubtitleTrackIDs.push_back(block.index);
            }
        }
        return true;
    }

private:
    bool readVideo(const StreamBlock& block) {
        if (block.isImageAttachment || Fennimar::contains(block.details, "(attached pic)")) {
            return true;
        }
        auto fact = videoFact(block);
        if (isRefusedVideoCodec(fact.codec)) {
            report_.refusedVideoCodec = fact.codec;
            return false;
        }
        report_.videoStreams.push_back(std::move(fact));
        return true;
    }

    void readAudio(const StreamBlock& block) {
        const auto details = block.details;
        const bool isHeAac =
            Fennimar::contains(details, "(HE-AAC)") || Fennimar::contains(details, "(HE-AACv2)");
        const auto codec = isHeAac && options_.heAACConvert ? "he-aac" : codecIn(details);
        const auto language = languageIn(block);
        report_.record.audioTrackInformation.push_back(
            {.stream = block.index,
             .language = language.empty() ? "unk" : language,
             .codec = std::string(codec),
             .surround = Fennimar::containsAny(details, kSurroundLayouts),
             .hz = samplingRateIn(details)});
    }

    const ProbeOptions& options_;
    ProbeReport& report_;
};

}  // namespace

ProbeReport parseProbeReport(std::string_view text, const ProbeOptions& options) {
    const auto repaired = Fennimar::validUtf8(text);
    const auto outline = outlineOf(repaired);
    ProbeReport report;
    report.record.demuxer = outline.demuxer;
    report.record.runtimeSeconds = outline.summary.runtimeSeconds;
    report.record.duration = outline.summary.duration;
    report.record.bitrate = outline.summary.bitrate;
    StreamReader reader(options, report);
    for (const auto& block : outline.streams) {
        if (!reader.read(block)) break;
    }
    choosePicture(report);
    return report;
}

void choosePicture(ProbeReport& report) {
    auto& record = report.record;
    const auto pictures = likelyPictures(report.videoStreams);
    if (!pictures.empty()) {
        const auto& picture = pictures.back();
        record.videoTrackID = picture.index;
        record.videoCodec = picture.codec;
        record.resolution = picture.resolution;
        record.referenceFrames = picture.referenceFrames;
        record.namesColour = picture.namesColour;
        record.dolbyVisionProfile = picture.dolbyVisionProfile;
        record.hasOtherPictures =
            std::ranges::any_of(report.videoStreams, [&](const VideoStreamFact& stream) {
                return stream.index != picture.index && isMovingPicture(stream);
            });
        if (Fennimar::contains(record.demuxer, "matroska")) {
            record.promisedPictures = picture.promisedPictures;
            record.promisedSeconds = picture.promisedSeconds;
        }
    }
    record.informationString = informationText(kUntranslated, record);
}

bool isRefusedVideoCodec(std::string_view codec) {
    return std::ranges::find(kRefusedVideoCodecs, codec) != kRefusedVideoCodecs.end();
}

int referenceFramesInTrace(std::string_view text) {
    const auto rest = Fennimar::partAfter(text, "max_num_ref_frames");
    if (!rest) return 0;
    const auto value = Fennimar::partAfter(Fennimar::partBefore(*rest, "\n"), "=");
    return value ? Fennimar::leadingInteger(*value) : 0;
}

}  // namespace reelvane
