#pragma once

#include <map>
#include <string>
#include <string_view>

namespace reelvane {

/// Reads lines of the form NAME=value or NAME="value" as a shell would, without expanding
/// variables: os-release(5), user-dirs.dirs. Other lines are skipped; the last of a name counts.
[[nodiscard]] std::map<std::string, std::string, std::less<>> parseShellAssignments(
    std::string_view text);

}  // namespace reelvane
