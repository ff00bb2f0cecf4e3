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

constexpr std::size_t kShortestName = 16;
constexpr std::size_t kLongestName = 40;
constexpr std::size_t kShortestBar = 8;
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

/// What stands behind the bar, in columns that do not dance from one second to the next.
std::string numbers(const ProgressFacts& facts, bool withSpeed) {
    auto text = percentText(facts.percent);
    if (withSpeed) text += makeString("  %5s", facts.speed ? speedText(*facts.speed) : "");
    const auto left = facts.remaining ? formattedTimeFromTimeInterval(*facts.remaining) : "";
    return text + makeString("  %7s", left);
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

std::string progressLine(const ProgressFacts& facts, std::size_t columns, bool coloured) {
    auto before = facts.files > 1 ? makeString("[%lu/%lu] ", facts.number, facts.files) : "";
    auto behind = numbers(facts, true);
    if (displayWidth(before) + kShortestName + 1 + displayWidth(behind) > columns) {
        behind = numbers(facts, false);
    }
    if (displayWidth(before) + kShortestName + 1 + displayWidth(behind) > columns) before.clear();
    const auto fixed = displayWidth(before) + displayWidth(behind) + 1;
    if (fixed >= columns) return elidedMiddle(behind, columns);

    const auto room = columns - fixed;  // for the name, and the bar with its two ends and a space
    constexpr std::size_t kBarFrame = 3;
    const auto nameWidth = displayWidth(facts.name);
    const auto wanted = std::clamp(nameWidth, kShortestName, kLongestName);
    const bool hasBar = room >= kShortestName + kBarFrame + kShortestBar;
    if (!hasBar) return before + padded(elidedMiddle(facts.name, room), room) + " " + behind;

    const auto forName = std::min(wanted, std::max(kShortestName, (room - kBarFrame) * 3 / 5));
    const auto forBar = std::min(room - kBarFrame - forName, kLongestBar);
    return before + padded(elidedMiddle(facts.name, forName), forName) + " " +
           bar(facts.percent, forBar, coloured) + " " + behind;
}

}  // namespace reelvane
