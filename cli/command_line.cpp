#include "cli/command_line.h"

#include <algorithm>
#include <optional>

#include "support/make_string.h"
#include "support/strings.h"

namespace reelvane {
namespace {

/// One pass over the words. The first fault ends it.
class Reader {
public:
    explicit Reader(std::span<const CommandRule> rules)
        : rules_(rules),
          program_(ruleNamed("")),
          rule_(program_) {}

    void read(std::span<const std::string> words) {
        if (!words.empty() && words.front() == "help") {
            line_.wantsHelp = true;
            words = words.subspan(1);
        }
        for (std::size_t i = 0; i < words.size() && sentence_.empty(); ++i) {
            const auto& word = words[i];
            if (literal_ || word.size() < 2 || word.front() != '-') {
                takeWord(word);
            } else if (word == "--") {
                literal_ = true;
            } else if (takeOption(word, i + 1 < words.size() ? &words[i + 1] : nullptr)) {
                ++i;
            }
        }
        // Who asks for help is not told what he lacks.
        if (!line_.wantsHelp && !line_.wantsVersion && sentence_.empty()) checkWhole();
    }

    [[nodiscard]] std::variant<CommandLine, CommandLineError> result() && {
        line_.command = rule_->name;
        if (sentence_.empty()) return std::move(line_);
        return CommandLineError{.sentence = std::move(sentence_),
                                .command = std::string(rule_->name)};
    }

private:
    [[nodiscard]] const CommandRule* ruleNamed(std::string_view name) const {
        const auto found = std::ranges::find(rules_, name, &CommandRule::name);
        return found == rules_.end() ? nullptr : &*found;
    }

    /// The last words of the commands that may follow the present one.
    [[nodiscard]] std::vector<std::string> commands() const {
        const std::string prefix = rule_->name.empty() ? "" : std::string(rule_->name) + ' ';
        std::vector<std::string> words;
        for (const auto& rule : rules_) {
            if (rule.name.size() <= prefix.size() || !rule.name.starts_with(prefix)) continue;
            const auto word = rule.name.substr(prefix.size());
            if (word.find(' ') == std::string_view::npos) words.emplace_back(word);
        }
        return words;
    }

    [[nodiscard]] bool takesMany() const {
        return !rule_->operands.empty() && rule_->operands.back().ends_with("...");
    }

    void takeWord(const std::string& word) {
        const auto further = literal_ ? std::vector<std::string>() : commands();
        if (std::ranges::find(further, word) != further.end()) {
            rule_ = ruleNamed(rule_->name.empty() ? word : makeString("%@ %@", rule_->name, word));
        } else if (takesMany() || line_.operands.size() < rule_->operands.size()) {
            line_.operands.push_back(word);
        } else if (commands().empty()) {
            sentence_ = makeString("There is one argument too many: '%@'.", word);
        } else {
            sentence_ =
                makeString("There is no command '%@'.%@", word, suggestion(word, commands()));
        }
    }

    [[nodiscard]] const OptionRule* optionNamed(std::string_view name) const {
        for (const auto* const rule : {rule_, program_}) {
            const auto found = std::ranges::find(rule->options, name, &OptionRule::name);
            if (found != rule->options.end()) return &*found;
        }
        return nullptr;
    }

    /// True where it has taken the next word too.
    bool takeOption(const std::string& word, const std::string* next) {
        const auto equals = word.find('=');
        const auto name = word.substr(0, equals);
        if (name == "-h" || name == "--help") {
            line_.wantsHelp = true;
            return false;
        }
        if (name == "-V" || name == "--version") {
            line_.wantsVersion = true;
            return false;
        }
        const auto* const option = optionNamed(name);
        if (option == nullptr) {
            sentence_ = makeString("There is no option '%@'.%@", name, suggestion(name, options()));
            return false;
        }
        auto& values = line_.options[name];
        if (!option->takesValue) {
            values.emplace_back();
            if (equals != std::string::npos) {
                sentence_ = makeString("The option '%@' takes no value.", name);
            }
            return false;
        }
        if (equals != std::string::npos) {
            values.push_back(word.substr(equals + 1));
            return false;
        }
        // Another option here is a value that was forgotten; one that begins so goes behind "=".
        if (next == nullptr || next->empty() || next->starts_with("--")) {
            sentence_ = makeString("The option '%@' needs a value.", name);
            return false;
        }
        values.push_back(*next);
        return true;
    }

    [[nodiscard]] std::vector<std::string> options() const {
        std::vector<std::string> names{"--help", "--version"};
        for (const auto* const rule : {program_, rule_}) {
            for (const auto& option : rule->options) names.emplace_back(option.name);
        }
        return names;
    }

    void checkWhole() {
        if (rule_ == program_) {
            sentence_ = "No command was given.";
            return;
        }
        if (line_.operands.size() < rule_->operands.size()) {
            const auto missing = rule_->operands[line_.operands.size()];
            sentence_ = makeString("The command '%@' needs %@.", rule_->name,
                                   missing.starts_with("FILE") ? "a file" : missing);
            return;
        }
        for (const auto& option : rule_->options) {
            if (line_.options.contains(option.name) && line_.options.contains(option.excludes)) {
                sentence_ = makeString("The options '%@' and '%@' exclude each other.", option.name,
                                       option.excludes);
            }
        }
    }

    std::span<const CommandRule> rules_;
    const CommandRule* program_;
    const CommandRule* rule_;
    bool literal_ = false;
    std::string sentence_;
    CommandLine line_;
};

}  // namespace

std::variant<CommandLine, CommandLineError> readCommandLine(std::span<const std::string> words,
                                                            std::span<const CommandRule> rules) {
    Reader reader(rules);
    reader.read(words);
    return std::move(reader).result();
}

std::size_t editDistance(std::string_view one, std::string_view other) {
    const auto a = Fennimar::lowercased(one);
    const auto b = Fennimar::lowercased(other);
    // Three rows of the usual table are enough: the swap looks two rows back.
    std::vector<std::size_t> beforeLast(b.size() + 1);
    std::vector<std::size_t> last(b.size() + 1);
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        beforeLast.swap(last);
        last.swap(row);
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t cost = a[i - 1] == b[j - 1] ? 0 : 1;
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + cost});
            const bool swapped = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
            if (swapped) row[j] = std::min(row[j], beforeLast[j - 2] + 1);
        }
    }
    return row[b.size()];
}

std::string suggestion(std::string_view word, std::span<const std::string> candidates) {
    const std::string* nearest = nullptr;
    std::size_t least = 0;
    for (const auto& candidate : candidates) {
        const auto distance = editDistance(word, candidate);
        if (nearest != nullptr && distance >= least) continue;
        nearest = &candidate;
        least = distance;
    }
    // One slip in three characters is still a slip; more is another word.
    if (nearest == nullptr || least * 3 > std::max(word.size(), nearest->size())) return {};
    return makeString(" Did you mean '%@'?", *nearest);
}

}  // namespace reelvane
