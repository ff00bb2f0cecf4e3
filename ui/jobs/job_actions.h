#pragma once

#include <functional>

#include <QAction>
#include <QList>
#include <QObject>

#include "ui/jobs/job_row.h"

class QAbstractItemView;
class QMenu;

namespace reelvane {

/// What the actions ask of their list, whenever it matters.
struct JobSelection {
    std::function<ConversionJob*()> current{};  ///< null: no row has the keyboard
    std::function<int()> count{};
    std::function<void()> remove{};  ///< takes the selected jobs off the list
};

/// The list's commands for its current and its selected jobs, with their keys. Owned by the list.
class JobActions final : public QObject {
public:
    JobActions(QAbstractItemView& list, JobSelection selection, JobCommands& commands,
               const JobIcons& icons, const QIcon& copy);

    [[nodiscard]] QList<QAction*> all() const { return actions_; }
    /// Offers what applies now.
    void refresh();

    /// The context menu of the current job, or of the selection.
    void popUp(const QPoint& place);
    /// While a movie is being read, Return is meant for that one and does nothing to a row.
    void setReturnReveals(bool reveals);
    /// Closes a menu that was opened for this job.
    void forget(const ConversionJob& job);

private:
    using Command = std::function<void(ConversionJob&)>;

    QAction* add(const QString& text, const QIcon& icon, const QList<QKeySequence>& keys,
                 Qt::ShortcutContext context, std::function<void()> triggered);
    QAction* addForCurrent(const QString& text, const QIcon& icon, const QList<QKeySequence>& keys,
                           Qt::ShortcutContext context, Command command);
    void addSeparator();
    void refreshForCurrent(const ConversionJob& job);

    QAbstractItemView& list_;
    JobSelection selection_;
    JobCommands& commands_;
    const JobIcons& icons_;
    QList<QAction*> actions_;
    QList<QAction*> forCurrent_;
    QAction* pause_ = nullptr;
    QAction* reveal_ = nullptr;
    QAction* copy_ = nullptr;
    QAction* remove_ = nullptr;
    QAction* selectAll_ = nullptr;
    QMenu* menu_ = nullptr;
    const ConversionJob* menuJob_ = nullptr;  ///< the menu was opened for it; never looked into
};

}  // namespace reelvane
