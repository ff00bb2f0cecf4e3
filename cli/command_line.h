#pragma once

#include <map>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace reelvane {

/// An option of a command, by its long name: "--to".
struct OptionRule {
    std::string_view name{};
    bool takesValue = false;
    std::string_view excludes{};  ///< the option that may not stand beside it
};

/// A command and what may stand behind it.
struct CommandRule {
    std::string_view name{};                   ///< "preferences set"; empty: the program itself
    std::vector<std::string_view> operands{};  ///< each is needed; "FILE..." stands for several
    std::vector<OptionRule> options{};
};

/// A command line taken apart. Nothing in it is interpreted yet.
struct CommandLine {
    std::string command{};  ///< the name of a rule
    std::vector<std::string> operands{};
    std::map<std::string, std::vector<std::string>, std::less<>> options{};  ///< values as given
    bool wantsHelp = false;
    bool wantsVersion = false;
};

/// Why a command line can't be read: one sentence, and the command at which it happened.
struct CommandLineError {
    std::string sentence{};
    std::string command{};
};

/// Takes the words behind the program's name apart. The rules have one without a name, whose
/// options stand behind every command too; "-h", "--help", "-V", "--version" and a first word
/// "help" are known by themselves. Values follow their option as the next word or behind "=";
/// behind "--" every word is an operand (POSIX.1-2017, 12.2). Pure.
[[nodiscard]] std::variant<CommandLine, CommandLineError> readCommandLine(
    std::span<const std::string> words, std::span<const CommandRule> rules);

/// The least number of characters to insert, delete, replace or swap with their neighbour that
/// turns one word into the other (optimal string alignment), ASCII letters compared without case.
[[nodiscard]] std::size_t editDistance(std::string_view one, std::string_view other);

/// " Did you mean 'x'?" with the candidate nearest to the word, the first of equals; empty when
/// none is near enough for the word to be a slip of it.
[[nodiscard]] std::string suggestion(std::string_view word,
                                     std::span<const std::string> candidates);

}  // namespace reelvane
