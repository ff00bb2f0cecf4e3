#include "media/probe_report.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <span>
#include <stdexcept>

#include "support/make_string.h"
#include "support/strings.h"

namespace reelvane {
namespace {

constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kDurationMarker = "Duration: ";

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

/// One stream line and what the lines below it, up to the next stream, say of it.
struct StreamBlock {
    std::string_view streamLine{};
    bool isImageAttachment = false;
};

struct Summary {
    std::optional<std::string_view> duration{};
    std::optional<std::string_view> bitrate{};
    std::optional<int> runtimeSeconds{};
};

/// The first pass over a report.
struct Outline {
    Summary summary{};
    std::string_view demuxer{};
    std::vector<StreamBlock> streams{};
};

std::string_view requiredPartAfter(std::string_view line, std::string_view separator) {
    const auto part = Fennimar::partAfter(line, separator);
    if (!part) throw std::out_of_range("no \"" + std::string(separator) + "\" in a report line");
    return *part;
}

std::string_view durationText(std::string_view line) {
    return Fennimar::partBefore(requiredPartAfter(line, kDurationMarker), ".");
}

/// Throws std::out_of_range with fewer than three parts. Never overflows, whatever the parts say.
int secondsOf(const std::vector<std::string_view>& parts) {
    const auto part = [&parts](std::size_t index) {
        return static_cast<std::int64_t>(Fennimar::leadingInteger(parts.at(index)));
    };
    const auto seconds = part(0) * 3600 + part(1) * 60 + part(2);
    using Limits = std::numeric_limits<int>;
    return static_cast<int>(std::clamp<std::int64_t>(seconds, Limits::min(), Limits::max()));
}

void readDurationLine(std::string_view line, Summary& summary) {
    summary.duration = durationText(line);
    const auto parts = Fennimar::split(*summary.duration, ":");
    if (parts.size() < 3) return;
    summary.runtimeSeconds = secondsOf(parts);
    summary.bitrate = requiredPartAfter(line, "bitrate: ");
}

bool namesImageType(std::string_view line) {
    std::string packed(line);
    std::erase(packed, ' ');
    return Fennimar::contains(packed, "mimetype:image/");
}

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

/// The first "Input #0, NAME, from" line counts, but a later one that names a playlist wins: no
/// text that the input brings along can hide what it is.
void readInputLine(std::string_view line, std::string_view& demuxer) {
    constexpr std::string_view kMarker = "Input #0, ";
    if (!line.starts_with(kMarker) || !Fennimar::contains(line, ", from ")) return;
    const auto name = Fennimar::partBefore(line.substr(kMarker.size()), ", from ");
    if (demuxer.empty() || (isPlaylistDemuxer(name) && !isPlaylistDemuxer(demuxer))) demuxer = name;
}

Outline outlineOf(std::string_view text) {
    Outline outline;
    for (const auto line : Fennimar::lines(text)) {
        const auto trimmed = Fennimar::trimmedOfWhitespaceAndNewlines(line);
        if (trimmed.starts_with("Stream")) {
            outline.streams.push_back(
                {.streamLine = line, .isImageAttachment = namesImageType(line)});
        } else if (trimmed.starts_with("Duration")) {
            readDurationLine(line, outline.summary);
        } else if (!outline.streams.empty()) {
            auto& block = outline.streams.back();
            block.isImageAttachment = block.isImageAttachment || namesImageType(line);
        } else {
            readInputLine(line, outline.demuxer);
        }
    }
    return outline;
}

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
        if (isDigit(size[x - 1]) && isDigit(size[x + 1])) resolution = size;
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
        if (const auto video = Fennimar::partAfter(line, "Video: ")) {
            return readVideo(block, index, *video);
        }
        if (const auto audio = Fennimar::partAfter(line, "Audio: ")) {
            readAudio(line, index, Fennimar::trimmedOf(identity, "0123456789()"), *audio);
        } else if (Fennimar::contains(line, "Subtitle: ")) {
            ++report_.record.subtitleCount;
            if (Fennimar::containsAny(line, kTextSubtitles)) {
                report_.record.subtitleTrackIDs.push_back(index);
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

std::string informationString(const Summary& summary, const MKVFileInfo& record) {
    constexpr std::string_view kAbsent = "(null)";
    // The number in parentheses counts subtitle streams.
    return makeString("Duration: %@  Bitrate: %@  Resolution: %@  Audiotracks: %i (%i)",
                      summary.duration.value_or(kAbsent), summary.bitrate.value_or(kAbsent),
                      record.resolution.empty() ? kAbsent : std::string_view(record.resolution),
                      record.audioTrackInformation.size(), record.subtitleCount);
}

}  // namespace

ProbeReport parseProbeReport(std::string_view text, const ProbeOptions& options) {
    if (!Fennimar::isValidUtf8(text)) text = {};
    const auto outline = outlineOf(text);
    ProbeReport report;
    report.record.demuxer = outline.demuxer;
    report.record.runtimeSeconds = outline.summary.runtimeSeconds;
    StreamReader reader(options, report);
    for (const auto& block : outline.streams) {
        if (!reader.read(block)) break;
    }
    report.record.informationString = informationString(outline.summary, report.record);
    return report;
}

int durationInReport(std::string_view text) {
    if (!Fennimar::isValidUtf8(text)) return -1;
    auto lines = Fennimar::lines(text);
    std::erase_if(lines, [](auto line) { return !Fennimar::contains(line, kDurationMarker); });
    if (lines.size() != 1) return -1;
    return secondsOf(Fennimar::split(durationText(lines.front()), ":"));
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
