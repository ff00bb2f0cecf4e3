#pragma once

#include <array>
#include <functional>
#include <optional>

#include <QIcon>
#include <QWidget>

#include "conversion/status_line.h"
#include "support/observable.h"
#include "ui/jobs/job_commands.h"
#include "ui/widgets/slow_disk.h"

class QBoxLayout;
class QLabel;
class QProgressBar;

namespace reelvane {

class ElidedLabel;
class FlatButton;
class IconView;
class Icons;
class PosterFrames;
class PosterView;

/// The pictures of the rows, read once for all of them.
struct JobIcons {
    explicit JobIcons(const Icons& icons);

    QIcon film;
    QIcon pause;
    QIcon start;
    QIcon details;
    QIcon remove;
    QIcon reveal;
    QIcon revealLeftwards;
    QIcon speed;
    QIcon warning;
    QIcon finished;
    QIcon failed;
};

/// One visible row of the job list. It shows one job after the other as the list is scrolled, and
/// paints no ground of its own: the list shows there what is selected. Main thread only.
class JobRow final : public QWidget {
public:
    JobRow(JobCommands& commands, PosterFrames& posters, const JobIcons& icons, QWidget* parent);

    /// Follows this job from now on.
    void showJob(ConversionJob& job);
    /// Lets go of the job, which is never touched again.
    void clear();
    [[nodiscard]] ConversionJob* job() const { return job_; }

    /// Only the current row's buttons are stations of the tab key.
    void setCurrent(bool current);
    /// The buttons in the order of the tab key.
    [[nodiscard]] const auto& buttons() const { return buttons_; }
    /// Shows what the job is now.
    void refresh();

protected:
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    enum Button : std::size_t { Pause, Details, Remove, Reveal, ButtonCount };

    using Command = std::function<void(ConversionJob&)>;

    void makeParts(PosterFrames& posters);
    void makeButton(Button button, const QIcon& icon, Command command);
    void layOut();
    void fitToFont();
    void nameControls();
    /// What there is to say of the row has changed.
    void announceNameChange();
    bool showProgress();  ///< true: there is any
    bool showNote(QString text);
    void showButtons();
    void updateGround();

    JobCommands& commands_;
    const JobIcons& icons_;
    ConversionJob* job_ = nullptr;
    std::optional<ConversionJobState> announcedState_;  ///< what assistive programs know
    Subscription subscription_;
    SlowDisk slowDisk_{[this] { refresh(); }};
    PosterView* poster_ = nullptr;
    ElidedLabel* name_ = nullptr;
    IconView* outcome_ = nullptr;
    ElidedLabel* status_ = nullptr;
    QWidget* facts_ = nullptr;  ///< the third line
    QProgressBar* progress_ = nullptr;
    QLabel* percent_ = nullptr;
    QLabel* remaining_ = nullptr;  ///< shown while something is known of it
    IconView* noteIcon_ = nullptr;
    ElidedLabel* note_ = nullptr;
    std::array<FlatButton*, ButtonCount> buttons_{};
    QBoxLayout* texts_ = nullptr;       ///< the three lines
    QBoxLayout* statusLine_ = nullptr;  ///< the second one
    QBoxLayout* buttonColumns_ = nullptr;
};

}  // namespace reelvane
