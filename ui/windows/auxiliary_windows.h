#pragma once

#include <QPointer>
#include <QString>

#include "ui/ui_context.h"
#include "ui/widgets/qt_text.h"

class QWidget;

namespace reelvane {

class AboutDialog;
class PreferencesWindow;
class PromotionWindow;
class RatingWindow;

/// The windows beside the main one: made when they are first wanted, one of each, and brought to
/// the front when wanted again. All but the preferences are released when closed.
class AuxiliaryWindows final {
public:
    AuxiliaryWindows(const UiContext& context, QWidget& mainWindow);
    ~AuxiliaryWindows();
    AuxiliaryWindows(const AuxiliaryWindows&) = delete;
    AuxiliaryWindows& operator=(const AuxiliaryWindows&) = delete;
    AuxiliaryWindows(AuxiliaryWindows&&) = delete;
    AuxiliaryWindows& operator=(AuxiliaryWindows&&) = delete;

    void openPreferences();
    void openAbout();
    void openPromotion();
    /// The rating window as the user asks for it.
    void openRating();

private:
    void openRating(const QString& introText);

    UiContext context_;
    QWidget& mainWindow_;
    QPointer<PreferencesWindow> preferences_;
    QPointer<AboutDialog> about_;
    QPointer<PromotionWindow> promotion_;
    QPointer<RatingWindow> rating_;
    QString feedback_;  // what was written there, while the program runs
    Subscriptions subscriptions_;
};

}  // namespace reelvane
