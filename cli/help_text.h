#pragma once

#include <string>
#include <string_view>

namespace reelvane {

/// The name under which the user calls the program.
inline constexpr std::string_view kProgramName = "reelvane-cli";

[[nodiscard]] std::string versionText();

/// The help of a command ("convert", "preferences set"); of the program when the name is empty.
[[nodiscard]] std::string helpText(std::string_view command);

}  // namespace reelvane
