#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace reelvane {

/// What the bytes of a text tell of its encoding.
struct FoundEncoding {
    enum class Kind {
        AsItIs,  ///< UTF-8, or what its byte-order mark says
        Named,   ///< `name` says what
        Unknown  ///< nobody can tell
    };
    Kind kind = Kind::AsItIs;
    std::string name{};  ///< for iconv and the converter: "CP1252", "SHIFT_JIS"
};

/// Finds the encoding of a text. Pure; takes milliseconds for a megabyte.
[[nodiscard]] FoundEncoding findEncoding(std::string_view text);

/// "UTF-8", "UTF-16LE" or "UTF-16BE" by the mark that the text begins with; empty without one.
[[nodiscard]] std::string_view byteOrderMark(std::string_view text);

/// The text in UTF-8, without its byte-order mark; absent when it is not valid in this encoding, or
/// the encoding is not known.
[[nodiscard]] std::optional<std::string> decoded(std::string_view text, std::string_view encoding);

/// The lines with characters outside ASCII: in these alone encodings differ.
[[nodiscard]] std::vector<std::string_view> tellingLines(std::string_view text);

}  // namespace reelvane
