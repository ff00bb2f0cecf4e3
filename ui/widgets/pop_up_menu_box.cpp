#include "ui/widgets/pop_up_menu_box.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QScreen>
#include <QStyleOptionComboBox>
#include <QStylePainter>
#include <QToolTip>

#include "app/track_choices.h"
#include "ui/widgets/qt_text.h"

namespace reelvane {
namespace {

constexpr int kLeastMenuCharacters = 9;
constexpr int kWidestName = 40;
constexpr int kFullTitleRole = Qt::UserRole;

}  // namespace

PopUpMenuBox::PopUpMenuBox(PopUpMenu& menu, QWidget* parent) : QComboBox(parent), menu_(menu) {
    setSizeAdjustPolicy(AdjustToContents);
    setMinimumContentsLength(kLeastMenuCharacters);
    setFocusPolicy(Qt::StrongFocus);  // a wheel that passes by takes no focus
    view()->setTextElideMode(Qt::ElideMiddle);
    view()->installEventFilter(this);
    connect(this, &QComboBox::activated, this, [this](int row) {
        if (row >= 0) choose(static_cast<std::size_t>(row));
    });
    subscription_ = menu.observe([this] { mirror(); });
    mirror();
}

void PopUpMenuBox::mirror() {
    if (!showsItems()) fill();
    const auto selected = menu_.selectedIndex();
    setCurrentIndex(selected ? static_cast<int>(*selected) : -1);
    update();
}

bool PopUpMenuBox::showsItems() const {
    const auto& items = menu_.items();
    if (static_cast<int>(items.size()) != count()) return false;
    for (int row = 0; row < count(); ++row) {
        if (itemData(row, kFullTitleRole).toString() !=
            toQString(items.at(static_cast<std::size_t>(row)).title)) {
            return false;
        }
    }
    return true;
}

void PopUpMenuBox::fill() {
    clear();
    for (const auto& item : menu_.items()) {
        if (item.isSeparator()) {
            insertSeparator(count());
            continue;
        }
        const auto title = toQString(item.title);
        // The list is drawn as a menu, which would cut what is wider than the screen.
        addItem(isolated(fontMetrics().elidedText(title, Qt::ElideMiddle, widestTitle())));
        const auto row = count() - 1;
        setItemData(row, title, kFullTitleRole);
        setItemData(row, title, Qt::AccessibleTextRole);
    }
}

void PopUpMenuBox::choose(std::size_t row) {
    mirror();
    if (stepping_ && row < menu_.items().size() && menu_.items()[row].isCommand) return;
    if (chosen_) {
        chosen_(row);
    } else {
        menu_.selectItemAtIndex(row);
    }
}

int PopUpMenuBox::widestTitle() const {
    return screen()->availableSize().width() * 2 / 3;
}

QString PopUpMenuBox::fullTitle() const {
    return currentData(kFullTitleRole).toString();
}

QString PopUpMenuBox::elidedTitle() const {
    QStyleOptionComboBox option;
    initStyleOption(&option);
    const auto field =
        style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
    constexpr int kStylesPadding = 2;
    return fontMetrics().elidedText(fullTitle(), Qt::ElideMiddle, field.width() - kStylesPadding);
}

QSize PopUpMenuBox::sizeHint() const {
    const auto comfortable = kWidestName * fontMetrics().averageCharWidth();
    const auto hint = QComboBox::sizeHint();
    return {qMin(hint.width(), comfortable), hint.height()};
}

void PopUpMenuBox::showPopup() {
    auto* const list = view();
    const auto margins = list->style()->pixelMetric(QStyle::PM_ScrollBarExtent) +
                         4 * list->style()->pixelMetric(QStyle::PM_DefaultFrameWidth);
    list->setMinimumWidth(qMax(width(), list->sizeHintForColumn(0) + margins));
    QComboBox::showPopup();
}

bool PopUpMenuBox::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip && elidedTitle() != fullTitle()) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(),
                           "<p>" + fullTitle().toHtmlEscaped() + "</p>", this);
        return true;
    }
    return QComboBox::event(event);
}

bool PopUpMenuBox::eventFilter(QObject* watched, QEvent* event) {
    // The key closes the open list. What it means to the window is not meant then.
    if (watched == view() && event->type() == QEvent::ShortcutOverride) event->accept();
    return QComboBox::eventFilter(watched, event);
}

void PopUpMenuBox::keyPressEvent(QKeyEvent* event) {
    const QScopedValueRollback stepping(stepping_, true);
    QComboBox::keyPressEvent(event);
}

void PopUpMenuBox::wheelEvent(QWheelEvent* event) {
    if (!hasFocus()) {
        event->ignore();  // what scrolls by must not change a choice
        return;
    }
    const QScopedValueRollback stepping(stepping_, true);
    QComboBox::wheelEvent(event);
}

void PopUpMenuBox::paintEvent(QPaintEvent* /*event*/) {
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    option.currentText = isolated(elidedTitle());
    if (currentIndex() < 0) {
        option.currentText = placeholderText();
        option.palette.setBrush(QPalette::ButtonText, option.palette.placeholderText());
    }
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

}  // namespace reelvane
