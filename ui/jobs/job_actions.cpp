#include "ui/jobs/job_actions.h"

#include <utility>

#include <QAbstractItemView>
#include <QMenu>

#include "conversion/conversion_job.h"
#include "ui/jobs/job_commands.h"

namespace reelvane {
namespace {

// Where a row's buttons have a use for the key themselves.
constexpr auto kListOnly = Qt::WidgetShortcut;
constexpr auto kListAndRows = Qt::WidgetWithChildrenShortcut;

}  // namespace

JobActions::JobActions(QAbstractItemView& list, JobSelection selection, JobCommands& commands,
                       const JobIcons& icons, const QIcon& copy)
    : QObject(&list),
      list_(list),
      selection_(std::move(selection)),
      commands_(commands),
      icons_(icons),
      menu_(new QMenu(&list)) {
    pause_ = addForCurrent(tr("Pause"), icons.pause, {Qt::Key_Space}, kListOnly,
                           [this](ConversionJob& job) { commands_.pauseOrContinue(job); });
    addSeparator();
    reveal_ = addForCurrent(tr("Show in Files"), icons.reveal, {}, kListOnly,
                            [this](ConversionJob& job) { commands_.reveal(job); });
    setReturnReveals(true);
    addForCurrent(tr("Show Source in Files"), {}, {}, kListOnly,
                  [this](ConversionJob& job) { commands_.showSource(job); });
    addForCurrent(tr("Details…"), icons.details,
                  {Qt::CTRL | Qt::Key_I, Qt::ALT | Qt::Key_Return, Qt::ALT | Qt::Key_Enter},
                  kListAndRows, [this](ConversionJob& job) { commands_.openDetails(job); });
    copy_ = addForCurrent(tr("Copy Command Line"), copy, {}, kListOnly,
                          [this](ConversionJob& job) { commands_.copyCommandLine(job); });
    addSeparator();
    remove_ = add(tr("Remove"), icons.remove, {QKeySequence::Delete}, kListAndRows,
                  [this] { selection_.remove(); });
    selectAll_ = add(tr("Select All"), {}, {QKeySequence::SelectAll}, kListAndRows,
                     [this] { list_.selectAll(); });
    connect(menu_, &QMenu::aboutToHide, this, [this] { menuJob_ = nullptr; });
}

QAction* JobActions::add(const QString& text, const QIcon& icon, const QList<QKeySequence>& keys,
                         Qt::ShortcutContext context, std::function<void()> triggered) {
    auto* const action = new QAction(icon, text, this);
    action->setShortcuts(keys);
    action->setShortcutContext(context);
    connect(action, &QAction::triggered, this, std::move(triggered));
    list_.addAction(action);
    actions_.append(action);
    return action;
}

QAction* JobActions::addForCurrent(const QString& text, const QIcon& icon,
                                   const QList<QKeySequence>& keys, Qt::ShortcutContext context,
                                   Command command) {
    auto* const action = add(text, icon, keys, context, [this, command = std::move(command)] {
        if (auto* const job = selection_.current()) command(*job);
    });
    forCurrent_.append(action);
    return action;
}

void JobActions::addSeparator() {
    auto* const separator = new QAction(this);
    separator->setSeparator(true);
    actions_.append(separator);
}

void JobActions::refresh() {
    const auto* const job = selection_.current();
    for (auto* const action : forCurrent_) action->setEnabled(job != nullptr);
    if (job != nullptr) refreshForCurrent(*job);
    const auto selected = selection_.count();
    remove_->setEnabled(selected > 0 || job != nullptr);
    remove_->setText(selected > 1 ? tr("Remove %n Movies", nullptr, selected) : tr("Remove"));
    selectAll_->setEnabled(list_.model()->rowCount() > 0);
}

void JobActions::refreshForCurrent(const ConversionJob& job) {
    const auto controls = jobControls(job.state());
    pause_->setEnabled(commands_.canPauseOrContinue(job));
    pause_->setIcon(controls.pauses ? icons_.pause : icons_.start);
    pause_->setText(controls.pauses   ? tr("Pause")
                    : controls.starts ? tr("Start Now")
                                      : tr("Continue"));
    reveal_->setEnabled(controls.reveals);
    reveal_->setIcon(list_.isRightToLeft() ? icons_.revealLeftwards : icons_.reveal);
    reveal_->setText(controls.explains ? tr("Explain the Failure") : tr("Show in Files"));
    copy_->setEnabled(hasCommandLine(job));
}

void JobActions::popUp(const QPoint& place) {
    refresh();
    menu_->clear();
    const bool several = selection_.count() > 1;
    for (auto* const action : std::as_const(actions_)) {
        if (!action->isEnabled() || (several && forCurrent_.contains(action))) continue;
        menu_->addAction(action);
    }
    menuJob_ = selection_.current();
    menu_->popup(place);
}

void JobActions::setReturnReveals(bool reveals) {
    const QList<QKeySequence> keys = {Qt::Key_Return, Qt::Key_Enter, Qt::SHIFT | Qt::Key_Return,
                                      Qt::SHIFT | Qt::Key_Enter};
    reveal_->setShortcuts(reveals ? keys : QList<QKeySequence>());
}

void JobActions::forget(const ConversionJob& job) {
    // The menu would speak of another job from now on.
    if (menuJob_ == &job) menu_->close();
}

}  // namespace reelvane
