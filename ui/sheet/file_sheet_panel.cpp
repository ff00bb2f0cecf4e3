#include "ui/sheet/file_sheet_panel.h"

#include <initializer_list>
#include <utility>

#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedLayout>
#include <QVBoxLayout>

#include "app/app_delegate.h"
#include "app/settings_reader.h"
#include "app/track_choices.h"
#include "conversion/stream_plan.h"
#include "support/ports/desktop_appearance.h"
#include "support/vantor.h"
#include "ui/sheet/subtitle_question.h"
#include "ui/widgets/labels.h"
#include "ui/widgets/pop_up_menu_box.h"
#include "ui/widgets/qt_text.h"
#include "ui/widgets/theme.h"

namespace reelvane {
namespace {

constexpr int kUsualTrackCharacters = 15;

QLabel* labelFor(PopUpMenuBox& box, const QString& text, QWidget* parent) {
    auto* const label = new QLabel(text, parent);
    label->setBuddy(&box);
    return label;
}

}  // namespace

FileSheetPanel::FileSheetPanel(const UiContext& context, QWidget* parent)
    : QWidget(parent),
      context_(context),
      name_(new ElidedLabel(Qt::ElideMiddle, ElidedLabel::Rank::Main, this)),
      subtitle_(new ElidedLabel(Qt::ElideMiddle, ElidedLabel::Rank::Quiet, this)),
      waiting_(new ElidedLabel(Qt::ElideRight, ElidedLabel::Rank::Quiet, this)),
      information_(new ElidedLabel(Qt::ElideRight, ElidedLabel::Rank::Quiet, this)) {
    setAutoFillBackground(true);
    waiting_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    auto bold = name_->font();
    bold.setBold(true);
    name_->setFont(bold);
    makeChoices();
    makeButtons();
    layOut();
    bindTexts();
}

void FileSheetPanel::makeChoices() {
    auto& destinations = context_.controller.destinations();
    audio_ = new PopUpMenuBox(context_.controller.intake().audioPopUp(), this);
    audio_->setAccessibleName(tr("Audio track"));
    audio_->setMinimumContentsLength(kUsualTrackCharacters);  // few files make it jump
    destination_ = new PopUpMenuBox(destinations.destinationPopUp(), this);
    destination_->setAccessibleName(tr("Destination"));
    destination_->setChosen(
        [&destinations](std::size_t row) { destinations.pick(DestinationMenu::FileSheet, row); });
}

void FileSheetPanel::makeButtons() {
    auto& intake = context_.controller.intake();
    cancel_ = new QPushButton(tr("Cancel"), this);
    cancel_->setAutoDefault(true);  // Return means the button that has the keyboard
    cancel_->setToolTip(tr("Leave this movie out"));
    connect(cancel_, &QPushButton::clicked, this, [&intake] { intake.cancelAdd(); });
    detach_ = new QPushButton(tr("Leave Out"), this);
    detach_->setFlat(true);
    detach_->setAutoDefault(true);
    detach_->setToolTip(tr("Convert the movie without this subtitle file"));
    detach_->setAccessibleName(tr("Leave the subtitle file out"));
    connect(detach_, &QPushButton::clicked, this, [this, &intake] {
        intake.detachSubtitle();
        focusDefault();  // the button is gone
    });
    question_ = new SubtitleQuestion(
        [this, &intake](std::string name) {
            intake.chooseSubtitleEncoding(std::move(name));
            focusDefault();  // Return adds the file
        },
        this);
    add_ = new QPushButton(this);
    add_->setDefault(true);
    connect(add_, &QPushButton::clicked, this, [&intake] { intake.addToQueue(); });
}

void FileSheetPanel::layOut() {
    secondLine_ = new QStackedLayout;
    secondLine_->addWidget(information_);
    busyRow_ = makeBusyRow();
    secondLine_->addWidget(busyRow_);
    auto* const rows = new QVBoxLayout(this);
    const int margin = fontMetrics().height();
    rows->setContentsMargins(margin, margin, margin, margin);
    rows->setSpacing(margin / 4);
    rows->addLayout(titleRow());
    rows->addLayout(secondLine_);
    rows->addWidget(question_);
    rows->addSpacing(margin / 4);
    rows->addStretch(1);
    rows->addLayout(choiceRow());
    hint_ = new ElidedLabel(Qt::ElideRight, ElidedLabel::Rank::Quiet, this);
    hint_->setText(
        tr("To be asked no more, choose a place under “Destinations” in the preferences."));
    rows->addWidget(hint_);
}

QBoxLayout* FileSheetPanel::titleRow() {
    auto* const row = new QHBoxLayout;
    row->setSpacing(fontMetrics().height() / 2);
    row->addWidget(name_);
    row->addWidget(subtitle_);
    row->addWidget(detach_);
    row->addStretch(1);
    row->addWidget(waiting_);
    return row;
}

QWidget* FileSheetPanel::makeBusyRow() {
    auto* const row = new QWidget(this);
    busyText_ = new ElidedLabel(Qt::ElideRight, ElidedLabel::Rank::Quiet, row);
    busy_ = new QProgressBar(row);
    busy_->setTextVisible(false);
    busy_->setFixedWidth(fontMetrics().height() * 8);
    busy_->setFixedHeight(fontMetrics().height() * 2 / 3);
    auto* const items = new QHBoxLayout(row);
    items->setContentsMargins({});
    items->setSpacing(fontMetrics().height() / 2);
    items->addWidget(busyText_);
    items->addWidget(busy_);
    items->addStretch(1);
    return row;
}

QBoxLayout* FileSheetPanel::choiceRow() {
    const int gap = fontMetrics().height();
    auto* const row = new QHBoxLayout;
    row->setSpacing(gap / 2);
    row->addWidget(labelFor(*audio_, tr("&Audio:"), this));
    row->addWidget(audio_);
    row->addSpacing(gap / 2);
    row->addWidget(labelFor(*destination_, tr("&Save to:"), this));
    row->addWidget(destination_);
    row->addSpacing(gap / 2);
    row->addStretch(1);
    row->addWidget(cancel_);
    row->addWidget(add_);
    return row;
}

void FileSheetPanel::bindTexts() {
    auto& controller = context_.controller;
    subscriptions_.push_back(
        bind(controller.queueControl().addButtonTitle(),
             [this](const std::string& title) { add_->setText(toControlText(title)); }));
    subscriptions_.push_back(bind(controller.intake().waitingCount(), [this](std::size_t count) {
        waiting_->setText(tr("%n more waiting", nullptr, static_cast<int>(count)));
        waiting_->setVisible(count > 0);
        showHint();
    }));
    subscriptions_.push_back(controller.intake().observeFileInfo([this] {
        if (awaitsUser()) showRecord();
    }));
    auto& places = controller.destinations().destinationPopUp();
    subscriptions_.push_back(places.observe([this] { showHint(); }));
}

/// For who is about to be asked again and again.
void FileSheetPanel::showHint() {
    auto& controller = context_.controller;
    hint_->setVisible(controller.intake().waitingCount().get() > 0 &&
                      controller.destinations().destinationPopUp().selectedIndex() ==
                          kAskDestination);
}

bool FileSheetPanel::awaitsUser() const {
    auto& intake = context_.controller.intake();
    return intake.state() != IntakeState::Idle && intake.state() != IntakeState::Reading &&
           intake.fileInfo().has_value();
}

void FileSheetPanel::showFile() {
    auto& intake = context_.controller.intake();
    const bool scanning = intake.state() == IntakeState::Reading;
    showBusy(scanning, tr("Looking into the file…"));
    if (!scanning && !awaitsUser()) return;  // on its way out it shows what it showed
    const auto& file = intake.presentFile();
    name_->setText(displayName(file));
    name_->setToolTip("<p>" + displayPath(file).toHtmlEscaped() + "</p>");  // a <p> breaks lines
    name_->setAccessibleDescription(displayPath(file));
    add_->setAccessibleDescription(displayName(file));
    secondLine_->setCurrentWidget(scanning ? busyRow_ : information_);
    destination_->setEnabled(!scanning);
    add_->setEnabled(!scanning);
    for (auto* const part : std::initializer_list<QWidget*>{subtitle_, detach_, question_}) {
        part->setVisible(false);  // until the record is shown
    }
    audio_->setEnabled(false);
    audio_->setPlaceholderText(scanning ? QString() : tr("No audio"));
    if (!scanning) showRecord();
}

void FileSheetPanel::showWaiting() {
    showBusy(true, tr("Waiting for the disk…"));
    secondLine_->setCurrentWidget(busyRow_);
    for (auto* const control : std::initializer_list<QWidget*>{audio_, destination_, add_}) {
        control->setEnabled(false);
    }
}

void FileSheetPanel::showBusy(bool busy, const QString& text) {
    // A bar in motion costs processor time, even where nobody sees it.
    const bool moves = busy && !context_.appearance.reducedMotion();
    busy_->setRange(0, moves ? 0 : 1);
    busy_->setVisible(moves);
    busy_->setAccessibleName(text);
    busyText_->setText(text);
}

void FileSheetPanel::showRecord() {
    const auto& record = *context_.controller.intake().fileInfo();
    information_->setText(toQString(informationText(context_.vantor.ports().translations, record)));
    audio_->setEnabled(!record.audioTrackInformation.empty());
    showSubtitle(record);
}

void FileSheetPanel::showSubtitle(const MKVFileInfo& record) {
    const auto& subtitle = record.subtitleFileURL;
    const auto settings = readConversionSettings(context_.vantor.preferences());
    auto text = subtitle ? tr("with subtitles %1").arg(displayName(*subtitle)) : QString();
    if (const auto encoding = subtitleEncoding(record.subtitleFormat, settings);
        subtitle && !encoding.empty()) {
        //: %1 is "with subtitles NAME", %2 is the name of a character encoding.
        text = tr("%1 (%2)").arg(text, toQString(encoding));
    }
    // Without sound it is left out, and that has been said.
    const bool taken = subtitle && !record.audioTrackInformation.empty();
    subtitle_->setText(text);
    subtitle_->setVisible(taken);
    detach_->setVisible(taken);
    question_->setVisible(taken);
    if (taken) question_->showFormat(record.subtitleFormat);
    add_->setEnabled(!asksForEncoding(record));
}

void FileSheetPanel::focusDefault() {
    auto* const first = add_->isEnabled() ? static_cast<QWidget*>(add_) : question_;
    first->setFocus(Qt::OtherFocusReason);
}

void FileSheetPanel::paintEvent(QPaintEvent* /*event*/) {
    constexpr double kLine = 0.2;
    QPainter painter(this);
    const auto colours = palette();
    painter.fillRect(
        0, height() - 1, width(), 1,
        mixed(colours.color(QPalette::Window), colours.color(QPalette::WindowText), kLine));
}

}  // namespace reelvane
