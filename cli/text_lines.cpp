#include "cli/text_lines.h"

#include <system_error>

#include "cli/text_width.h"
#include "support/make_string.h"
#include "support/size_text.h"
#include "support/strings.h"
#include "support/time_text.h"
#include "support/utf8.h"

namespace reelvane {
namespace {

/// Where a message speaks of this very file, and not of "Film.mkv.srt".
std::size_t placeOfName(std::string_view message, std::string_view name) {
    const auto isOneOf = [](std::string_view characters, char character) {
        return characters.find(character) != std::string_view::npos;
    };
    auto at = name.empty() ? std::string_view::npos : message.find(name);
    for (; at != std::string_view::npos; at = message.find(name, at + 1)) {
        auto behind = message.substr(at + name.size());
        if (behind.starts_with('.')) behind.remove_prefix(1);
        const bool begins = at == 0 || isOneOf(" '", message[at - 1]);
        if (begins && (behind.empty() || isOneOf(" ':,", behind.front()))) break;
    }
    return at;
}

}  // namespace

std::string errorText(std::string_view name, std::string_view what, std::string_view message) {
    std::string text(name);
    if (!what.empty()) text += makeString(": %@", what);
    if (message.empty()) return text;
    bool first = true;
    for (const auto line : Fennimar::lines(message)) {
        if (first) {
            text += ": ";
        } else if (!line.empty()) {
            text += "\n    ";
        }
        text += printable(line);
        first = false;
    }
    return text;
}

std::string warningLine(std::string_view name, std::string_view message) {
    const auto text = printable(message);
    if (placeOfName(text, name) != std::string::npos) return "Warning: " + text;
    const auto fileName = name.substr(name.rfind('/') + 1);
    const auto at = placeOfName(text, fileName);
    if (at == std::string::npos) return errorText(name, "warning", message);
    return "Warning: " + std::string(text).replace(at, fileName.size(), name);
}

std::string outputLostText(int error) {
    return makeString("Standard output can't be written (%@), so reelvane-cli has ended.",
                      std::generic_category().message(error));
}

std::string summaryText(const ConvertSummary& summary) {
    auto text =
        makeString("%lu %@ converted", summary.finished, summary.finished == 1 ? "file" : "files");
    if (summary.failed > 0) text += makeString(", %lu failed", summary.failed);
    if (summary.refused > 0) text += makeString(", %lu refused", summary.refused);
    if (summary.finished == 0) return text;
    return text + makeString(" (%@, %@)", formattedTimeFromTimeInterval(summary.seconds),
                             fileSizeText(summary.bytes));
}

std::string wrapped(std::string_view text, std::string_view gap, std::size_t columns,
                    std::size_t indent) {
    const std::string margin(indent, ' ');
    std::string result;
    std::string line;
    for (const auto piece : Fennimar::split(text, gap)) {
        const auto width = indent + displayWidth(line) + gap.size() + displayWidth(piece);
        if (!line.empty() && width > columns) {
            result += margin + line + "\n";
            line.clear();
        }
        if (!line.empty()) line += gap;
        line += piece;
    }
    return result + margin + line;
}

}  // namespace reelvane
