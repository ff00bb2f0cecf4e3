#include "media/report_outline.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>

#include "media/probe_report.h"
#include "support/strings.h"

namespace reelvane {
namespace {

constexpr std::string_view kDurationMarker = "Duration: ";

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

void readDurationLine(std::string_view line, ReportSummary& summary) {
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

/// "Commentary" out of "      title           : Commentary"; empty for any other line.
std::string_view titleIn(std::string_view line) {
    const auto key = Fennimar::partBefore(line, ":");
    if (Fennimar::trimmedOfWhitespaceAndNewlines(key) != "title") return {};
    return Fennimar::trimmedOfWhitespaceAndNewlines(
        Fennimar::partAfter(line, ":").value_or(std::string_view{}));
}

/// The first "Input #0, NAME, from" line counts, but a later one that names a playlist wins: no
/// text that the input brings along can hide what it is.
void readInputLine(std::string_view line, std::string_view& demuxer) {
    constexpr std::string_view kMarker = "Input #0, ";
    if (!line.starts_with(kMarker) || !Fennimar::contains(line, ", from ")) return;
    const auto name = Fennimar::partBefore(line.substr(kMarker.size()), ", from ");
    if (demuxer.empty() || (isPlaylistDemuxer(name) && !isPlaylistDemuxer(demuxer))) demuxer = name;
}

}  // namespace

ReportOutline outlineOf(std::string_view text) {
    ReportOutline outline;
    for (const auto line : Fennimar::lines(text)) {
        const auto trimmed = Fennimar::trimmedOfWhitespaceAndNewlines(line);
        if (trimmed.starts_with("Stream")) {
            outline.streams.push_back(
                {.streamLine = line, .isImageAttachment = namesImageType(line)});
        } else if (trimmed.starts_with("Duration")) {
            readDurationLine(line, outline.summary);
        } else {
            readInputLine(line, outline.demuxer);
            if (outline.streams.empty()) continue;
            auto& block = outline.streams.back();
            block.isImageAttachment = block.isImageAttachment || namesImageType(line);
            if (block.title.empty()) block.title = titleIn(line);
        }
    }
    return outline;
}

bool isFromFfmpeg(std::string_view text) {
    return Fennimar::contains(text, "ffmpeg version") || Fennimar::contains(text, "Input #0");
}

int durationInReport(std::string_view text) {
    if (!Fennimar::isValidUtf8(text)) return -1;
    auto lines = Fennimar::lines(text);
    std::erase_if(lines, [](auto line) { return !Fennimar::contains(line, kDurationMarker); });
    if (lines.size() != 1) return -1;
    return secondsOf(Fennimar::split(durationText(lines.front()), ":"));
}

}  // namespace reelvane
