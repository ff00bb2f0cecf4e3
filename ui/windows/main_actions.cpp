#include "ui/windows/main_actions.h"

#include <utility>

#include <QMenuBar>

#include "app/app_delegate.h"
#include "conversion/conversion_job.h"
#include "support/problem_reports.h"
#include "support/vantor.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/qt_text.h"
#include "ui/windows/auxiliary_windows.h"
#include "ui/windows/command_bar.h"

namespace reelvane {

MainActions::MainActions(const UiContext& context, AuxiliaryWindows& windows, QWidget* window)
    : QObject(window),
      context_(context),
      windows_(windows) {
    makeCommands(window);
    makeHelp();
    bindPause();
    bindQueue();
}

QAction* MainActions::add(const QString& text, const QIcon& icon, const QKeySequence& shortcut,
                          std::function<void()> triggered) {
    auto* const action = new QAction(icon, text, this);
    if (!shortcut.isEmpty()) action->setShortcut(shortcut);
    connect(action, &QAction::triggered, this, std::move(triggered));
    return action;
}

void MainActions::makeCommands(QWidget* window) {
    auto& controller = context_.controller;
    const auto& icons = context_.icons;
    addMovies_ = add(tr("&Add Movies…"), icons.symbolic("add"), QKeySequence::Open,
                     [&controller] { controller.intake().addClicked(); });
    addMovies_->setIconText(tr("Add"));
    addMovies_->setToolTip(tr("Choose movies and subtitle files to convert"));
    pauseQueue_ = add({}, {}, QKeySequence(Qt::CTRL | Qt::Key_P),
                      [&controller] { controller.queueControl().togglePause(); });
    pauseQueue_->setToolTip(tr("Pause or resume the whole queue"));
    cleanUp_ = add(tr("C&lean Up"), icons.symbolic("clean_up"), QKeySequence(Qt::CTRL | Qt::Key_L),
                   [&controller] { controller.queueControl().cleanClicked(); });
    cleanUp_->setToolTip(tr("Take finished movies off the list; the files stay"));
    undo_ = add(tr("&Undo Removal"), {}, QKeySequence::Undo,
                [&controller] { controller.queueControl().undoRemoval(); });
    preferences_ =
        add(tr("Pr&eferences…"), icons.symbolic("preferences"),
            QKeySequence(Qt::CTRL | Qt::Key_Comma), [this] { windows_.openPreferences(); });
    preferences_->setIconText(tr("Preferences"));
    preferences_->setToolTip(tr("How movies are converted and where they go"));
    preferences_->setMenuRole(QAction::PreferencesRole);
    close_ = add(tr("&Close Window"), {}, QKeySequence::Close, [window] { window->close(); });
    quit_ = add(tr("&Quit"), {}, QKeySequence(Qt::CTRL | Qt::Key_Q), [window] { window->close(); });
    quit_->setMenuRole(QAction::QuitRole);
}

void MainActions::makeHelp() {
    const auto name = toQString(context_.vantor.appName());
    rate_ = add(tr("&Rate %1…").arg(name), {}, {}, [this] { windows_.openRating(); });
    promotion_ = add(tr("&What %1 Can Do").arg(name), {}, {},
                     [this] { context_.controller.windows().openPromotion(); });
    about_ = add(tr("&About %1").arg(name), {}, {}, [this] { windows_.openAbout(); });
    about_->setMenuRole(QAction::AboutRole);
    subscriptions_.push_back(bind(context_.controller.lifecycle().usages().isRateable(),
                                  [this](bool rateable) { rate_->setEnabled(rateable); }));
}

void MainActions::bindPause() {
    auto& queue = context_.controller.queueControl();
    subscriptions_.push_back(bind(queue.pauseTitle(), [this](const std::string& title) {
        pauseQueue_->setText(toQString(title));
    }));
    subscriptions_.push_back(bind(queue.pauseImage(), [this](const std::string& image) {
        pauseQueue_->setIcon(context_.icons.symbolic(image));
    }));
}

void MainActions::bindQueue() {
    auto& controller = context_.controller;
    subscriptions_.push_back(controller.queue().observeMembership(
        [this](ConversionJob&, JobQueue::Membership) { refreshQueue(); }));
    subscriptions_.push_back(controller.queue().observeStates([this] { refreshQueue(); }));
    // A finished movie may be compared with its source, or be given a warning, later.
    subscriptions_.push_back(controller.queue().observeJobs([this](const ConversionJob& job) {
        if (job.state() == ConversionJobState::Finished) refreshQueue();
    }));
    subscriptions_.push_back(controller.intake().present().observe([this] { refreshQueue(); }));
    subscriptions_.push_back(controller.intake().observeIdle([this] { refreshQueue(); }));
    subscriptions_.push_back(bind(controller.queueControl().undoableRemoval(),
                                  [this](const auto& removal) { undo_->setEnabled(!!removal); }));
    refreshQueue();
}

void MainActions::refreshQueue() {
    auto& controller = context_.controller;
    cleanUp_->setEnabled(controller.queueControl().canCleanUp());
    // With a movie on its way, a pause means that it is only to be added.
    pauseQueue_->setEnabled(controller.queueControl().paused() || controller.intake().isBusy() ||
                            !controller.queue().taskArray().empty());
}

void MainActions::addLink(QMenu& menu, const QString& text, int choice) {
    auto& vantor = context_.vantor;
    // A page that the program does not have is not offered.
    if (choice != SupportRequestURL && linkForChoice(vantor, choice).empty()) return;
    menu.addAction(add(text, {}, {}, [&vantor, choice] { openURL(vantor, choice); }));
}

void MainActions::fillMenuBar(QMenuBar& bar, const QList<QAction*>& jobActions) {
    auto* const file = bar.addMenu(tr("&File"));
    file->addAction(addMovies_);
    file->addSeparator();
    file->addAction(close_);
    file->addAction(quit_);
    auto* const edit = bar.addMenu(tr("&Edit"));
    edit->addAction(undo_);
    edit->addSeparator();
    edit->addActions(jobActions);
    edit->addSeparator();
    edit->addAction(preferences_);
    auto* const queue = bar.addMenu(tr("&Queue"));
    queue->addAction(pauseQueue_);
    queue->addAction(cleanUp_);
    auto* const help = bar.addMenu(tr("&Help"));
    addLink(*help, tr("&Contact Support…"), SupportRequestURL);
    addLink(*help, tr("&Home Page"), ProductPageURL);
    addLink(*help, tr("&Store Page"), StorePageURL);
    help->addAction(promotion_);
    help->addAction(rate_);
    help->addSeparator();
    help->addAction(about_);
}

void MainActions::fillToolBar(CommandBar& bar) {
    bar.addCommand(*addMovies_);
    bar.addCommand(*pauseQueue_);
    bar.addCommand(*cleanUp_);
    bar.addSpace();
    bar.addCommand(*preferences_);
}

}  // namespace reelvane
