#include "platform/shell_assignments.h"

#include <glib.h>
#include <memory>

#include "support/strings.h"

namespace reelvane {

std::map<std::string, std::string, std::less<>> parseShellAssignments(std::string_view text) {
    std::map<std::string, std::string, std::less<>> values;
    for (const auto line : Fennimar::split(text, "\n")) {
        const auto trimmed = Fennimar::trimmedOf(line, " \t\r");
        const auto value = Fennimar::partAfter(trimmed, "=");
        if (trimmed.starts_with('#') || !value) continue;
        const std::unique_ptr<char, decltype(&g_free)> unquoted(
            g_shell_unquote(std::string(*value).c_str(), nullptr), &g_free);
        if (!unquoted) continue;
        values.insert_or_assign(std::string(Fennimar::partBefore(trimmed, "=")), unquoted.get());
    }
    return values;
}

}  // namespace reelvane
