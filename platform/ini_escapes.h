#pragma once

#include <string>
#include <string_view>

namespace reelvane {

/// Any bytes as a key file's key, and back. See IniDocument for the forms.
[[nodiscard]] std::string escapedIniKey(std::string_view key);
[[nodiscard]] std::string unescapedIniKey(std::string_view text);

/// Any bytes as a key file's value, and back.
[[nodiscard]] std::string escapedIniValue(std::string_view value);
[[nodiscard]] std::string unescapedIniValue(std::string_view text);

}  // namespace reelvane
