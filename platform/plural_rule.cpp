#include "platform/plural_rule.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

namespace reelvane {
namespace {

constexpr std::string_view kEnglish = "n != 1";
constexpr std::size_t kLongestExpression = 1000;  // so that no nesting is too deep; Arabic has 90

struct Operator {
    std::string_view text;
    int strength;  ///< the stronger binds first
    std::uint64_t (*apply)(std::uint64_t left, std::uint64_t right);
};

using Number = std::uint64_t;
// Of those that begin alike the longer one comes first.
constexpr auto kOperators = std::to_array<Operator>({
    {"||", 1, [](Number left, Number right) -> Number { return left != 0 || right != 0 ? 1 : 0; }},
    {"&&", 2, [](Number left, Number right) -> Number { return left != 0 && right != 0 ? 1 : 0; }},
    {"==", 3, [](Number left, Number right) -> Number { return left == right ? 1 : 0; }},
    {"!=", 3, [](Number left, Number right) -> Number { return left != right ? 1 : 0; }},
    {"<=", 4, [](Number left, Number right) -> Number { return left <= right ? 1 : 0; }},
    {">=", 4, [](Number left, Number right) -> Number { return left >= right ? 1 : 0; }},
    {"<", 4, [](Number left, Number right) -> Number { return left < right ? 1 : 0; }},
    {">", 4, [](Number left, Number right) -> Number { return left > right ? 1 : 0; }},
    {"+", 5, [](Number left, Number right) { return left + right; }},
    {"-", 5, [](Number left, Number right) { return left - right; }},
    {"*", 6, [](Number left, Number right) { return left * right; }},
    {"/", 6, [](Number left, Number right) { return right == 0 ? 0 : left / right; }},
    {"%", 6, [](Number left, Number right) { return right == 0 ? 0 : left % right; }},
});

/// Reads an expression and works it out in one go. Both sides of a choice are worked out, which
/// does no harm: nothing in it has an effect.
class Evaluation {
public:
    Evaluation(std::string_view expression, Number n) : rest_(expression), n_(n) {}

    /// Absent: it is no such expression.
    [[nodiscard]] std::optional<Number> result() {
        const auto value = choice();
        skipBlanks();
        return isReadable_ && rest_.empty() ? std::optional(value) : std::nullopt;
    }

private:
    Number choice() {
        const auto condition = operation(1);
        if (!take("?")) return condition;
        const auto then = choice();
        isReadable_ = take(":") && isReadable_;
        const auto otherwise = choice();
        return condition != 0 ? then : otherwise;
    }

    Number operation(int leastStrength) {
        auto left = operand();
        while (const auto* const next = takeOperator(leastStrength)) {
            left = next->apply(left, operation(next->strength + 1));
        }
        return left;
    }

    Number operand() {
        if (take("!")) return operand() == 0 ? 1 : 0;
        if (take("n")) return n_;
        if (take("(")) {
            const auto value = choice();
            isReadable_ = take(")") && isReadable_;
            return value;
        }
        Number value = 0;
        const auto* const end = rest_.data() + rest_.size();
        const auto [after, error] = std::from_chars(rest_.data(), end, value);
        isReadable_ = error == std::errc() && isReadable_;
        rest_.remove_prefix(static_cast<std::size_t>(after - rest_.data()));
        return value;
    }

    const Operator* takeOperator(int leastStrength) {
        skipBlanks();
        const auto* const found = std::ranges::find_if(
            kOperators, [this](const Operator& each) { return rest_.starts_with(each.text); });
        if (found == kOperators.end() || found->strength < leastStrength) return nullptr;
        rest_.remove_prefix(found->text.size());
        return found;
    }

    bool take(std::string_view word) {
        skipBlanks();
        if (!rest_.starts_with(word)) return false;
        rest_.remove_prefix(word.size());
        return true;
    }

    void skipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(' '), rest_.size())); }

    std::string_view rest_;
    Number n_;
    bool isReadable_ = true;
};

std::string_view expressionIn(std::string_view head) {
    constexpr std::string_view kRule = "\nPlural-Forms:";
    constexpr std::string_view kExpression = "plural=";
    const auto rule = head.find(kRule);
    if (rule == std::string_view::npos) return {};
    auto line = head.substr(rule + kRule.size());
    line = line.substr(0, line.find('\n'));
    const auto begin = line.find(kExpression, line.find(';'));
    if (begin == std::string_view::npos) return {};
    line = line.substr(begin + kExpression.size());
    return line.substr(0, line.find(';'));
}

}  // namespace

PluralRule::PluralRule(std::string_view catalogueHead) : expression_(expressionIn(catalogueHead)) {
    if (expression_.size() > kLongestExpression || !Evaluation(expression_, 1).result()) {
        expression_ = kEnglish;
    }
}

std::size_t PluralRule::form(std::uint64_t count) const {
    return static_cast<std::size_t>(Evaluation(expression_, count).result().value_or(0));
}

}  // namespace reelvane
