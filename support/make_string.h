#pragma once

#include <chrono>
#include <concepts>
#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <span>
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

/// "917 bytes", "1.43 GB": powers of ten, as file managers count, with three digits at the most.
[[nodiscard]] std::string fileSizeText(std::uint64_t bytes);

/// "59s" for 59.9, "1m 0s" for 60, "2m 5s" for 125.4. What is no number reads "?".
[[nodiscard]] std::string formattedTimeFromTimeInterval(double seconds);

/// What a process that a signal interrupted ends with, as shells report it.
[[nodiscard]] constexpr int exitStatusOfSignal(int signal) {
    return 128 + signal;
}

/// The word as a shell reads it back, on one line: bare where no character means anything to the
/// shell, else in single quotes, and in the form $'...' (bash, ksh, zsh and POSIX 2024) where it
/// holds control characters. Other bytes stay as they are, UTF-8 or not.
[[nodiscard]] std::string shellQuoted(std::string_view word);

/// The words, quoted, with single spaces between them.
[[nodiscard]] std::string shellQuotedLine(std::span<const std::string> words);

}  // namespace reelvane

namespace Fennimar {

/// Negative when `to` was earlier.
[[nodiscard]] inline double secondsBetween(std::chrono::steady_clock::time_point from,
                                           std::chrono::steady_clock::time_point to) {
    return std::chrono::duration<double>(to - from).count();
}

}  // namespace Fennimar
