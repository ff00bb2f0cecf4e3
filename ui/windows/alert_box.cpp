#include "ui/windows/alert_box.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

#include <QAccessibleWidget>
#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

#include "support/alerts.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/labels.h"
#include "ui/widgets/qt_text.h"
#include "ui/windows/window_frame.h"

namespace reelvane {
namespace {

constexpr int kMostRows = 12;
constexpr int kWidestLine = 62;         ///< in average characters: comfortable to read
constexpr double kTitleShare = 0.2;     ///< of the screen's height, at most
constexpr double kMessageShare = 0.45;  ///< the same
constexpr const char* kProgramImage = "reelvane.svg";

AlertAccessoryView makeCheckbox(const AlertAccessory& accessory, QWidget* parent) {
    auto* const box = new QCheckBox(toControlText(accessory.label), parent);
    box->setChecked(accessory.index != 0);
    return {box, nullptr, [box](AlertAnswer& answer) { answer.index = box->isChecked() ? 1 : 0; }};
}

AlertAccessoryView makeLine(const AlertAccessory& accessory, QWidget* parent) {
    auto* const line = new QLineEdit(toQString(accessory.text), parent);
    if (accessory.kind == AlertAccessory::Kind::SecureInput) line->setEchoMode(QLineEdit::Password);
    return {line, line, [line](AlertAnswer& answer) { answer.text = line->text().toStdString(); }};
}

AlertAccessoryView makeTextArea(const AlertAccessory& accessory, QWidget* parent) {
    auto* const area = new QPlainTextEdit(toQString(accessory.text), parent);
    area->setTabChangesFocus(true);
    return {area, area,
            [area](AlertAnswer& answer) { answer.text = area->toPlainText().toStdString(); }};
}

AlertAccessoryView makeColourWell(const AlertAccessory& accessory, QWidget* parent) {
    auto* const well = new QToolButton(parent);
    well->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    const auto show = [well](const QString& colour) {
        QPixmap swatch(well->iconSize() * well->devicePixelRatioF());
        swatch.fill(QColor(colour));
        swatch.setDevicePixelRatio(well->devicePixelRatioF());
        well->setIcon(swatch);
        well->setText(colour);
    };
    show(toQString(accessory.text));
    QObject::connect(well, &QToolButton::clicked, well, [well, show] {
        const auto chosen = QColorDialog::getColor(QColor(well->text()), well);
        if (chosen.isValid()) show(chosen.name());
    });
    return {well, nullptr,
            [well](AlertAnswer& answer) { answer.text = well->text().toStdString(); }};
}

AlertAccessoryView makePopUp(const AlertAccessory& accessory, QWidget* parent) {
    auto* const menu = new QComboBox(parent);
    menu->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    for (const auto& item : accessory.items) menu->addItem(toQString(item));
    menu->setCurrentIndex(accessory.index);
    return {menu, menu, [menu](AlertAnswer& answer) { answer.index = menu->currentIndex(); }};
}

/// As tall as its rows, up to a number of them; then it scrolls.
AlertAccessoryView makeRadioColumn(const AlertAccessory& accessory, QWidget* parent) {
    auto* const scroller = new QScrollArea(parent);
    auto* const column = new QWidget(scroller);
    auto* const layout = new QVBoxLayout(column);
    layout->setContentsMargins({});
    layout->setSpacing(0);
    auto* const group = new QButtonGroup(column);
    int row = 0;
    int rowHeight = static_cast<int>(std::ceil(accessory.height));
    for (const auto& item : accessory.items) {
        auto* const button = new QRadioButton(toControlText(item), column);
        rowHeight = std::max(rowHeight, button->sizeHint().height());
        button->setMinimumHeight(rowHeight);
        layout->addWidget(button);
        group->addButton(button, row++);
    }
    scroller->setFrameShape(QFrame::NoFrame);
    scroller->viewport()->setAutoFillBackground(false);
    scroller->setWidget(column);
    scroller->setWidgetResizable(true);
    column->setAutoFillBackground(false);
    scroller->setFixedHeight(rowHeight * std::min(row, kMostRows) +
                             scroller->horizontalScrollBar()->sizeHint().height());
    auto* const first = group->button(accessory.index);
    if (first != nullptr) static_cast<QRadioButton*>(first)->setChecked(true);
    return {scroller, first, [group](AlertAnswer& answer) { answer.index = group->checkedId(); }};
}

AlertAccessoryView makeUnsized(const AlertAccessory& accessory, QWidget* parent) {
    using Kind = AlertAccessory::Kind;
    switch (accessory.kind) {
        case Kind::Checkbox:
            return makeCheckbox(accessory, parent);
        case Kind::Input:
        case Kind::SecureInput:
            return makeLine(accessory, parent);
        case Kind::Text:
            return makeTextArea(accessory, parent);
        case Kind::Color:
            return makeColourWell(accessory, parent);
        case Kind::PopUp:
            return makePopUp(accessory, parent);
        case Kind::RadioButtons:
            return makeRadioColumn(accessory, parent);
        case Kind::None:
            break;
    }
    return {};
}

/// `name` is what the user is asked for.
AlertAccessoryView makeAccessoryView(const AlertAccessory& accessory, const QString& name,
                                     QWidget* parent) {
    auto view = makeUnsized(accessory, parent);
    if (view.widget == nullptr) return view;
    // Sizes are the least: a large font needs more.
    view.widget->setMinimumWidth(static_cast<int>(accessory.width));
    if (accessory.kind != AlertAccessory::Kind::RadioButtons) {
        view.widget->setMinimumHeight(static_cast<int>(accessory.height));
    }
    if (accessory.kind != AlertAccessory::Kind::Checkbox) view.widget->setAccessibleName(name);
    return view;
}

QDialogButtonBox::ButtonRole roleOf(std::size_t button, std::size_t count) {
    if (button == 0) return QDialogButtonBox::AcceptRole;
    return button + 1 == count ? QDialogButtonBox::RejectRole : QDialogButtonBox::DestructiveRole;
}

/// Screen readers read an alert out as soon as it opens; for other dialogs they wait to be asked.
QAccessibleInterface* makeAccessibleAlert(const QString& /*className*/, QObject* object) {
    auto* const box = dynamic_cast<AlertBox*>(object);
    if (box == nullptr) return nullptr;
    return new QAccessibleWidget(box, QAccessible::AlertMessage);
}

}  // namespace

AlertBox::AlertBox(const AlertContent& content, const QIcon& picture, QWidget* parent)
    : QDialog(parent),
      content_(content),
      button_(cautiousButton(content)) {
    QAccessible::installFactory(makeAccessibleAlert);
    setAttribute(Qt::WA_QuitOnClose, false);  // it may be the only window, before the main one
    setWindowModality(Qt::ApplicationModal);
    setWindowTitle(QGuiApplication::applicationDisplayName());
    setAccessibleName(toQString(content_.title));
    setAccessibleDescription(toQString(content_.message));
    accessory_ = makeAccessoryView(content_.accessory, toQString(content_.title), this);
    if (content_.suppressionTitle) {
        suppression_ = new QCheckBox(toControlText(*content_.suppressionTitle), this);
    }
    makeButtons();
    layOut(picture);
}

void AlertBox::makeButtons() {
    buttons_ = new QDialogButtonBox(this);
    if (content_.buttons.empty()) content_.buttons.push_back(tr("OK").toStdString());
    for (std::size_t i = 0; i < content_.buttons.size(); ++i) {
        auto* const button = buttons_->addButton(toControlText(content_.buttons[i]),
                                                 roleOf(i, content_.buttons.size()));
        connect(button, &QPushButton::clicked, this, [this, i] {
            button_ = kFirstButton + static_cast<ButtonResult>(i);
            accept();
        });
        // Return, pressed without reading, throws nothing away.
        const auto usual = content_.destructive ? cautiousButton(content_) : kFirstButton;
        if (kFirstButton + static_cast<ButtonResult>(i) != usual) continue;
        button->setDefault(true);
        button->setFocus();
    }
}

QWidget* AlertBox::makeTexts(int narrowest) {
    auto* const texts = new QWidget(this);
    auto* const column = new QVBoxLayout(texts);
    column->setContentsMargins({});
    auto bold = font();
    bold.setBold(true);
    const auto room = screen()->availableSize();
    std::vector<std::pair<PlainTextView*, double>> views;
    if (!content_.title.empty()) {
        views.emplace_back(new PlainTextView(toQString(content_.title), bold, texts), kTitleShare);
    }
    if (!content_.message.empty()) {
        views.emplace_back(new PlainTextView(toQString(content_.message), font(), texts),
                           kMessageShare);
    }
    int width = narrowest;
    for (const auto& [view, share] : views) width = std::max(width, view->naturalWidth());
    width = std::min({width, fontMetrics().averageCharWidth() * kWidestLine, room.width() * 3 / 4});
    width = std::max(width, narrowest);
    for (const auto& [view, share] : views) {
        view->fit(width, static_cast<int>(room.height() * share));
        column->addWidget(view);
    }
    return texts;
}

void AlertBox::layOut(const QIcon& picture) {
    const auto gap = fontMetrics().height();
    auto* const column = new QVBoxLayout;
    auto narrowest = std::max(buttons_->sizeHint().width(), gap * 14);
    if (accessory_.widget != nullptr) {
        narrowest = std::max(narrowest, accessory_.widget->minimumWidth());
    }
    column->addWidget(makeTexts(narrowest));
    if (accessory_.widget != nullptr) column->addWidget(accessory_.widget);
    if (suppression_ != nullptr) column->addWidget(suppression_);
    column->addStretch();
    column->setSpacing(gap * 2 / 3);

    auto* const row = new QHBoxLayout;
    if (!picture.isNull()) {
        auto* const shown = new QLabel(this);
        shown->setAccessibleName(QGuiApplication::applicationDisplayName());
        const auto size =
            style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this) * 3 / 2;
        shown->setPixmap(picture.pixmap(QSize(size, size), devicePixelRatioF()));
        row->addWidget(shown, 0, Qt::AlignTop);
        row->setSpacing(gap);
    }
    row->addLayout(column, 1);
    auto* const all = new QVBoxLayout(this);
    all->setContentsMargins(gap, gap, gap, gap);
    all->setSpacing(gap);
    all->addLayout(row);
    all->addWidget(buttons_);
    all->setSizeConstraint(QLayout::SetFixedSize);
}

void AlertBox::ask() {
    // An open menu would keep mouse and keyboard to itself.
    while (auto* const menu = QApplication::activePopupWidget()) {
        if (!menu->close()) break;
    }
    show();
    raise();
    activateWindow();
    if (accessory_.focus != nullptr) accessory_.focus->setFocus();
    QApplication::alert(this);
    exec();
}

AlertAnswer AlertBox::answer() const {
    AlertAnswer answer{.button = button_,
                       .suppressed = suppression_ != nullptr && suppression_->isChecked()};
    if (accessory_.read) accessory_.read(answer);
    return answer;
}

AlertAnswer QtAlerts::runModal(const AlertContent& content) {
    if (ended_) return {.button = cautiousButton(content)};
    auto* const behind = windowInFront();
    if (behind != nullptr) bringToFront(*behind);
    const auto image = content.image.empty() ? kProgramImage : content.image;
    const auto picture = icons_ != nullptr
                             ? icons_->coloured(std::filesystem::path(image).stem().native())
                             : QIcon();
    // Its parent may take it along while it is open.
    const QPointer box = new AlertBox(content, picture, behind);
    open_.push_back(box);
    box->ask();
    open_.pop_back();
    if (box == nullptr) return {.button = cautiousButton(content)};
    auto answer = box->answer();
    delete box;
    return answer;
}

void QtAlerts::endAll() {
    ended_ = true;
    for (const auto& box : open_) {
        if (box != nullptr) box->reject();
    }
}

QWidget* QtAlerts::windowInFront() const {
    if (auto* const modal = QApplication::activeModalWidget(); modal != nullptr) return modal;
    auto* const active = QApplication::activeWindow();
    if (active != nullptr && active->windowType() != Qt::Popup) return active;
    return mainWindow_ != nullptr && mainWindow_->isVisible() ? mainWindow_.data() : nullptr;
}

}  // namespace reelvane
