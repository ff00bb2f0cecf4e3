#pragma once

#include <QToolBar>

namespace reelvane {

/// The main window's toolbar. Every command is a station of the tab key. Where the window is too
/// narrow for their texts the buttons show their pictures alone: none is ever out of sight.
class CommandBar final : public QToolBar {
public:
    explicit CommandBar(QWidget* parent);

    void addCommand(QAction& action);
    /// What is added from now on stands at the other end.
    void addSpace();

protected:
    bool event(QEvent* event) override;

private:
    void fitIcons();
    void fitTexts();

    int roomForTexts_ = 0;
};

}  // namespace reelvane
