#include "ui/preferences/preferences_window.h"

#include <algorithm>
#include <string>

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QShowEvent>

#include "app/app_delegate.h"
#include "support/alerts.h"
#include "support/vantor.h"
#include "ui/preferences/audio_page.h"
#include "ui/preferences/destinations_page.h"
#include "ui/preferences/general_page.h"
#include "ui/preferences/subtitles_page.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/pages.h"
#include "ui/widgets/qt_text.h"

namespace reelvane {
namespace {

constexpr int kComfortableCharacters = 80;  ///< of a page
constexpr int kComfortableLines = 44;
constexpr double kShareOfScreen = 0.9;

}  // namespace

PreferencesWindow::PreferencesWindow(const UiContext& context, QWidget* parent)
    : QDialog(parent),
      context_(context),
      sidebar_(new QListWidget(this)),
      stack_(new PageStack(this)) {
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(tr("Preferences"));
    addPage(new GeneralPage(context_, stack_), "preferences_general");
    addPage(new AudioPage(context_, stack_), "preferences_audio");
    addPage(new SubtitlesPage(context_, stack_), "preferences_subtitles");
    addPage(new DestinationsPage(context_, stack_), "preferences_destinations");
    makeSidebar();
    makeShortcuts();

    auto* const all = new QVBoxLayout(this);
    all->setContentsMargins({});
    all->setSpacing(0);
    auto* const halves = new QHBoxLayout;
    halves->setSpacing(0);
    halves->addWidget(sidebar_);
    halves->addWidget(stack_, 1);
    all->addLayout(halves, 1);
    all->addWidget(makeButtons());
    adaptToScreen();
}

void PreferencesWindow::addPage(PreferencePage* page, std::string_view icon) {
    pages_.push_back(page);
    stack_->addWidget(page);
    sidebar_->addItem(new QListWidgetItem(context_.icons.symbolic(icon), page->accessibleName()));
}

void PreferencesWindow::makeSidebar() {
    const auto line = fontMetrics().height();
    sidebar_->setAccessibleName(tr("Pages"));
    sidebar_->setFrameShape(QFrame::NoFrame);
    sidebar_->setIconSize({line * 4 / 3, line * 4 / 3});
    sidebar_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    sidebar_->setSpacing(line / 4);
    for (int row = 0; row < sidebar_->count(); ++row) {
        const auto hint = sidebar_->sizeHintForIndex(sidebar_->model()->index(row, 0));
        sidebar_->item(row)->setSizeHint({hint.width() + line, line * 2});
    }
    sidebar_->setFixedWidth(sidebar_->sizeHintForColumn(0) + 4 * sidebar_->spacing());
    connect(sidebar_, &QListWidget::currentRowChanged, stack_, &QStackedWidget::setCurrentIndex);
    // A click beside the rows would take the mark from the page that is still shown.
    connect(sidebar_, &QListWidget::itemSelectionChanged, sidebar_, [this] {
        if (sidebar_->selectedItems().isEmpty()) sidebar_->currentItem()->setSelected(true);
    });
    sidebar_->setCurrentRow(0);
}

QWidget* PreferencesWindow::makeButtons() {
    auto* const buttons = new QDialogButtonBox(this);
    const auto margin = fontMetrics().height() * 2 / 3;
    buttons->setContentsMargins(margin, margin, margin, margin);
    auto* const reset = buttons->addButton(tr("&Reset to Defaults…"), QDialogButtonBox::ResetRole);
    auto* const close = buttons->addButton(tr("Cl&ose"), QDialogButtonBox::RejectRole);
    // Return belongs to the field that is being filled in.
    for (auto* const button : {reset, close}) button->setAutoDefault(false);
    connect(reset, &QPushButton::clicked, this, &PreferencesWindow::askReset);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    return buttons;
}

void PreferencesWindow::makeShortcuts() {
    const auto add = [this](const QList<QKeySequence>& keys, const std::function<void()>& pressed) {
        auto* const shortcut = new QShortcut(this);
        shortcut->setKeys(keys);
        connect(shortcut, &QShortcut::activated, this, pressed);
    };
    add(QKeySequence::keyBindings(QKeySequence::Close), [this] { reject(); });
    add({QKeySequence(Qt::CTRL | Qt::Key_PageUp)}, [this] { turn(-1); });
    add({QKeySequence(Qt::CTRL | Qt::Key_PageDown)}, [this] { turn(1); });
}

void PreferencesWindow::turn(int pages) {
    sidebar_->setCurrentRow((sidebar_->currentRow() + pages + sidebar_->count()) %
                            sidebar_->count());
    sidebar_->setFocus(Qt::ShortcutFocusReason);  // what had it is out of sight
}

/// As wide as its pages need it, and as large as is comfortable, where the screen has the room.
void PreferencesWindow::adaptToScreen() {
    const auto room = screen()->availableSize() * kShareOfScreen;
    const auto beside = sidebar_->minimumWidth() + style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    int needed = 0;
    for (const auto* const page : pages_) {
        needed = std::max(needed, page->widget()->minimumSizeHint().width());
    }
    setMinimumWidth(std::min(needed + beside, room.width()));
    const QSize comfortable(fontMetrics().averageCharWidth() * kComfortableCharacters + beside,
                            fontMetrics().height() * kComfortableLines);
    resize(comfortable.boundedTo(room));
}

void PreferencesWindow::askReset() {
    auto* const page = pages_.at(static_cast<std::size_t>(stack_->currentIndex()));
    QString kept;
    for (const auto* const each : pages_) kept += each->keptByReset();
    const QPointer self(this);
    const auto message = tr("Your choices on the page \"%1\", or on all pages, are forgotten. %2")
                             .arg(page->accessibleName(), kept);
    const auto answer =
        runAlert(context_.vantor,
                 {.title = tr("Reset to the defaults?").toStdString(),
                  .message = message.toStdString(),
                  .buttons = {tr("Reset This Page").toStdString(),
                              tr("Reset All Pages").toStdString(), tr("Cancel").toStdString()},
                  .destructive = true})
            .button;
    if (self.isNull()) return;  // the program was quit meanwhile
    if (answer == kFirstButton) reset({page});
    if (answer == kSecondButton) reset(pages_);
}

void PreferencesWindow::reset(const std::vector<PreferencePage*>& pages) {
    std::vector<std::string_view> keys;
    for (const auto* const page : pages) {
        const auto more = page->keys();
        keys.insert(keys.end(), more.begin(), more.end());
    }
    context_.vantor.preferences().forgetTogether(keys);
    showStored();
}

void PreferencesWindow::showStored() {
    for (auto* const page : pages_) page->showStored();
}

void PreferencesWindow::showEvent(QShowEvent* event) {
    // Something else may have changed them while the window was closed.
    if (!event->spontaneous()) showStored();
    QDialog::showEvent(event);
}

void PreferencesWindow::done(int result) {
    QDialog::done(result);  // what was still waiting to be stored is stored as it hides
    context_.controller.lifecycle().preferencesWindowWillClose();
}

}  // namespace reelvane
