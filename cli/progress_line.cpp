#include "cli/progress_line.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "cli/text_width.h"
#include "support/make_string.h"
#include "support/time_text.h"

namespace reelvane {
namespace {

constexpr std::size_t kShortestName = 8;
constexpr std::size_t kUsualName = 16;  // shorter ones are padded
constexpr std::size_t kLongestName = 40;
constexpr std::size_t kBarFrame = 3;  // its two ends and a space
constexpr std::size_t kShortestBar = 6;
constexpr std::size_t kLongestBar = 30;
constexpr std::size_t kEighths = 8;  // the steps of one block character

constexpr auto kPartialBlocks =
    std::to_array<std::string_view>({"", "▏", "▎", "▍", "▌", "▋", "▊", "▉"});

constexpr std::string_view kGreen = "\x1b[32m";
constexpr std::string_view kDim = "\x1b[2m";
constexpr std::string_view kPlain = "\x1b[0m";

std::string percentText(double percent) {
    // Rounded down: 100 is for what has ended.
    return makeString("%3i%%", static_cast<int>(std::clamp(percent, 0.0, 100.0)));
}

std::string speedText(double speed) {
    std::array<char, 32> text{};
    const auto written = std::to_chars(text.data(), text.data() + text.size(), speed,
                                       std::chars_format::fixed, speed < 10 ? 1 : 0);
    return std::string(text.data(), written.ptr) + "x";
}

std::string bar(double percent, std::size_t columns, bool coloured) {
    const auto share = std::clamp(percent, 0.0, 100.0) / 100;
    const auto steps = static_cast<std::size_t>(share * double(columns * kEighths));
    std::string full;
    for (std::size_t i = 0; i < steps / kEighths; ++i) full += "█";
    full += kPartialBlocks.at(steps % kEighths);
    const auto rest = columns - displayWidth(full);
    std::string empty;
    for (std::size_t i = 0; i < rest; ++i) empty += coloured ? "─" : " ";
    if (!coloured) return "[" + full + empty + "]";
    return makeString(" %@%@%@%@%@%@ ", kGreen, full, kPlain, kDim, empty, kPlain);
}

/// What stands around the name and the bar.
struct Surroundings {
    std::string before{};
    std::string behind{};
};

/// The parts that are left when so many are given up, in columns that do not dance from one second
/// to the next.
Surroundings surroundings(const ProgressFacts& facts, int givenUp) {
    Surroundings parts{.behind = percentText(facts.percent)};
    if (facts.files > 1 && givenUp < 2) {
        parts.before = makeString("[%lu/%lu] ", facts.number, facts.files);
    }
    if (givenUp < 1) {
        parts.behind += makeString("  %5s", facts.speed ? speedText(*facts.speed) : "");
    }
    if (givenUp < 3) {
        const auto left = facts.remaining ? formattedTimeFromTimeInterval(*facts.remaining) : "";
        parts.behind += makeString("  %7s", left);
    }
    return parts;
}

}  // namespace

std::string progressText(const ProgressFacts& facts) {
    auto text = makeString("%i%%", static_cast<int>(std::clamp(facts.percent, 0.0, 100.0)));
    if (facts.speed) text += makeString(" at %@", speedText(*facts.speed));
    if (facts.remaining) {
        text += makeString(", %@ left", formattedTimeFromTimeInterval(*facts.remaining));
    }
    return text;
}

bool ProgressSteps::isDue(double percent, double elapsed) {
    constexpr double kMinute = 60;
    const int tens = static_cast<int>(percent / 10);
    if (tens == tens_ && (percent <= 0 || elapsed - told_ < kMinute)) return false;
    tens_ = tens;
    told_ = elapsed;
    return true;
}

std::string progressLine(const ProgressFacts& facts, std::size_t columns, bool coloured) {
    constexpr int kMostGivenUp = 3;
    constexpr auto kLeastRoom = kShortestName + kBarFrame + kShortestBar;
    Surroundings parts;
    std::size_t room = 0;  // for name and bar
    for (int givenUp = 0; givenUp <= kMostGivenUp && room < kLeastRoom; ++givenUp) {
        parts = surroundings(facts, givenUp);
        const auto taken = displayWidth(parts.before) + 1 + displayWidth(parts.behind);
        room = columns > taken ? columns - taken : 0;
    }
    if (room == 0) return elidedMiddle(parts.behind, columns);
    if (room < kLeastRoom) return padded(elidedMiddle(facts.name, room), room) + " " + parts.behind;

    const auto wanted = std::clamp(displayWidth(facts.name), kUsualName, kLongestName);
    const auto forName = std::min(wanted, std::max(kShortestName, (room - kBarFrame) * 3 / 5));
    const auto forBar = std::min(room - kBarFrame - forName, kLongestBar);
    return parts.before + padded(elidedMiddle(facts.name, forName), forName) + " " +
           bar(facts.percent, forBar, coloured) + " " + parts.behind;
}

}  // namespace reelvane
