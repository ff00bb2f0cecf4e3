#pragma once

#include <QAction>
#include <QObject>

#include "ui/ui_context.h"
#include "ui/widgets/qt_text.h"

class QMenu;
class QMenuBar;

namespace reelvane {

class AuxiliaryWindows;
class CommandBar;

/// The main window's commands, which its menus and its toolbar share. Owned by the main window.
class MainActions final : public QObject {
public:
    MainActions(const UiContext& context, AuxiliaryWindows& windows, QWidget* window);

    void fillMenuBar(QMenuBar& bar, const QList<QAction*>& jobActions);
    void fillToolBar(CommandBar& bar);

private:
    void makeCommands(QWidget* window);
    void makeHelp();
    void bindPause();
    void bindQueue();
    void refreshQueue();
    QAction* add(const QString& text, const QIcon& icon, const QKeySequence& shortcut,
                 std::function<void()> triggered);
    void addLink(QMenu& menu, const QString& text, int choice);

    UiContext context_;
    AuxiliaryWindows& windows_;
    QAction* addMovies_ = nullptr;
    QAction* pauseQueue_ = nullptr;  ///< `pauseContinueMenuItem` and `pauseContinueToolbarItem`
    QAction* cleanUp_ = nullptr;
    QAction* undo_ = nullptr;
    QAction* preferences_ = nullptr;
    QAction* close_ = nullptr;
    QAction* quit_ = nullptr;
    QAction* rate_ = nullptr;
    QAction* promotion_ = nullptr;
    QAction* about_ = nullptr;
    Subscriptions subscriptions_;
};

}  // namespace reelvane
