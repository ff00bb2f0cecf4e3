#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// How values stand in the preferences store: always one line of UTF-8 without white space at its
/// ends, so that any INI file can hold it and a person can read it.
///
///     a number      42, 1.5
///     a text        as it is
///     a list        (first;second;)     the empty list: ()
///     a dictionary  {key=value;}        the empty dictionary: {}
///
/// A backslash escapes: \n, \t, \r, \\, \; and \= are what they look like, \xHH is one byte. A text
/// that begins like a list or a dictionary has its first character escaped. Every value of any
/// bytes comes back as it was. Pure functions; any thread.
namespace reelvane {

[[nodiscard]] std::string preferenceText(std::string_view value);
[[nodiscard]] std::string preferenceText(int value);
[[nodiscard]] std::string preferenceText(float value);
[[nodiscard]] std::string preferenceText(const std::vector<std::string>& list);
[[nodiscard]] std::string preferenceText(
    const std::map<std::string, std::string, std::less<>>& dictionary);

/// Absent when the text is a list or a dictionary.
[[nodiscard]] std::optional<std::string> stringFromPreferenceText(std::string_view text);
/// Absent when the text is no list. The last separator may be missing.
[[nodiscard]] std::optional<std::vector<std::string>> listFromPreferenceText(std::string_view text);
/// Absent when the text is no dictionary. An entry without "=" has an empty value.
[[nodiscard]] std::optional<std::map<std::string, std::string, std::less<>>>
dictionaryFromPreferenceText(std::string_view text);

}  // namespace reelvane
