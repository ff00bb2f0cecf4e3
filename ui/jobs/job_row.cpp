#include "ui/jobs/job_row.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QAccessible>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeySequence>
#include <QPainter>
#include <QProgressBar>
#include <QStyle>

#include "conversion/conversion_job.h"
#include "support/make_string.h"
#include "ui/jobs/job_commands.h"
#include "ui/jobs/poster_view.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/labels.h"
#include "ui/widgets/qt_text.h"
#include "ui/widgets/theme.h"

namespace reelvane {
namespace {

constexpr int kLines = 3;
constexpr double kMargin = 0.6;  // all in heights of a line
constexpr double kLineGap = 0.15;
constexpr double kColumnGap = 0.8;
constexpr double kFactGap = 0.4;
constexpr double kBarHeight = 0.4;
constexpr double kIconSide = 1.15;
constexpr double kLeastWords = 9;  // beside a picture
constexpr double kPosterRatio = 16.0 / 9;
constexpr float kGrooveStrength = 0.16F;

/// A slim progress bar that can be told from its ground in every theme, even when nothing is done.
class SlimBar final : public QProgressBar {
public:
    explicit SlimBar(QWidget* parent) : QProgressBar(parent) { setTextVisible(false); }

protected:
    void paintEvent(QPaintEvent* event) override;
};

void SlimBar::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const auto colours = palette();
    auto groove = colours.color(QPalette::Text);
    groove.setAlphaF(kGrooveStrength);
    const double rounding = height() / 2.0;
    painter.setBrush(groove);
    painter.drawRoundedRect(rect(), rounding, rounding);
    if (value() <= minimum()) return;
    const double share = double(value() - minimum()) / std::max(maximum() - minimum(), 1);
    const int length = std::max(static_cast<int>(share * width()), height());
    painter.setBrush(accent(colours));
    painter.drawRoundedRect(
        QStyle::visualRect(layoutDirection(), rect(), QRect(0, 0, length, height())), rounding,
        rounding);
}

QString withKey(const QString& text, const QKeySequence& key) {
    return QStringLiteral("%1 (%2)").arg(text, key.toString(QKeySequence::NativeText));
}

QString percentText(int percent) {
    return JobRow::tr("%1%").arg(percent);
}

}  // namespace

JobIcons::JobIcons(const Icons& icons)
    : film(icons.symbolic("film")),
      pause(icons.symbolic("toolbar_pause")),
      start(icons.symbolic("toolbar_start")),
      details(icons.symbolic("job_details")),
      remove(icons.symbolic("job_remove")),
      reveal(icons.symbolic("job_reveal")),
      revealLeftwards(icons.symbolic("job_reveal_leftwards")),
      speed(icons.symbolic("speed")),
      warning(icons.coloured("warning")),
      finished(icons.coloured("job_finished")),
      failed(icons.coloured("job_failed")) {}

JobRow::JobRow(JobCommands& commands, PosterFrames& posters, const JobIcons& icons, QWidget* parent)
    : QWidget(parent),
      commands_(commands),
      icons_(icons) {
    makeParts(posters);
    layOut();
    fitToFont();
    setCurrent(false);
}

void JobRow::makeParts(PosterFrames& posters) {
    poster_ = new PosterView(posters, icons_.film, this);
    name_ = new ElidedLabel(Qt::ElideMiddle, ElidedLabel::Rank::Main, this);
    QFont bold;  // with the weight alone, so that all else stays the list's
    bold.setBold(true);
    name_->setFont(bold);
    outcome_ = new IconView(this);
    status_ = new ElidedLabel(Qt::ElideRight, ElidedLabel::Rank::Quiet, this);
    progress_ = new SlimBar(this);
    percent_ = new ElidedLabel(Qt::ElideRight, ElidedLabel::Rank::Quiet, this);
    percent_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);  // the other way round in Arabic
    remaining_ = new ElidedLabel(Qt::ElideRight, ElidedLabel::Rank::Quiet, this);
    noteIcon_ = new IconView(this);
    note_ = new ElidedLabel(Qt::ElideRight, ElidedLabel::Rank::Quiet, this);
    makeButton(Pause, icons_.pause, [this](ConversionJob& job) { commands_.pauseOrContinue(job); });
    makeButton(Details, icons_.details, [this](ConversionJob& job) { commands_.openDetails(job); });
    makeButton(Remove, icons_.remove, [this](ConversionJob& job) { commands_.remove({&job}); });
    makeButton(Reveal, icons_.reveal, [this](ConversionJob& job) { commands_.reveal(job); });
    buttons_[Details]->setToolTip(withKey(tr("Details"), Qt::CTRL | Qt::Key_I));
    buttons_[Remove]->setToolTip(withKey(tr("Remove from the list"), QKeySequence::Delete));
}

void JobRow::makeButton(Button button, const QIcon& icon, Command command) {
    auto* const made = new FlatButton(this);
    made->setIcon(icon);
    auto policy = made->sizePolicy();
    policy.setRetainSizeWhenHidden(true);  // the others stay in their columns
    made->setSizePolicy(policy);
    connect(made, &QToolButton::clicked, this, [this, command = std::move(command)] {
        if (job_ != nullptr) command(*job_);
    });
    buttons_[button] = made;
}

void JobRow::layOut() {
    facts_ = new QWidget(this);
    auto* const third = new QHBoxLayout(facts_);
    third->setContentsMargins({});
    third->addWidget(progress_, 1);
    third->addWidget(percent_);
    third->addWidget(remaining_);
    third->addWidget(noteIcon_);
    third->addWidget(note_);
    statusLine_ = new QHBoxLayout;
    statusLine_->addWidget(outcome_, 0, Qt::AlignTop);
    statusLine_->addWidget(status_);
    texts_ = new QVBoxLayout;
    texts_->addStretch();
    texts_->addWidget(name_);
    texts_->addLayout(statusLine_);
    texts_->addWidget(facts_);
    texts_->addStretch();
    buttonColumns_ = new QHBoxLayout;
    buttonColumns_->setSpacing(0);
    for (auto* const button : buttons_) buttonColumns_->addWidget(button, 0, Qt::AlignVCenter);
    auto* const row = new QHBoxLayout(this);
    row->addWidget(poster_);
    row->addLayout(texts_, 1);
    row->addLayout(buttonColumns_);
}

void JobRow::fitToFont() {
    const int line = fontMetrics().height();
    const auto lines = [line](double count) { return static_cast<int>(std::lround(count * line)); };
    const int content = kLines * name_->minimumSizeHint().height() + (kLines - 1) * lines(kLineGap);
    auto* const row = layout();
    row->setContentsMargins(lines(kMargin), lines(kMargin), lines(kMargin), lines(kMargin));
    row->setSpacing(lines(kColumnGap));
    texts_->setSpacing(lines(kLineGap));
    facts_->layout()->setSpacing(lines(kFactGap));
    statusLine_->setSpacing(lines(kFactGap));
    poster_->setFixedSize(static_cast<int>(std::lround(content * kPosterRatio)), content);
    progress_->setFixedHeight(lines(kBarHeight));
    progress_->setMinimumWidth(lines(kLines));
    // So that the bar does not change its length.
    percent_->setMinimumWidth(fontMetrics().horizontalAdvance(percentText(100)));
    for (auto* const view : {outcome_, noteIcon_}) view->setFixedSize(line, line);
    for (auto* const button : buttons_) button->setIconSize({lines(kIconSide), lines(kIconSide)});
    setFixedHeight(content + 2 * lines(kMargin));
}

void JobRow::resizeEvent(QResizeEvent* event) {
    // In a narrow window the words come first.
    const auto margins = layout()->contentsMargins();
    const int least = static_cast<int>(kLeastWords * fontMetrics().height());
    const int words = qMax(texts_->minimumSize().width(), least);
    const int buttons = buttonColumns_->minimumSize().width();
    poster_->setVisible(width() >= margins.left() + poster_->width() + words + buttons +
                                       2 * layout()->spacing() + margins.right());
    QWidget::resizeEvent(event);
}

void JobRow::showJob(ConversionJob& job) {
    job_ = &job;
    subscription_ = job.observe([this] { refresh(); });
    poster_->showMovie(job.fileInfo().fileURL);
    name_->setText(toQString(job.fileInfo().fileName));
    nameControls();
    announcedState_ = {};
    slowDisk_.setAwaited(false);
    refresh();
}

void JobRow::clear() {
    subscription_ = {};
    job_ = nullptr;
    slowDisk_.setAwaited(false);
    poster_->clear();
}

void JobRow::setCurrent(bool current) {
    for (auto* const button : buttons_) {
        button->setFocusPolicy(current ? Qt::TabFocus : Qt::NoFocus);
    }
}

void JobRow::nameControls() {
    const auto name = name_->text();
    buttons_[Details]->setAccessibleName(tr("Details of %1").arg(name));
    buttons_[Remove]->setAccessibleName(tr("Remove %1").arg(name));
    progress_->setAccessibleName(tr("Progress of %1").arg(name));
}

void JobRow::refresh() {
    if (job_ == nullptr) return;
    status_->setText(toQString(job_->stateInfoString()));
    const auto state = job_->state();
    const auto note = commands_.rowNote(*job_);
    const auto outcome = note.warns                              ? icons_.warning
                         : state == ConversionJobState::Finished ? icons_.finished
                         : state == ConversionJobState::Failed   ? icons_.failed
                                                                 : QIcon();
    outcome_->setIcon(outcome);
    outcome_->setVisible(!outcome.isNull());
    // While it converts the time is last, and what counts most.
    status_->setElideMode(state == ConversionJobState::Converting ? Qt::ElideMiddle
                                                                  : Qt::ElideRight);
    status_->setMostLines(state == ConversionJobState::Failed ? 2
                                                              : 1);  // it has the third to itself
    slowDisk_.setAwaited(job_->isStarting());
    const bool underWay = showProgress();
    const bool noted = showNote(toQString(note.text));
    facts_->setVisible(underWay || noted);  // else the other lines move to the middle
    showButtons();
    if (std::exchange(announcedState_, state) != state) announceNameChange();
}

void JobRow::announceNameChange() {
    if (!QAccessible::isActive()) return;
    QAccessibleEvent event(this, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&event);
}

bool JobRow::showProgress() {
    const bool underWay = job_->state() == ConversionJobState::Converting ||
                          job_->state() == ConversionJobState::Paused;
    progress_->setVisible(underWay);
    percent_->setVisible(underWay);
    const auto left = underWay ? job_->timeLeft() : std::nullopt;
    remaining_->setVisible(left.has_value());
    if (left) {
        remaining_->setText(tr("%1 left").arg(toQString(formattedTimeFromTimeInterval(*left))));
    }
    if (!underWay) return false;
    const int percent = static_cast<int>(job_->progress());
    progress_->setValue(percent);
    percent_->setText(percentText(percent));
    return true;
}

bool JobRow::showNote(QString text) {
    QIcon icon;
    if (slowDisk_.isSlow()) {
        text = tr("Waiting for the disk…");
    } else if (job_->isComparing()) {
        text = tr("Comparing with the source before that is removed…");
    } else if (job_->fastmode() && jobControls(job_->state()).unfinished) {
        icon = icons_.speed;
        const auto fast = tr("Re-packages only, fast");
        text = text.isEmpty() ? fast : fast + QStringLiteral(" · ") + text;
    }
    // In line with the text above it, which has a picture, whether or not there is another one.
    noteIcon_->setVisible(!icon.isNull() || job_->state() == ConversionJobState::Finished);
    noteIcon_->setIcon(icon);
    note_->setVisible(!text.isEmpty());
    note_->setText(text);
    return !text.isEmpty();
}

void JobRow::showButtons() {
    const auto controls = jobControls(job_->state());
    const auto name = name_->text();
    auto& pause = *buttons_[Pause];
    pause.setVisible(controls.pauses || controls.continues);
    pause.setEnabled(commands_.canPauseOrContinue(*job_));
    pause.setIcon(controls.pauses ? icons_.pause : icons_.start);
    const auto [action, spoken] = controls.pauses   ? std::pair(tr("Pause"), tr("Pause %1"))
                                  : controls.starts ? std::pair(tr("Start now"), tr("Start %1"))
                                                    : std::pair(tr("Continue"), tr("Continue %1"));
    pause.setToolTip(pause.isEnabled()        ? withKey(action, Qt::Key_Space)
                     : job_->isStarting()     ? tr("Waiting for the disk…")
                     : job_->isBeingChecked() ? tr("The new movie is being checked")
                                              : tr("Another movie is being converted"));
    pause.setAccessibleName(spoken.arg(name));

    auto& reveal = *buttons_[Reveal];
    reveal.setVisible(controls.reveals);
    reveal.setIcon(isRightToLeft() ? icons_.revealLeftwards : icons_.reveal);
    reveal.setAccessibleName(controls.explains ? tr("Explain the failure of %1").arg(name)
                                               : tr("Show %1 in Files").arg(name));
    const auto key = QKeySequence(Qt::Key_Return).toString(QKeySequence::NativeText);
    reveal.setToolTip(controls.explains
                          ? withKey(tr("Explain the failure"), Qt::Key_Return)
                          : tr("Show in Files (%1); with Shift, show the source").arg(key));
}

void JobRow::enterEvent(QEnterEvent* event) {
    updateGround();
    QWidget::enterEvent(event);
}

void JobRow::leaveEvent(QEvent* event) {
    updateGround();
    QWidget::leaveEvent(event);
}

void JobRow::updateGround() {
    if (auto* const ground = parentWidget()) ground->update(geometry());
}

void JobRow::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) fitToFont();
    QWidget::changeEvent(event);
}

}  // namespace reelvane
