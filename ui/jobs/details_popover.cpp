#include "ui/jobs/details_popover.h"

#include <optional>

#include <QDialogButtonBox>
#include <QEvent>
#include <QFontDatabase>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>
#include <QTextCursor>
#include <QVBoxLayout>

#include "app/app_delegate.h"
#include "support/make_string.h"
#include "ui/jobs/job_commands.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/labels.h"
#include "ui/widgets/qt_text.h"
#include "ui/widgets/theme.h"

namespace reelvane {
namespace {

constexpr QSize kSizeInLines(42, 41);
constexpr int kCommandLines = 4;
constexpr std::size_t kShown = std::size_t{24} * 1024;  // bytes of a log
constexpr std::size_t kMost = kShown * 3 / 2;

QLabel* makeTitle(const QString& text, QWidget* of) {
    auto* const title = new QLabel(text, of->parentWidget());
    QFont bold;
    bold.setBold(true);
    title->setFont(bold);
    title->setBuddy(of);
    return title;
}

/// All that the user should know of a finished job, one sentence below the other.
QString sentences(const JobNotes& notes) {
    QStringList all;
    for (const auto& note : notes) all << toQString(note.text);
    return all.join('\n');
}

/// Where the shown part of a log begins: not within a character.
std::size_t beginning(std::string_view log) {
    auto start = log.size() > kShown ? log.size() - kShown : 0;
    const auto continues = [&log](std::size_t at) {
        return (static_cast<unsigned char>(log[at]) & 0xC0U) == 0x80U;
    };
    while (start > 0 && start < log.size() && continues(start)) ++start;
    return start;
}

}  // namespace

DetailsPopover::DetailsPopover(const UiContext& context, QWidget* parent)
    : QDialog(parent),
      context_(context),
      membership_(context.controller.queue().observeMembership(
          [this](ConversionJob& job, JobQueue::Membership membership) {
              if (membership == JobQueue::Membership::Ends && &job == job_) forget();
          })) {
    makeParts();
    layOut();
    connect(copy_, &QPushButton::clicked, this, [this] { copyCommand(); });
    connect(reveal_, &QPushButton::clicked, this, [this] {
        if (job_ != nullptr) job_->reveal();
    });
    connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::close);
    connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this, &QDialog::close);
    resize(kSizeInLines * fontMetrics().height());
}

void DetailsPopover::makeParts() {
    name_ = new ElidedLabel(Qt::ElideMiddle, ElidedLabel::Rank::Main, this);
    auto large = font();
    large.setBold(true);
    large.setPointSizeF(large.pointSizeF() * 1.2);
    name_->setFont(large);
    status_ = new ElidedLabel(Qt::ElideRight, ElidedLabel::Rank::Quiet, this);
    note_ = new ElidedLabel(Qt::ElideRight, ElidedLabel::Rank::Quiet, this);
    output_ = new ElidedLabel(Qt::ElideMiddle, ElidedLabel::Rank::Quiet, this);
    gone_ = new QLabel(tr("This movie has left the list; nothing here changes any more."), this);
    gone_->hide();
    problem_ = new QLabel(this);
    problem_->setTextFormat(Qt::PlainText);
    problem_->setWordWrap(true);
    notes_ = new QLabel(this);
    notes_->setTextFormat(Qt::PlainText);
    notes_->setWordWrap(true);
    notes_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    tracks_ = new QListWidget(this);
    tracks_->setAccessibleName(tr("Tracks"));
    tracks_->setSelectionMode(QAbstractItemView::NoSelection);  // there is nothing to do with one
    command_ = new QPlainTextEdit(this);
    command_->setReadOnly(true);
    command_->setTabChangesFocus(true);
    command_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    command_->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    command_->setAccessibleName(tr("Command line"));
    command_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    copy_ = new QPushButton(context_.icons.symbolic("copy"), tr("&Copy"), this);
    copy_->setAutoDefault(false);
    copy_->setAccessibleName(tr("Copy the command line"));
    log_ = new LogView(this);
    log_->setAccessibleName(tr("Log"));
    log_->setPlaceholderText(tr("The converter has reported nothing."));
    buttons_ = new QDialogButtonBox(this);
    // A text alone: the picture of the style's own is black in a dark window, too.
    buttons_->addButton(tr("Cl&ose"), QDialogButtonBox::RejectRole);
    reveal_ = buttons_->addButton(QString(), QDialogButtonBox::ActionRole);
    reveal_->setAutoDefault(false);
}

void DetailsPopover::layOut() {
    const int line = fontMetrics().height();
    auto* const page = new QVBoxLayout(this);
    for (QWidget* const part : {static_cast<QWidget*>(name_), static_cast<QWidget*>(status_),
                                static_cast<QWidget*>(note_), static_cast<QWidget*>(output_),
                                static_cast<QWidget*>(notes_), static_cast<QWidget*>(gone_)}) {
        page->addWidget(part);
    }
    const auto addTitle = [page, line](QLabel* title) {
        page->addSpacing(line / 2);
        page->addWidget(title);
    };
    addTitle(makeTitle(tr("&Tracks"), tracks_));
    page->addWidget(problem_);
    page->addWidget(tracks_, 2);
    auto* const commandBar = new QHBoxLayout;
    page->addSpacing(line / 2);
    page->addLayout(commandBar);
    commandBar->addWidget(makeTitle(tr("Command &Line"), command_), 1);
    commandBar->addWidget(copy_);
    page->addWidget(command_);
    command_->setFixedHeight((kCommandLines + 1) * line);
    logTitle_ = makeTitle(tr("L&og"), log_);
    addTitle(logTitle_);
    page->addWidget(log_, 3);
    page->addSpacing(line / 2);
    page->addWidget(buttons_);
}

void DetailsPopover::showJob(ConversionJob& job) {
    job_ = &job;
    gone_->hide();
    const auto& record = job.fileInfo();
    changes_ = job.observe([this] { refresh(); });
    setWindowTitle(tr("Details of %1").arg(toQString(record.fileName)));
    name_->setText(toQString(record.fileName));
    output_->setText(record.destinationURL ? tr("To %1").arg(displayPath(*record.destinationURL))
                                           : QString());
    shownState_ = -1;
    log_->showLog(job.log().shown());
    refresh();
    show();
    raise();
    activateWindow();
    tracks_->setFocus();
}

void DetailsPopover::forget() {
    changes_ = {};
    job_ = nullptr;
    reveal_->hide();
    gone_->show();
}

void DetailsPopover::refresh() {
    status_->setText(toQString(job_->stateInfoString()));
    note_->setText(toQString(job_->details()));
    note_->setVisible(!note_->text().isEmpty());
    notes_->setText(sentences(job_->notes()));
    notes_->setVisible(!notes_->text().isEmpty());
    if (shownState_ != static_cast<int>(job_->state())) showPlan();
    const auto controls = jobControls(job_->state());
    reveal_->setVisible(controls.reveals);
    reveal_->setText(controls.explains ? tr("&Explain the Failure…") : tr("&Show in Files"));
    log_->follow(job_->log().shown());
    logTitle_->setText(
        log_->showsAll()
            ? tr("L&og")
            : tr("L&og (the end of %1)").arg(toQString(fileSizeText(job_->log().shown().size()))));
}

void DetailsPopover::showPlan() {
    shownState_ = static_cast<int>(job_->state());
    const auto details = detailsNow(context_, *job_);
    auto texts = details.warnings;
    if (!job_->notes().empty()) texts.clear();  // they are among the notes of a finished job
    if (!details.problem.empty()) texts.insert(texts.begin(), details.problem);
    QStringList lines;
    for (const auto& text : texts) lines << toQString(text);
    problem_->setText(lines.join("\n\n"));
    problem_->setVisible(!lines.isEmpty());
    tracks_->clear();
    for (const auto& outcome : details.tracks) {
        tracks_->addItem(isolated(toQString(trackLine(outcome))));
        if (outcome.fate == TrackOutcome::Fate::LeftOut) {
            tracks_->item(tracks_->count() - 1)->setForeground(quietText(palette()));
        }
    }
    tracks_->setCurrentRow(0);
    commandLine_ = commandLine(context_, details);
    command_->setPlainText(toQString(commandLine_));
    copy_->setEnabled(!commandLine_.empty());
}

void DetailsPopover::copyCommand() {
    copyBytes(commandLine_);
}

void DetailsPopover::changeEvent(QEvent* event) {
    QDialog::changeEvent(event);
    // The preferences may have been changed meanwhile, and with them the plan of a waiting job.
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && job_ != nullptr) {
        showPlan();
    }
}

LogView::LogView(QWidget* parent) : QPlainTextEdit(parent) {
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setTabChangesFocus(true);
    // The keyboard selects, too.
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
}

void LogView::showLog(std::string_view log) {
    clear();
    decoder_.resetState();
    start_ = end_ = beginning(log);
    append(log.substr(start_));
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

void LogView::follow(std::string_view log) {
    if (log.size() == end_) return;
    const bool grows = log.size() > end_ && log.size() - start_ <= kMost;
    if (!grows) {
        showLog(log);
        return;
    }
    auto& bar = *verticalScrollBar();
    const bool atEnd = bar.value() == bar.maximum();
    append(log.substr(end_));
    if (atEnd) bar.setValue(bar.maximum());
}

void LogView::append(std::string_view bytes) {
    QTextCursor cursor(document());
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(decoder_(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size()))));
    end_ += bytes.size();
}

}  // namespace reelvane
