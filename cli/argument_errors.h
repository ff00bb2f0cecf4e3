#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "cli/arguments.h"

namespace reelvane {

/// The chosen command, the innermost last: program, "preferences", "set".
[[nodiscard]] std::vector<CLI::App*> chosen(CLI::App& program);
/// "preferences set"; empty when none was chosen.
[[nodiscard]] std::string commandName(const std::vector<CLI::App*>& path);

/// There is no such command, or one word is too many behind it.
[[nodiscard]] std::string unexpectedWord(const std::string& word,
                                         const std::vector<CLI::App*>& path);
/// One sentence on why the parser gave up.
[[nodiscard]] std::string sentence(const CLI::ParseError& error, CLI::App& program);
/// The sentence, and where to read how it is done.
[[nodiscard]] Farewell usageError(const std::string& text, const std::string& command);

}  // namespace reelvane
