#include "ui/main_window.h"

#include <utility>

#include <QCloseEvent>
#include <QMenuBar>
#include <QVBoxLayout>

#include "app/app_delegate.h"
#include "support/vantor.h"
#include "ui/auxiliary_windows.h"
#include "ui/command_bar.h"
#include "ui/drop_target.h"
#include "ui/empty_state.h"
#include "ui/file_sheet.h"
#include "ui/icons.h"
#include "ui/job_list_view.h"
#include "ui/main_actions.h"
#include "ui/page_stack.h"
#include "ui/qt_text.h"
#include "ui/window_frame.h"
#include "ui/window_front.h"

namespace reelvane {

MainWindow::MainWindow(const UiContext& context, PosterFrames& posters, std::function<void()> quit)
    : context_(context),
      quit_(std::move(quit)),
      windows_(std::make_unique<AuxiliaryWindows>(context, *this)) {
    setWindowIcon(context_.icons.coloured("reelvane"));
    setContextMenuPolicy(Qt::NoContextMenu);  // it would offer to hide the toolbar for good
    layOut(posters);
    bindController();
    new DropTarget(*this, context_.controller);
    restoreFrame(*this, context_.vantor.preferences());
}

MainWindow::~MainWindow() = default;

void MainWindow::layOut(PosterFrames& posters) {
    // In the order of the tab key, which is that of the eye.
    actions_ = new MainActions(context_, *windows_, this);
    auto* const bar = new CommandBar(this);
    bar->setWindowTitle(tr("Toolbar"));
    actions_->fillToolBar(*bar);
    addToolBar(bar);
    auto* const content = new QWidget(this);
    sheet_ = new FileSheet(context_, content);
    pages_ = new PageStack(content);
    emptyState_ = new EmptyState(context_, pages_);
    jobs_ = new JobListView(context_, posters, pages_);
    pages_->addWidget(emptyState_);
    pages_->addWidget(jobs_);
    auto* const column = new QVBoxLayout(content);
    column->setContentsMargins({});
    column->setSpacing(0);
    column->addWidget(sheet_);
    column->addWidget(pages_, 1);
    setCentralWidget(content);

    actions_->fillMenuBar(*menuBar(), jobs_->jobActions());
    emptyState_->focusDefault();  // else the toolbar's first button had it
}

void MainWindow::bindController() {
    auto& controller = context_.controller;
    subscriptions_.push_back(bind(controller.windowTitle(), [this](const std::string& title) {
        setWindowTitle(toQString(title));
    }));
    subscriptions_.push_back(controller.observeWindowRequests([this](const WindowRequest& wanted) {
        if (wanted.kind == WindowRequest::Kind::Main) bringToFront(*this);
    }));
    subscriptions_.push_back(controller.queue().observeMembership(
        [this](ConversionJob&, JobQueue::Membership) { showListOrInvitation(); }));
    showListOrInvitation();
}

void MainWindow::showListOrInvitation() {
    const bool empty = context_.controller.queue().taskArray().empty();
    QWidget* const page = empty ? static_cast<QWidget*>(emptyState_) : jobs_;
    if (pages_->currentWidget() != page) pages_->setCurrentWidget(page);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    rememberFrame(*this, context_.vantor.preferences());
    if (!context_.controller.applicationShouldTerminate()) {
        event->ignore();
        return;
    }
    event->accept();
    quit_();
}

}  // namespace reelvane
