#include "ui/sheet/file_sheet.h"

#include <cmath>
#include <utility>

#include <QKeyEvent>
#include <QShortcut>
#include <QStyle>

#include "app/app_delegate.h"
#include "support/dispatch.h"
#include "support/ports/desktop_appearance.h"
#include "ui/sheet/file_sheet_panel.h"

namespace reelvane {
namespace {

constexpr int kSlideMilliseconds = 200;

}  // namespace

FileSheet::FileSheet(const UiContext& context, QWidget* parent)
    : QWidget(parent),
      context_(context),
      panel_(new FileSheetPanel(context, this)),
      leave_(new QShortcut(Qt::Key_Escape, this)),
      slowDisk_([this] { showWaiting(); }) {
    setAccessibleName(tr("Movie to add"));
    // A file that takes long to read does not take the keyboard, but can be left by it.
    connect(leave_, &QShortcut::activated, this,
            [this] { context_.controller.intake().cancelAdd(); });
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    slide_.setEasingCurve(QEasingCurve::OutCubic);
    connect(&slide_, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& extent) { place(extent.toDouble()); });
    auto& intake = context_.controller.intake();
    subscriptions_.push_back(intake.present().observe([this] { followTurn(); }));
    subscriptions_.push_back(intake.awaitsDisk().observe([this] { followDisk(); }));
    place(0);
    followTurn();
    panel_->showFile();
}

QSize FileSheet::sizeHint() const {
    return {panel_->sizeHint().width(), height()};
}

QSize FileSheet::minimumSizeHint() const {
    return {panel_->minimumSizeHint().width(), height()};
}

bool FileSheet::event(QEvent* event) {
    // Larger fonts or longer texts: the sheet grows with what is in it.
    if (event->type() == QEvent::LayoutRequest) place(extent_);
    return QWidget::event(event);
}

void FileSheet::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            context_.controller.intake().addToQueue();
            return;
        default:
            QWidget::keyPressEvent(event);
    }
}

void FileSheet::resizeEvent(QResizeEvent* /*event*/) {
    place(extent_);
}

void FileSheet::followTurn() {
    const auto state = context_.controller.intake().state();
    if (state != IntakeState::FindingPlace) followFile();  // else it shows what it showed
    const bool shown = state != IntakeState::Idle;
    leave_->setEnabled(shown);
    if (std::exchange(shown_, shown) == shown) return;
    if (!shown) giveKeyboardBack();
    slide(shown ? 1 : 0);
}

void FileSheet::followFile() {
    auto& intake = context_.controller.intake();
    const bool scanning = intake.state() == IntakeState::Reading;
    // The buttons give the keyboard away while there is nothing to add; it stays in the sheet.
    if (scanning && hasKeyboard()) setFocus(Qt::OtherFocusReason);
    panel_->showFile();
    if (!scanning) takeKeyboardLater();
}

void FileSheet::takeKeyboardLater() {
    // Later, because a file that is added by itself needs no keyboard.
    dispatch_async_main(context_.vantor, [sheet = QPointer(this)] {
        if (sheet != nullptr && sheet->panel_->awaitsUser()) sheet->takeKeyboard();
    });
}

void FileSheet::showWaiting() {
    if (hasKeyboard()) setFocus(Qt::OtherFocusReason);  // the buttons give it away
    panel_->showWaiting();
}

void FileSheet::followDisk() {
    const bool awaited = context_.controller.intake().awaitsDisk().get();
    slowDisk_.setAwaited(awaited);
    if (awaited) return;
    panel_->showFile();
    takeKeyboardLater();  // there may have been no place
}

void FileSheet::slide(double extent) {
    slide_.stop();
    if (!animates()) {
        place(extent);
        return;
    }
    // From where it is, so that it turns round when it is called back on its way.
    slide_.setStartValue(extent_);
    slide_.setEndValue(extent);
    slide_.setDuration(qMax(1, qRound(kSlideMilliseconds * std::abs(extent - extent_))));
    slide_.start();
}

void FileSheet::place(double extent) {
    extent_ = extent;
    const int full = fullHeight();
    const int shown = qRound(full * extent);
    setFixedHeight(shown);
    panel_->setGeometry(0, shown - full, width(), full);
    setVisible(shown > 0);
}

int FileSheet::fullHeight() const {
    return qMax(sheetHeight(IntakeState::AwaitingUser), panel_->sizeHint().height());
}

bool FileSheet::animates() const {
    return window()->isVisible() && !context_.appearance.reducedMotion() &&
           style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0;
}

bool FileSheet::hasKeyboard() const {
    const auto* const focused = window()->focusWidget();
    return focused != nullptr && (focused == this || isAncestorOf(focused));
}

void FileSheet::takeKeyboard() {
    if (!hasKeyboard()) {
        auto* const focused = window()->focusWidget();
        if (focused != nullptr && focused->testAttribute(Qt::WA_InputMethodEnabled)) return;
        returnTo_ = focused;
    }
    panel_->focusDefault();
}

void FileSheet::giveKeyboardBack() {
    if (!hasKeyboard()) return;
    const auto takesKeyboard = [this](const QWidget* widget) {
        return widget->isVisible() && widget->isEnabled() && !isAncestorOf(widget) &&
               (widget->focusPolicy() & Qt::TabFocus) != 0;
    };
    auto* next = returnTo_ != nullptr ? returnTo_.data() : nextInFocusChain();
    // What had it may be gone with the empty list: then what comes next in the window.
    while (next != this && !takesKeyboard(next)) next = next->nextInFocusChain();
    if (next != this) next->setFocus(Qt::OtherFocusReason);
}

}  // namespace reelvane
