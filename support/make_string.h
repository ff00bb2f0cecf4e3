#pragma once

#include <concepts>
#include <filesystem>
#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>

namespace reelvane {

/// One argument of a format text.
class FormatArgument {
public:
    // Implicit, so that a call reads like a format call: makeString("%@ %i", name, 3).
    // NOLINTBEGIN(google-explicit-constructor)
    template <std::integral T>
    FormatArgument(T value) : value_(static_cast<long long>(value)) {}
    template <std::floating_point T>
    FormatArgument(T value) : value_(static_cast<double>(value)) {}
    FormatArgument(std::string_view value) : value_(std::string(value)) {}
    FormatArgument(const std::string& value) : value_(value) {}
    FormatArgument(const char* value) : value_(std::string(value)) {}
    FormatArgument(const std::filesystem::path& value) : value_(value.native()) {}
    // NOLINTEND(google-explicit-constructor)

    using Value = std::variant<long long, double, std::string>;
    [[nodiscard]] const Value& value() const { return value_; }

private:
    Value value_;
};

/// Fills a format text: "%@" takes any argument in its plain form; "%i", "%d", "%u", "%li", "%lu",
/// "%x", "%f", "%s" with the usual flags, width and precision take theirs; "%%" is a per cent sign.
/// A place without an argument prints "(null)"; arguments left over are ignored. Any thread.
[[nodiscard]] std::string formatString(std::string_view format,
                                       std::initializer_list<FormatArgument> arguments);

template <typename... Arguments>
[[nodiscard]] std::string makeString(std::string_view format, const Arguments&... arguments) {
    return formatString(format, {FormatArgument(arguments)...});
}

}  // namespace reelvane
