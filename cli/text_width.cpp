#include "cli/text_width.h"

#include <algorithm>
#include <array>
#include <vector>

#include "support/utf8.h"

namespace reelvane {
namespace {

struct Range {
    char32_t first;
    char32_t last;
};

constexpr auto kWide = std::to_array<Range>(
    {{0x1100, 0x115F},   {0x231A, 0x231B},   {0x2329, 0x232A},   {0x23E9, 0x23EC},
     {0x2E80, 0x303E},   {0x3041, 0x33FF},   {0x3400, 0x4DBF},   {0x4E00, 0x9FFF},
     {0xA000, 0xA4CF},   {0xA960, 0xA97F},   {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},
     {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},   {0xFFE0, 0xFFE6},   {0x17000, 0x18AFF},
     {0x1B000, 0x1B2FF}, {0x1F300, 0x1F64F}, {0x1F680, 0x1F6FF}, {0x1F900, 0x1FAFF},
     {0x20000, 0x3FFFD}});

constexpr auto kJoining = std::to_array<Range>({{0x0300, 0x036F},
                                                {0x0483, 0x0489},
                                                {0x0591, 0x05BD},
                                                {0x064B, 0x065F},
                                                {0x0E31, 0x0E31},
                                                {0x0E34, 0x0E3A},
                                                {0x0E47, 0x0E4E},
                                                {0x1AB0, 0x1AFF},
                                                {0x1DC0, 0x1DFF},
                                                {0x200B, 0x200D},
                                                {0x20D0, 0x20FF},
                                                {0x302A, 0x302D},
                                                {0x3099, 0x309A},
                                                {0xFE00, 0xFE0F},
                                                {0xFE20, 0xFE2F},
                                                {0x1F3FB, 0x1F3FF},
                                                {0xE0100, 0xE01EF}});

constexpr std::string_view kEllipsis = "…";

bool isIn(char32_t character, const auto& ranges) {
    const auto next = std::ranges::upper_bound(ranges, character, {}, &Range::first);
    return next != ranges.begin() && character <= std::prev(next)->last;
}

std::size_t widthOf(char32_t character) {
    if (isIn(character, kJoining)) return 0;
    return isIn(character, kWide) ? 2 : 1;
}

/// A character with the marks that join it: what must not be torn apart.
struct Cluster {
    std::string_view text{};
    std::size_t width = 0;
};

std::vector<Cluster> clusters(std::string_view text) {
    std::vector<Cluster> found;
    while (!text.empty()) {
        const auto character = decodeUtf8(text);
        const auto bytes = text.substr(0, character.length);
        const auto width = widthOf(character.value);
        if (width == 0 && !found.empty()) {
            const auto& last = found.back().text;
            found.back().text = {last.data(), last.size() + bytes.size()};
        } else {
            found.push_back({.text = bytes, .width = width});
        }
        text.remove_prefix(character.length);
    }
    return found;
}

}  // namespace

std::size_t displayWidth(std::string_view text) {
    std::size_t width = 0;
    for (const auto& cluster : clusters(text)) width += cluster.width;
    return width;
}

std::string elidedMiddle(std::string_view text, std::size_t columns) {
    if (displayWidth(text) <= columns) return std::string(text);
    if (columns == 0) return {};
    const auto parts = clusters(text);
    const auto room = columns - 1;  // beside the ellipsis
    std::size_t head = 0;
    std::size_t tail = parts.size();
    std::size_t headWidth = 0;
    std::size_t tailWidth = 0;
    // The end, with the extension and the number of an episode, says as much as the beginning.
    while (tail > 0 && tailWidth + parts[tail - 1].width <= room / 2) {
        tailWidth += parts[--tail].width;
    }
    while (head < tail && headWidth + parts[head].width + tailWidth <= room) {
        headWidth += parts[head++].width;
    }
    std::string result;
    for (std::size_t i = 0; i < head; ++i) result += parts[i].text;
    result += kEllipsis;
    for (std::size_t i = tail; i < parts.size(); ++i) result += parts[i].text;
    return result;
}

std::string padded(std::string text, std::size_t columns) {
    const auto width = displayWidth(text);
    if (width < columns) text.append(columns - width, ' ');
    return text;
}

}  // namespace reelvane
