#include "cli/argument_errors.h"

#include <algorithm>

#include "cli/argument_words.h"
#include "cli/exit_status.h"
#include "cli/help_text.h"
#include "cli/suggestion.h"
#include "support/make_string.h"

namespace reelvane {
namespace {

std::string unknownOption(const std::string& word, const std::vector<CLI::App*>& path) {
    std::vector<std::string> known;
    for (const auto* const app : path) {
        for (const auto* const option : app->get_options()) {
            for (const auto& name : option->get_lnames()) known.push_back("--" + name);
        }
    }
    const auto name = word.substr(0, word.find('='));
    return makeString("There is no option '%@'.%@", name, suggestion(name, known));
}

}  // namespace

std::vector<CLI::App*> chosen(CLI::App& program) {
    std::vector<CLI::App*> path{&program};
    while (!path.back()->get_subcommands().empty()) {
        path.push_back(path.back()->get_subcommands().front());
    }
    return path;
}

std::string commandName(const std::vector<CLI::App*>& path) {
    std::string name;
    for (std::size_t i = 1; i < path.size(); ++i) {
        if (i > 1) name += ' ';
        name += path[i]->get_name();
    }
    return name;
}

std::string unexpectedWord(const std::string& word, const std::vector<CLI::App*>& path) {
    std::vector<std::string> commands;
    for (const auto* const app : path.back()->get_subcommands({})) {
        commands.push_back(app->get_name());
    }
    if (commands.empty()) return makeString("There is one argument too many: '%@'.", word);
    return makeString("There is no command '%@'.%@", word, suggestion(word, commands));
}

std::string sentence(const CLI::ParseError& error, CLI::App& program) {
    const auto path = chosen(program);
    auto unread = program.remaining(true);
    for (auto& word : unread) unmark(word);
    const auto option = std::ranges::find_if(
        unread, [](const std::string& word) { return word.size() > 1 && word[0] == '-'; });
    if (option != unread.end()) return unknownOption(*option, path);
    if (!unread.empty()) return unexpectedWord(unread.front(), path);

    const std::string text = error.what();
    const auto name = text.substr(0, text.find_first_of(": "));
    if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) {
        if (path.size() == 1) return "No command was given.";
        return makeString("The command '%@' needs %@.", commandName(path),
                          name == "FILE" ? "a file" : name);
    }
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr && name.starts_with("--")) {
        return makeString("The option '%@' needs a value.", name);
    }
    if (dynamic_cast<const CLI::ExcludesError*>(&error) != nullptr) {
        const auto other = text.substr(text.rfind(' ') + 1);
        return makeString("The options '%@' and '%@' exclude each other.", name, other);
    }
    return text + ".";
}

Farewell usageError(const std::string& text, const std::string& command) {
    return {.text = makeString("%@: %@ See '%@%@%@ --help'.\n", kProgramName, text, kProgramName,
                               command.empty() ? "" : " ", command),
            .exitStatus = kExitUsage};
}

}  // namespace reelvane
