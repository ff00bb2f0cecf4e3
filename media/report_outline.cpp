#include "media/report_outline.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <set>
#include <string>
#include <system_error>
#include <utility>

#include "support/strings.h"

namespace reelvane {
namespace {

// Demuxers that read a text and then open whatever files or addresses it names.
constexpr auto kPlaylistDemuxers = std::to_array<std::string_view>(
    {"applehttp", "avisynth", "concat", "dash", "hls", "imf", "rtp", "rtsp", "sdp", "vapoursynth"});

constexpr std::size_t kDurationIndent = 2;
constexpr std::size_t kStreamIndent = 2;
constexpr std::size_t kDeepStreamIndent = 4;
constexpr std::size_t kEntryIndent = 2;  // of a tag below the "Metadata:" that it belongs to
constexpr std::string_view kDurationMarker = "Duration: ";
constexpr std::string_view kStreamMarker = "Stream #0:";
constexpr std::string_view kImageType = "image/";
constexpr auto kStreamKinds = std::to_array<std::string_view>(
    {"Video", "Audio", "Subtitle", "Data", "Attachment", "Unknown"});

/// Absent with fewer than three parts. Never overflows, whatever the parts say.
std::optional<int> secondsOf(std::string_view duration) {
    const auto parts = Fennimar::split(duration, ":");
    if (parts.size() < 3) return std::nullopt;
    const auto part = [&parts](std::size_t index) {
        return static_cast<std::int64_t>(Fennimar::leadingInteger(parts[index]));
    };
    const auto seconds = part(0) * 3600 + part(1) * 60 + part(2);
    using Limits = std::numeric_limits<int>;
    return static_cast<int>(std::clamp<std::int64_t>(seconds, Limits::min(), Limits::max()));
}

/// Of the tag "NUMBER_OF_FRAMES"; absent for what is no number, or 0.
std::optional<std::uint64_t> picturesIn(std::string_view text) {
    std::uint64_t pictures = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), pictures);
    const bool isWhole = failure == std::errc() && end == text.data() + text.size();
    return isWhole && pictures > 0 ? std::optional(pictures) : std::nullopt;
}

ReportSummary readDurationLine(std::string_view body) {
    ReportSummary summary;
    summary.duration = Fennimar::partBefore(body.substr(kDurationMarker.size()), ".");
    summary.runtimeSeconds = secondsOf(*summary.duration);
    if (summary.runtimeSeconds) summary.bitrate = Fennimar::partAfter(body, "bitrate: ");
    return summary;
}

/// The first "Input #0, NAME, from" line counts, but a later one that names a playlist wins: what
/// a reader printed before the report cannot hide what it is.
void readInputLine(std::string_view line, std::string_view& demuxer) {
    constexpr std::string_view kMarker = "Input #0, ";
    if (!line.starts_with(kMarker) || !Fennimar::contains(line, ", from ")) return;
    const auto name = Fennimar::partBefore(line.substr(kMarker.size()), ", from ");
    if (demuxer.empty() || (isPlaylistDemuxer(name) && !isPlaylistDemuxer(demuxer))) demuxer = name;
}

/// Where "Video: " begins. The language comes before it and may hold anything, but nothing after it
/// reads like it: so the last place counts where a language stands, else the first.
std::optional<std::size_t> kindIn(std::string_view rest) {
    const bool hasLanguage = rest.starts_with('(');
    std::optional<std::size_t> found;
    for (const auto kind : kStreamKinds) {
        const auto marker = std::string(hasLanguage ? "): " : ": ").append(kind).append(": ");
        const auto at = hasLanguage ? rest.rfind(marker) : rest.find(marker);
        if (at == std::string_view::npos) continue;
        const bool better = !found || (hasLanguage ? at > *found : at < *found);
        if (better) found = at;
    }
    return found;
}

/// Takes "Stream #0:1[0x101](eng): Audio: ac3, 48000 Hz" apart; absent when it is cut short.
std::optional<StreamBlock> readStreamLine(std::string_view body) {
    StreamBlock block{.index = Fennimar::leadingInteger(body.substr(kStreamMarker.size()))};
    auto rest = body.substr(kStreamMarker.size());
    rest.remove_prefix(std::min(rest.find_first_not_of("0123456789"), rest.size()));
    if (rest.starts_with("[0x")) rest.remove_prefix(std::min(rest.find(']') + 1, rest.size()));
    const auto at = kindIn(rest);
    if (!at) return std::nullopt;
    if (rest.starts_with('(')) block.language = rest.substr(1, *at - 1);
    rest = *Fennimar::partAfter(rest.substr(*at), ": ");
    block.kind = Fennimar::partBefore(rest, ": ");
    block.details = *Fennimar::partAfter(rest, ": ");
    return block;
}

/// The first pass: takes the lines one by one.
class OutlineReader {
public:
    explicit OutlineReader(std::string_view text) : text_(text) {}

    [[nodiscard]] ReportOutline read() {
        for (auto line : Fennimar::split(text_, "\n")) {
            if (line.ends_with('\r')) line.remove_suffix(1);
            if (!endsCutStream(line)) readLine(line);
        }
        return std::move(outline_);
    }

private:
    struct Section {
        std::size_t indent = 0;
        bool isSideData = false;
    };

    void readLine(std::string_view line) {
        const auto indent = std::min(line.find_first_not_of(' '), line.size());
        const auto body = line.substr(indent);
        if (indent == 0) {  // ends no section: the name of a tag may hold a line feed
            readInputLine(line, outline_.demuxer);
        } else if (section_ && indent > section_->indent) {
            if (hasStream_) readEntry(indent, body, outline_.streams.back());
        } else {
            section_.reset();
            readHeading(indent, body);
        }
    }

    void readHeading(std::size_t indent, std::string_view body) {
        if (body == "Metadata:" || body == "Side data:") {
            section_ = Section{.indent = indent, .isSideData = body == "Side data:"};
            return;
        }
        hasStream_ = false;
        if (indent == kDurationIndent && body.starts_with(kDurationMarker)) {
            if (!outline_.summary.duration) {  // all streams come below
                outline_.streams.clear();
                indices_.clear();
            }
            outline_.summary = readDurationLine(body);
        } else if ((indent == kStreamIndent || indent == kDeepStreamIndent) &&
                   body.starts_with(kStreamMarker)) {
            if (!addStream(body)) cutStream_ = body;
        }
    }

    /// A language may hold line feeds; its stream line then goes on until the language ends.
    [[nodiscard]] bool endsCutStream(std::string_view line) {
        constexpr std::size_t kLongest = 4096;  // bytes; then it was no stream line at all
        if (cutStream_.empty()) return false;
        const auto begin = static_cast<std::size_t>(cutStream_.data() - text_.data());
        const auto end = static_cast<std::size_t>(line.data() - text_.data()) + line.size();
        if (end - begin <= kLongest && !addStream(text_.substr(begin, end - begin))) return true;
        cutStream_ = {};
        return end - begin <= kLongest;
    }

    /// False when the line is cut. A stream in several programs is printed with each and counts
    /// once.
    [[nodiscard]] bool addStream(std::string_view body) {
        const auto block = readStreamLine(body);
        if (!block) return false;
        hasStream_ = indices_.insert(block->index).second;
        if (hasStream_) outline_.streams.push_back(*block);
        return true;
    }

    void readEntry(std::size_t indent, std::string_view body, StreamBlock& block) const {
        if (section_->isSideData) {
            block.sideData.push_back(body);
            return;
        }
        if (indent != section_->indent + kEntryIndent) return;  // a value's next line
        const auto value = Fennimar::partAfter(body, ":");
        if (!value) return;
        const auto key = Fennimar::trimmedOf(Fennimar::partBefore(body, ":"), " ");
        const auto text = Fennimar::trimmedOfWhitespaceAndNewlines(*value);
        if (key == "title" && block.title.empty()) block.title = text;
        // With a language ("DURATION-eng") they are an older writer's; the plain ones are newer.
        if (key == "NUMBER_OF_FRAMES" ||
            (key == "NUMBER_OF_FRAMES-eng" && !block.promisedPictures)) {
            block.promisedPictures = picturesIn(text);
        }
        if (key == "DURATION" || (key == "DURATION-eng" && !block.promisedSeconds)) {
            block.promisedSeconds = secondsOf(text);
            if (block.promisedSeconds <= 0) block.promisedSeconds.reset();
        }
        if (key == "mimetype" && text.starts_with(kImageType)) block.isImageAttachment = true;
    }

    std::string_view text_;
    ReportOutline outline_;
    std::optional<Section> section_;
    std::set<int> indices_;
    bool hasStream_ = false;        ///< the section below belongs to the last stream
    std::string_view cutStream_{};  ///< empty: none
};

}  // namespace

ReportOutline outlineOf(std::string_view text) {
    return OutlineReader(text).read();
}

bool isFromFfmpeg(std::string_view text) {
    return Fennimar::contains(text, "ffmpeg version") || Fennimar::contains(text, "Input #0");
}

int durationInReport(std::string_view text) {
    const auto marker = std::string(kDurationIndent, ' ').append(kDurationMarker);
    const auto lines = Fennimar::split(text, "\n");
    const auto count =
        std::ranges::count_if(lines, [&](auto line) { return line.starts_with(marker); });
    return count == 1 ? outlineOf(text).summary.runtimeSeconds.value_or(-1) : -1;
}

bool isPlaylistDemuxer(std::string_view demuxer) {
    return std::ranges::any_of(Fennimar::split(demuxer, ","), [](auto name) {
        return std::ranges::find(kPlaylistDemuxers, name) != kPlaylistDemuxers.end();
    });
}

}  // namespace reelvane
