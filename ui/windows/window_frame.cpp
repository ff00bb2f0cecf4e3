#include "ui/windows/window_frame.h"

#include <string>
#include <string_view>
#include <utility>

#include <QByteArray>
#include <QScreen>
#include <QWidget>

#include "support/preferences.h"

namespace reelvane {
namespace {

// The program's own memory, like its counters: nothing that a user would set.
constexpr std::string_view kMainWindowFrameKey = "MainWindowFrame";
constexpr QSize kComfortableSize(760, 560);

}  // namespace

void restoreFrame(QWidget& window, const Preferences& preferences) {
    const auto stored = preferences.defaultString(kMainWindowFrameKey).value_or("");
    if (window.restoreGeometry(QByteArray::fromBase64(QByteArray::fromStdString(stored)))) return;
    window.resize(kComfortableSize.boundedTo(window.screen()->availableSize()));
}

void rememberFrame(const QWidget& window, Preferences& preferences) {
    auto frame = window.saveGeometry().toBase64().toStdString();
    preferences.changeLater(kMainWindowFrameKey,
                            [frame = std::move(frame)](const std::optional<std::string>&) {
                                return std::optional(frame);
                            });
}

void bringToFront(QWidget& window) {
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

}  // namespace reelvane
