#include "ui/windows/main_window.h"

#include <utility>

#include <QCloseEvent>
#include <QMenuBar>
#include <QVBoxLayout>

#include "app/app_delegate.h"
#include "support/vantor.h"
#include "ui/jobs/job_list_accessible.h"
#include "ui/jobs/job_list_view.h"
#include "ui/sheet/file_sheet.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/pages.h"
#include "ui/widgets/qt_text.h"
#include "ui/windows/auxiliary_windows.h"
#include "ui/windows/command_bar.h"
#include "ui/windows/drop_target.h"
#include "ui/windows/empty_state.h"
#include "ui/windows/main_actions.h"
#include "ui/windows/notice_bar.h"
#include "ui/windows/window_frame.h"

namespace reelvane {

namespace {

QString removalText(const Removal& removal) {
    const auto name = displayName(removal.fileName);
    if (removal.jobs > 1) {
        const auto jobs = static_cast<int>(removal.jobs);
        return removal.losesWork
                   ? MainWindow::tr(
                         "%n movies were removed; what was converted of them is about "
                         "to be deleted.",
                         nullptr, jobs)
                   : MainWindow::tr("%n movies were removed from the list.", nullptr, jobs);
    }
    return removal.losesWork
               ? MainWindow::tr(
                     "“%1” was removed; what was converted of it is about to be deleted.")
                     .arg(name)
               : MainWindow::tr("“%1” was removed from the list.").arg(name);
}

}  // namespace

MainWindow::MainWindow(const UiContext& context, PosterFrames& posters, std::function<void()> quit)
    : context_(context),
      quit_(std::move(quit)),
      windows_(std::make_unique<AuxiliaryWindows>(context, *this)) {
    describeJobLists();
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
    stopBar_ = new NoticeBar(
        NoticeBar::Edge::Above, tr("Start Queue"),
        [this] { context_.controller.queueControl().startNextJobInQueue(); }, content);
    undoBar_ = new NoticeBar(
        NoticeBar::Edge::Below, tr("Undo"),
        [this] { context_.controller.queueControl().undoRemoval(); }, content);
    QWidget::setTabOrder(stopBar_, pages_);
    column->addWidget(sheet_);
    column->addWidget(stopBar_);
    column->addWidget(pages_, 1);
    column->addWidget(new RefusedFilesBar(context_.controller.intake().refusedFiles(), content));
    column->addWidget(undoBar_);
    setCentralWidget(content);

    actions_->fillMenuBar(*menuBar(), jobs_->jobActions());
    emptyState_->focusDefault();  // else the toolbar's first button had it
}

void MainWindow::bindController() {
    auto& controller = context_.controller;
    subscriptions_.push_back(
        bind(controller.queueControl().windowTitle(),
             [this](const std::string& title) { setWindowTitle(toQString(title)); }));
    subscriptions_.push_back(controller.windows().observe([this](const WindowRequest& wanted) {
        if (wanted.kind == WindowRequest::Kind::Main) bringToFront(*this);
    }));
    subscriptions_.push_back(controller.queue().observeMembership(
        [this](ConversionJob&, JobQueue::Membership) { showListOrInvitation(); }));
    auto& removal = controller.queueControl().undoableRemoval();
    subscriptions_.push_back(bind(removal, [this](const auto& /*removal*/) { showRemoval(); }));
    subscriptions_.push_back(
        bind(controller.queueRest().hasStopped(), [this](bool /*hasStopped*/) { showStop(); }));
    showListOrInvitation();
}

void MainWindow::showRemoval() {
    const auto& removal = context_.controller.queueControl().undoableRemoval().get();
    if (!removal) {
        hideBar(*undoBar_);
        return;
    }
    undoBar_->showText(removalText(*removal));
}

void MainWindow::showStop() {
    if (context_.controller.queueRest().hasStopped().get()) {
        stopBar_->showText(tr("The queue has stopped."));
    } else {
        hideBar(*stopBar_);
    }
}

void MainWindow::hideBar(NoticeBar& bar) {
    // Else the keyboard would go on to whatever comes next in the window.
    const auto* const focused = focusWidget();
    const bool hadKeyboard = focused != nullptr && bar.isAncestorOf(focused);
    bar.hide();
    if (hadKeyboard) focusPage();
}

void MainWindow::showListOrInvitation() {
    const bool empty = context_.controller.queue().taskArray().empty();
    QWidget* const page = empty ? static_cast<QWidget*>(emptyState_) : jobs_;
    if (pages_->currentWidget() == page) return;
    const bool hadKeyboard = pages_->isAncestorOf(focusWidget());
    pages_->setCurrentWidget(page);
    if (hadKeyboard) focusPage();
}

void MainWindow::focusPage() {
    if (pages_->currentWidget() == jobs_) {
        jobs_->setFocus(Qt::OtherFocusReason);
    } else {
        emptyState_->focusDefault();
    }
}

void MainWindow::closeEvent(QCloseEvent* event) {
    rememberFrame(*this, context_.vantor.preferences());
    if (!context_.controller.lifecycle().applicationShouldTerminate()) {
        event->ignore();
        return;
    }
    event->accept();
    quit_();
}

}  // namespace reelvane
