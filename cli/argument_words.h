#pragma once

#include <string>
#include <vector>

namespace reelvane {

/// The words of a command line in the parser's order, last first. All that stand behind "--" are
/// marked as no options and no commands: the parser itself forgets what "--" said once a file has
/// been read. "help convert" reads "convert --help". Pure.
[[nodiscard]] std::vector<std::string> wordsForParser(const std::vector<std::string>& arguments);

/// Takes the mark away, where there is one.
void unmark(std::string& word);

}  // namespace reelvane
