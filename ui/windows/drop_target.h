#pragma once

#include <QObject>

class QDropEvent;
class QWidget;

namespace reelvane {

class AppDelegate;

/// Lets the user drop movies anywhere on a window, and shows where they may. The window owns it.
class DropTarget final : public QObject {
public:
    DropTarget(QWidget& window, AppDelegate& controller);

    [[nodiscard]] bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void enter(QDropEvent& event);
    void over(QDropEvent& event) const;
    void drop(QDropEvent& event);
    void showHighlight(bool shown);

    QWidget& window_;
    AppDelegate& controller_;
    QWidget* highlight_ = nullptr;
    bool welcome_ = false;  // what is dragged over the window may be dropped
};

}  // namespace reelvane
