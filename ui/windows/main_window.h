#pragma once

#include <functional>
#include <memory>

#include <QMainWindow>

#include "ui/ui_context.h"
#include "ui/widgets/qt_text.h"

class QStackedWidget;

namespace reelvane {

class AuxiliaryWindows;
class EmptyState;
class FileSheet;
class JobListView;
class MainActions;
class NoticeBar;
class PosterFrames;

/// The main window: the toolbar, the file sheet, and the job list or what stands in its place.
/// It mirrors the controller; closing it asks to quit.
class MainWindow final : public QMainWindow {
public:
    /// `quit` ends the program once the user has agreed to it.
    MainWindow(const UiContext& context, PosterFrames& posters, std::function<void()> quit);
    ~MainWindow() override;
    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;
    MainWindow(MainWindow&&) = delete;
    MainWindow& operator=(MainWindow&&) = delete;

    [[nodiscard]] AuxiliaryWindows& auxiliaryWindows() { return *windows_; }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void layOut(PosterFrames& posters);
    void bindController();
    void showListOrInvitation();
    void showRemoval();
    void showStop();
    void hideBar(NoticeBar& bar);
    void focusPage();

    UiContext context_;
    std::function<void()> quit_;
    std::unique_ptr<AuxiliaryWindows> windows_;
    MainActions* actions_ = nullptr;
    FileSheet* sheet_ = nullptr;
    QStackedWidget* pages_ = nullptr;
    EmptyState* emptyState_ = nullptr;
    JobListView* jobs_ = nullptr;
    NoticeBar* stopBar_ = nullptr;
    NoticeBar* undoBar_ = nullptr;
    Subscriptions subscriptions_;
};

}  // namespace reelvane
