#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "support/ports/preferences_store.h"

using GKeyFile = struct _GKeyFile;  // NOLINT(bugprone-reserved-identifier): GLib's name

namespace reelvane {

/// One group of a key file (INI). Comments, other groups and whatever is not changed stay as they
/// stand. Keys and values may be any bytes: what a key file cannot hold is escaped.
///
/// In a key, a byte that the format gives a meaning is written "%3D", and so is a "%" that two
/// hexadecimal digits follow. In a value, control characters, blanks at the ends, and bytes that
/// are not UTF-8 are written "\n", "\s", "\xFF" and the like. Other escapes are read as they stand.
class IniDocument {
public:
    explicit IniDocument(std::string group);

    /// Absent when the text is no key file.
    [[nodiscard]] static std::optional<IniDocument> parse(const std::string& text,
                                                          std::string group);

    [[nodiscard]] PreferenceValues values() const;
    /// Writes what is another one than `before`, which are `values()`, and forgets what is missing.
    void change(const PreferenceValues& before, const PreferenceValues& after);
    [[nodiscard]] std::string text() const;

private:
    struct Free {
        void operator()(GKeyFile* file) const;
    };

    std::string group_;
    std::unique_ptr<GKeyFile, Free> file_;
};

/// Any bytes as a key file's key, and back. See IniDocument for the forms.
[[nodiscard]] std::string escapedIniKey(std::string_view key);
[[nodiscard]] std::string unescapedIniKey(std::string_view text);

/// Any bytes as a key file's value, and back.
[[nodiscard]] std::string escapedIniValue(std::string_view value);
[[nodiscard]] std::string unescapedIniValue(std::string_view text);

}  // namespace reelvane
