#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace reelvane {

/// The columns that a printable text takes: East Asian wide characters and emoji take two, marks
/// that join the character before them none (Unicode, EastAsianWidth W and F, as GLib has it).
[[nodiscard]] std::size_t displayWidth(std::string_view text);

/// The text with its middle left out ("A long…e.mkv") so that it takes at most this many columns.
[[nodiscard]] std::string elidedMiddle(std::string_view text, std::size_t columns);

/// The text with spaces behind it up to this many columns.
[[nodiscard]] std::string padded(std::string text, std::size_t columns);

}  // namespace reelvane
