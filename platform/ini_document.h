#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "support/ports/preferences_store.h"

using GKeyFile = struct _GKeyFile;  // NOLINT(bugprone-reserved-identifier): GLib's name

namespace reelvane {

/// One group of a key file (INI). Comments, other groups and whatever is not changed stay as they
/// stand. Keys and values may be any bytes.
///
/// In a key, a byte that the format gives a meaning is written "%3D", and so is a "%" that two
/// hexadecimal digits follow. A value stands as it is, backslashes too; only control characters,
/// blanks at the ends and bytes that are not UTF-8, which no line can hold, are written "\{0A}".
///
/// The key "FileFormat" says that. Files of earlier versions lack it: their values had backslashes
/// doubled once more, and what no line can hold written "\n", "\s", "\xFF" and the like. They are
/// read so, and the first change writes all of them as above.
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
    /// One key and its value; `name` is the key as it stands in the file, which need not be as we
    /// would write it.
    struct Line {
        std::string name{};
        std::string key{};
        std::string value{};
    };
    struct Free {
        void operator()(GKeyFile* file) const;
    };

    [[nodiscard]] bool hasFormerFormat() const;
    [[nodiscard]] std::vector<Line> lines() const;
    void write(const std::string& name, const std::string& value);

    std::string group_;
    std::unique_ptr<GKeyFile, Free> file_;
};

}  // namespace reelvane
