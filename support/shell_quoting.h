#pragma once

#include <span>
#include <string>
#include <string_view>

namespace reelvane {

/// The word as a shell reads it back, on one line: bare where no character means anything to the
/// shell, else in single quotes, and in the form $'...' (bash, ksh, zsh and POSIX 2024) where it
/// holds control characters. Other bytes stay as they are, UTF-8 or not.
[[nodiscard]] std::string shellQuoted(std::string_view word);

/// The words, quoted, with single spaces between them.
[[nodiscard]] std::string shellQuotedLine(std::span<const std::string> words);

}  // namespace reelvane
