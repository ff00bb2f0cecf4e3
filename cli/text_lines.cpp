#include "cli/text_lines.h"

#include <system_error>

#include "cli/text_width.h"
#include "support/make_string.h"
#include "support/size_text.h"
#include "support/strings.h"
#include "support/time_text.h"
#include "support/utf8.h"

namespace reelvane {

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
