#include "cli/text_width.h"

#include <glib.h>
#include <vector>

#include "support/utf8.h"

namespace reelvane {
namespace {

constexpr std::string_view kEllipsis = "…";

std::size_t widthOf(char32_t character) {
    if (g_unichar_iszerowidth(character) != 0) return 0;
    return g_unichar_iswide(character) != 0 ? 2 : 1;
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
