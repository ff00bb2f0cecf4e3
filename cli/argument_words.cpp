#include "cli/argument_words.h"

#include <algorithm>

namespace reelvane {
namespace {

/// No argument of a process can hold this character, so it marks a word that is no option and no
/// command, whatever it looks like.
constexpr char kLiteral = '\0';

/// What the parser would take for a sign or a list of its own.
bool isMisread(const std::string& word) {
    return word == "++" || word.starts_with('[');
}

std::vector<std::string> marked(const std::vector<std::string>& arguments) {
    std::vector<std::string> words;
    bool literal = false;
    for (const auto& word : arguments) {
        if (!literal && word == "--") {
            literal = true;
            continue;
        }
        words.push_back(literal || isMisread(word) ? kLiteral + word : word);
    }
    std::ranges::reverse(words);
    return words;
}

std::vector<std::string> withHelpAsOption(const std::vector<std::string>& arguments) {
    if (arguments.empty() || arguments.front() != "help") return arguments;
    std::vector<std::string> words(arguments.begin() + 1, arguments.end());
    words.emplace_back("--help");
    return words;
}

}  // namespace

std::vector<std::string> wordsForParser(const std::vector<std::string>& arguments) {
    return marked(withHelpAsOption(arguments));
}

void unmark(std::string& word) {
    if (!word.empty() && word.front() == kLiteral) word.erase(0, 1);
}

}  // namespace reelvane
