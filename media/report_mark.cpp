#include "media/report_mark.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <optional>
#include <set>

#include "support/make_string.h"
#include "support/strings.h"

namespace reelvane {
namespace {

constexpr std::string_view kStream = "Stream #0:";
constexpr std::string_view kPathStandIn = "movie";
constexpr std::string_view kInput = "Input #0, ";
constexpr std::string_view kDuration = "  Duration: ";
constexpr std::size_t kLongestCutLine = 4096;  // bytes, with all its line feeds

/// The index of a line that begins like a stream's.
std::optional<int> streamIndexIn(std::string_view line) {
    const auto indent = line.find_first_not_of(' ');
    if (indent != 2 && indent != 4) return std::nullopt;
    const auto rest = Fennimar::partAfter(line, kStream);
    const bool begins = rest && line.substr(indent).starts_with(kStream);
    return begins ? std::optional(Fennimar::leadingInteger(*rest)) : std::nullopt;
}

/// A stream's line may begin like this, where its language has line feeds, but not go on so.
bool isMarkedInput(std::string_view line, std::string_view mark) {
    return line.starts_with(kInput) &&
           Fennimar::contains(line, makeString(", from '%@%@", kPathStandIn, mark));
}

/// Takes the lines one by one and keeps those that the movie cannot have made.
class Sifter {
public:
    Sifter(std::string_view report, std::string_view mark, bool inputIsMarked)
        : report_(report),
          mark_(mark),
          inputIsMarked_(inputIsMarked) {}

    [[nodiscard]] std::string sift() {
        for (const auto line : Fennimar::split(report_, "\n")) take(line);
        std::string all;
        for (std::size_t i = 0; i < kept_.size(); ++i) {
            if (durationsDiffer_ && i == durationAt_) continue;
            all += kept_[i] + "\n";
        }
        return all;
    }

private:
    /// A line like a stream's without a mark: forged, or cut by a line feed in its language.
    struct Start {
        int index = 0;
        const char* place = nullptr;
    };

    void take(std::string_view line) {
        if (isMarkedInput(line, mark_)) {
            kept_.emplace_back(line);
            return;
        }
        const auto index = streamIndexIn(line);
        if (Fennimar::contains(line, mark_)) {
            takeMarked(line, index);
        } else if (line.starts_with(kInput)) {
            if (!inputIsMarked_) kept_.emplace_back(line);
        } else if (index) {
            starts_.push_back({.index = *index, .place = line.data()});
        } else if (line.starts_with(kDuration)) {
            takeDuration(line);
        } else {
            kept_.emplace_back(line);
        }
    }

    void takeDuration(std::string_view line) {
        if (!seen_.empty()) return;
        if (!durationAt_) {
            durationAt_ = kept_.size();
            kept_.emplace_back(line);
        } else if (kept_[*durationAt_] != line) {
            durationsDiffer_ = true;
        }
    }

    /// Streams count up, but for those that stand in several programs. Whether the line is whole or
    /// ends one that was cut, its index is then the same.
    void takeMarked(std::string_view line, std::optional<int> index) {
        std::erase_if(starts_, [line](const Start& each) {
            return line.data() - each.place > static_cast<std::ptrdiff_t>(kLongestCutLine);
        });
        const auto next = static_cast<int>(seen_.size());
        const bool isCut = std::ranges::find(starts_, next, &Start::index) != starts_.end();
        if (isCut) {
            index = next;
        } else if (!index && !starts_.empty()) {
            index = starts_.back().index;
        }
        const bool isWhole = streamIndexIn(line) && !isCut;
        starts_.clear();
        if (!index) return;
        seen_.insert(*index);
        // What stands before the mark is "Audio: aac (LC) (tag", without a word of the movie's.
        const auto head = line.substr(0, line.find(mark_));
        const auto tag = head.rfind(" (");
        const auto codec = head.rfind(": ");
        const auto kind =
            codec == std::string_view::npos || codec == 0 ? codec : head.rfind(": ", codec - 1);
        if (tag == std::string_view::npos || kind == std::string_view::npos) return;
        const auto details = std::string(head.substr(kind, tag - kind))
                                 .append(line.substr(head.size() + mark_.size()));
        kept_.push_back(isWhole ? std::string(head.substr(0, kind)) + details
                                : makeString("  Stream #0:%i", *index) + details);
    }

    std::string_view report_;
    std::string_view mark_;
    bool inputIsMarked_ = false;
    std::vector<std::string> kept_;
    std::vector<Start> starts_;
    std::set<int> seen_;
    std::optional<std::size_t> durationAt_{};
    bool durationsDiffer_ = false;
};

}  // namespace

ReportMark::ReportMark(std::uint32_t number) {
    constexpr int kHexadecimal = 16;
    std::array<char, 8> digits{};
    auto* const end = std::to_chars(digits.begin(), digits.end(), number, kHexadecimal).ptr;
    words_.assign(digits.begin(), end);
    std::ranges::transform(words_, words_.begin(), [](char digit) {
        return digit >= 'a' ? char(digit - 'a' + 'A') : digit;
    });
    words_ = " / 0x" + words_ + ")";
}

std::vector<std::string> ReportMark::arguments() const {
    constexpr std::size_t kPrefix = std::string_view(" / ").size();
    return {"-tag", words_.substr(kPrefix, words_.size() - kPrefix - 1)};
}

std::string ReportMark::standIn() const {
    return std::string(kPathStandIn) + words_;
}

std::string ReportMark::genuine(std::string_view report) const {
    bool inputIsMarked = false;
    bool streamIsMarked = false;
    for (const auto line : Fennimar::split(report, "\n")) {
        if (!Fennimar::contains(line, words_)) continue;
        (isMarkedInput(line, words_) ? inputIsMarked : streamIsMarked) = true;
    }
    if (!streamIsMarked) return std::string(report);
    return Sifter(report, words_, inputIsMarked).sift();
}

}  // namespace reelvane
