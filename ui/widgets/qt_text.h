#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include <QString>
#include <QTranslator>
#include <QUrl>

#include "support/observable.h"
#include "support/ports/translations.h"

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

/// Lets tr() ask the program's own catalogues, so that window and core share one. The context is
/// ignored. Main thread, and as long as the application object.
class PortTranslator final : public QTranslator {
public:
    explicit PortTranslator(const Translations& translations) : translations_(translations) {}

    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char* context, const char* sourceText,
                                    const char* disambiguation, int n) const override;

private:
    const Translations& translations_;
};

/// What a widget watches; the watching ends with the widget.
using Subscriptions = std::vector<Subscription>;

/// Shows the value now and after every change.
template <typename T, typename Show>
[[nodiscard]] Subscription bind(Observable<T>& value, Show show) {
    show(value.get());
    return value.observe([&value, show = std::move(show)] { show(value.get()); });
}

}  // namespace reelvane
