#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include <QString>
#include <QUrl>

namespace reelvane {

/// Text of the core, which is UTF-8, for a widget. Bytes that are none show as a replacement sign.
[[nodiscard]] QString toQString(std::string_view utf8);
/// The same for a button, a menu entry or the like, where an "&" would mark a shortcut.
[[nodiscard]] QString toControlText(std::string_view utf8);

/// The same for a tool tip, where "<" would begin markup. Only very long lines are
/// broken.
[[nodiscard]] QString toToolTip(const QString& text);

/// Keeps the order of a line's own words where the windows are laid out from right to left.
[[nodiscard]] QString isolated(const QString& line);

/// A path for the eye only: its bytes may be lost, so it is never turned back into a path.
[[nodiscard]] QString displayPath(const std::filesystem::path& path);
/// The last component of a path, likewise.
[[nodiscard]] QString displayName(const std::filesystem::path& path);

/// A file as a URL that keeps the bytes of its name, whatever they are.
[[nodiscard]] QUrl toUrl(const std::filesystem::path& path);
/// The path of a local file, byte for byte; absent for anything else.
[[nodiscard]] std::optional<std::filesystem::path> toPath(const QUrl& url);

}  // namespace reelvane
