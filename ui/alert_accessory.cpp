#include "ui/alert_accessory.h"

#include <algorithm>
#include <cmath>

#include <QButtonGroup>
#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QToolButton>
#include <QVBoxLayout>

#include "ui/qt_text.h"

namespace reelvane {
namespace {

constexpr int kMostRows = 12;

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

AlertAccessoryView make(const AlertAccessory& accessory, QWidget* parent) {
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

}  // namespace

AlertAccessoryView makeAccessoryView(const AlertAccessory& accessory, const QString& name,
                                     QWidget* parent) {
    auto view = make(accessory, parent);
    if (view.widget == nullptr) return view;
    // Sizes are the least: a large font needs more.
    view.widget->setMinimumWidth(static_cast<int>(accessory.width));
    if (accessory.kind != AlertAccessory::Kind::RadioButtons) {
        view.widget->setMinimumHeight(static_cast<int>(accessory.height));
    }
    if (accessory.kind != AlertAccessory::Kind::Checkbox) view.widget->setAccessibleName(name);
    return view;
}

}  // namespace reelvane
