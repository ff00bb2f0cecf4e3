#include "media/probe_report.h"

#include <algorithm>
#include <array>

#include "media/report_outline.h"
#include "support/make_string.h"
#include "support/strings.h"
#include "support/untranslated.h"

namespace reelvane {
namespace {

constexpr std::string_view kDigits = "0123456789";

constexpr auto kRefusedVideoCodecs = std::to_array<std::string_view>(
    {"dvvideo", "prores", "wmv3", "vp6f", "dnxhd", "vp9", "vp8", "msmpeg4v3", "aic"});
constexpr auto kSurroundLayouts =
    std::to_array<std::string_view>({"5.1,", "5.1(side),", "6.1,", "7.1,"});
constexpr auto kTextSubtitles =
    std::to_array<std::string_view>({"ssa", "subrip", "srt", "sami", "subviewer", "microdvd",
                                     "Subtitle: ass", "Subtitle: mov_text", "Subtitle: webvtt"});
// Demuxers that read a text and then open whatever files or addresses it names.
constexpr auto kPlaylistDemuxers = std::to_array<std::string_view>(
    {"applehttp", "avisynth", "concat", "dash", "hls", "imf", "rtp", "rtsp", "sdp", "vapoursynth"});

/// "1(eng)" out of a line that begins "Stream #0:1[0x101](eng): ".
std::string identityOf(std::string_view streamLine) {
    std::string identity(Fennimar::split(streamLine, ":").at(1));
    if (const auto begin = identity.find("[0x"); begin != std::string::npos) {
        if (const auto end = identity.find(']', begin); end != std::string::npos) {
            identity.erase(begin, end - begin + 1);
        }
    }
    return identity;
}

/// "h264" out of "h264 (High), yuv420p".
std::string_view codecIn(std::string_view details) {
    return Fennimar::partBefore(Fennimar::partBefore(details, ","), " ");
}

/// Empty when there is none; the last of several counts.
std::string_view resolutionIn(std::string_view details) {
    std::string_view resolution;
    for (const auto word : Fennimar::split(details, " ")) {
        const auto size = Fennimar::trimmedTo(word, "0123456789x");
        const auto x = size.find('x');
        if (x == std::string_view::npos || x == 0 || x + 1 == size.size()) continue;
        if (Fennimar::isDigit(size[x - 1]) && Fennimar::isDigit(size[x + 1])) resolution = size;
    }
    return resolution;
}

int samplingRateIn(std::string_view streamLine) {
    const auto pieces = Fennimar::split(Fennimar::partBefore(streamLine, " Hz"), ", ");
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
        const auto line = block.streamLine;
        const auto identity = identityOf(line);
        const auto index = Fennimar::leadingInteger(Fennimar::trimmedTo(identity, kDigits));
        if (!block.title.empty()) report_.record.trackTitles[index] = block.title;
        if (const auto video = Fennimar::partAfter(line, "Video: ")) {
            return readVideo(block, index, *video);
        }
        const auto language = Fennimar::trimmedOf(identity, "0123456789()");
        if (const auto audio = Fennimar::partAfter(line, "Audio: ")) {
            readAudio(line, index, language, *audio);
        } else if (Fennimar::contains(line, "Subtitle: ")) {
            ++report_.record.subtitleCount;
            if (Fennimar::containsAny(line, kTextSubtitles)) {
                report_.record.subtitleTrackIDs.push_back(index);
                report_.record.subtitleLanguages.emplace_back(language);
                if (Fennimar::contains(line, "(forced)")) {
                    report_.record.forcedSubtitleTrackIDs.push_back(index);
                }
            }
        }
        return true;
    }

private:
    bool readVideo(const StreamBlock& block, int index, std::string_view details) {
        const auto line = block.streamLine;
        if (block.isImageAttachment || Fennimar::contains(line, "(attached pic)")) return true;
        auto& record = report_.record;
        if (const auto resolution = resolutionIn(details); !resolution.empty()) {
            record.resolution = resolution;
        }
        const auto codec = codecIn(details);
        if (isRefusedVideoCodec(codec)) {
            report_.refusedVideoCodec = codec;
            return false;
        }
        report_.videoStreams.push_back(
            {.codec = std::string(codec), .tenBit = Fennimar::contains(line, "High 10")});
        if (const auto references = Fennimar::partAfter(line, "|refs: ")) {
            record.referenceFrames =
                Fennimar::leadingInteger(Fennimar::partBefore(*references, "|"));
        }
        record.videoCodec = codec;
        record.videoTrackID = index;
        return true;
    }

    void readAudio(std::string_view line, int index, std::string_view language,
                   std::string_view details) {
        const bool isHeAac =
            Fennimar::contains(line, "(HE-AAC)") || Fennimar::contains(line, "(HE-AACv2)");
        const auto codec = isHeAac && options_.heAACConvert ? "he-aac" : codecIn(details);
        report_.record.audioTrackInformation.push_back(
            {.text = makeString("#%@: %@ (%@)%@", index, language.empty() ? "unk" : language, codec,
                                Fennimar::containsAny(line, kSurroundLayouts) ? " [5.1]" : ""),
             .hz = samplingRateIn(line)});
    }

    const ProbeOptions& options_;
    ProbeReport& report_;
};

}  // namespace

ProbeReport parseProbeReport(std::string_view text, const ProbeOptions& options) {
    if (!Fennimar::isValidUtf8(text)) text = {};
    const auto outline = outlineOf(text);
    ProbeReport report;
    report.record.demuxer = outline.demuxer;
    report.record.runtimeSeconds = outline.summary.runtimeSeconds;
    report.record.duration = outline.summary.duration;
    report.record.bitrate = outline.summary.bitrate;
    StreamReader reader(options, report);
    for (const auto& block : outline.streams) {
        if (!reader.read(block)) break;
    }
    report.record.informationString = informationText(kUntranslated, report.record);
    return report;
}

bool isRefusedVideoCodec(std::string_view codec) {
    return std::ranges::find(kRefusedVideoCodecs, codec) != kRefusedVideoCodecs.end();
}

bool isPlaylistDemuxer(std::string_view demuxer) {
    return std::ranges::any_of(Fennimar::split(demuxer, ","), [](auto name) {
        return std::ranges::find(kPlaylistDemuxers, name) != kPlaylistDemuxers.end();
    });
}

int referenceFramesInTrace(std::string_view text) {
    const auto rest = Fennimar::partAfter(text, "max_num_ref_frames");
    if (!rest) return 0;
    const auto value = Fennimar::partAfter(Fennimar::partBefore(*rest, "\n"), "=");
    return value ? Fennimar::leadingInteger(*value) : 0;
}

}  // namespace reelvane
