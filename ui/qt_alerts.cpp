#include "ui/qt_alerts.h"

#include <filesystem>

#include <QApplication>

#include "support/alerts.h"
#include "ui/alert_box.h"
#include "ui/icons.h"
#include "ui/window_front.h"

namespace reelvane {
namespace {

constexpr const char* kProgramImage = "reelvane.svg";

}  // namespace

AlertAnswer QtAlerts::runModal(const AlertContent& content) {
    if (ended_) return {.button = cautiousButton(content)};
    auto* const behind = windowInFront();
    if (behind != nullptr) bringToFront(*behind);
    const auto image = content.image.empty() ? kProgramImage : content.image;
    const auto picture = icons_ != nullptr
                             ? icons_->coloured(std::filesystem::path(image).stem().native())
                             : QIcon();
    // Its parent may take it along while it is open.
    const QPointer box = new AlertBox(content, picture, behind);
    open_.push_back(box);
    box->ask();
    open_.pop_back();
    if (box == nullptr) return {.button = cautiousButton(content)};
    auto answer = box->answer();
    delete box;
    return answer;
}

void QtAlerts::endAll() {
    ended_ = true;
    for (const auto& box : open_) {
        if (box != nullptr) box->reject();
    }
}

QWidget* QtAlerts::windowInFront() const {
    if (auto* const modal = QApplication::activeModalWidget(); modal != nullptr) return modal;
    auto* const active = QApplication::activeWindow();
    if (active != nullptr && active->windowType() != Qt::Popup) return active;
    return mainWindow_ != nullptr && mainWindow_->isVisible() ? mainWindow_.data() : nullptr;
}

}  // namespace reelvane
