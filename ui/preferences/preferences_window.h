#pragma once

#include <vector>

#include <QDialog>

#include "ui/ui_context.h"

class QBoxLayout;
class QListWidget;
class QStackedWidget;

namespace reelvane {

class PreferencePage;

/// The preferences: a list of pages at the side, and the page that is chosen there. What the user
/// changes is stored at once. Closing hides the window; shown again it shows what is stored then.
class PreferencesWindow final : public QDialog {
public:
    explicit PreferencesWindow(const UiContext& context, QWidget* parent = nullptr);

    void done(int result) override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void addPage(PreferencePage* page, std::string_view icon);
    void makeSidebar();
    [[nodiscard]] QWidget* makeButtons();
    void makeShortcuts();
    void turn(int pages);
    void askReset();
    void reset(const std::vector<PreferencePage*>& pages);
    void showStored();
    void adaptToScreen();

    UiContext context_;
    QListWidget* sidebar_ = nullptr;
    QStackedWidget* stack_ = nullptr;
    std::vector<PreferencePage*> pages_;
};

}  // namespace reelvane
