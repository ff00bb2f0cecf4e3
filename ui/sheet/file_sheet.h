#pragma once

#include <QPointer>
#include <QVariantAnimation>
#include <QWidget>

#include "ui/ui_context.h"
#include "ui/widgets/qt_text.h"
#include "ui/widgets/slow_disk.h"

class QShortcut;

namespace reelvane {

class FileSheetPanel;

/// The sheet that slides in at the top of the main window and asks how the present file is to be
/// converted. Hidden it is no part of the window: no keyboard, no room.
class FileSheet final : public QWidget {
public:
    FileSheet(const UiContext& context, QWidget* parent);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void followTurn();
    void followFile();
    void followDisk();
    void showWaiting();
    void slide(double extent);
    void place(double extent);
    [[nodiscard]] int fullHeight() const;
    [[nodiscard]] bool animates() const;
    [[nodiscard]] bool hasKeyboard() const;
    void takeKeyboard();
    void takeKeyboardLater();
    void giveKeyboardBack();

    UiContext context_;
    FileSheetPanel* panel_ = nullptr;
    QShortcut* leave_ = nullptr;
    QVariantAnimation slide_;
    SlowDisk slowDisk_;
    bool shown_ = false;          // or on its way in
    double extent_ = 0;           // how far it has come in: 0 hidden, 1 shown
    QPointer<QWidget> returnTo_;  // had the keyboard before
    Subscriptions subscriptions_;
};

}  // namespace reelvane
