#include "ui/windows/auxiliary_windows.h"

#include <QCoreApplication>

#include "app/app_delegate.h"
#include "support/vantor.h"
#include "ui/preferences/preferences_window.h"
#include "ui/widgets/qt_text.h"
#include "ui/windows/about_dialog.h"
#include "ui/windows/rating_window.h"
#include "ui/windows/window_frame.h"

namespace reelvane {

namespace {

/// A closed window still lives for a moment, and must not be brought back.
template <typename Window>
void forgetWhenClosed(QPointer<Window>& window) {
    QObject::connect(window, &QDialog::finished, window, [&window] { window.clear(); });
}

}  // namespace

AuxiliaryWindows::AuxiliaryWindows(const UiContext& context, QWidget& mainWindow)
    : context_(context),
      mainWindow_(mainWindow) {
    auto& controller = context_.controller;
    subscriptions_.push_back(controller.windows().observe([this](const WindowRequest& wanted) {
        if (wanted.kind == WindowRequest::Kind::Promotion) openPromotion();
    }));
    subscriptions_.push_back(controller.lifecycle().usages().observePrompts(
        [this](const std::string& text) { openRating(toQString(text)); }));
}

AuxiliaryWindows::~AuxiliaryWindows() {
    delete preferences_;
}

void AuxiliaryWindows::openPreferences() {
    // Without a parent: it need not stand before the main window, nor keep it waiting for a panel.
    if (preferences_ == nullptr) preferences_ = new PreferencesWindow(context_, nullptr);
    bringToFront(*preferences_);
}

void AuxiliaryWindows::openAbout() {
    if (about_ == nullptr) {
        about_ = new AboutDialog(context_, &mainWindow_);
        forgetWhenClosed(about_);
    }
    bringToFront(*about_);
}

void AuxiliaryWindows::openPromotion() {
    if (promotion_ == nullptr) {
        promotion_ = new PromotionWindow(context_, &mainWindow_);
        forgetWhenClosed(promotion_);
    }
    bringToFront(*promotion_);
}

void AuxiliaryWindows::openRating() {
    openRating(QCoreApplication::translate("RatingWindow", "Thank you for using %1.")
                   .arg(toQString(context_.vantor.appName())));
}

void AuxiliaryWindows::openRating(const QString& introText) {
    if (rating_ == nullptr) {
        rating_ = new RatingWindow(context_, introText, feedback_, &mainWindow_);
    }
    rating_->setCloseBlock([this] { rating_.clear(); });
    bringToFront(*rating_);
}

}  // namespace reelvane
