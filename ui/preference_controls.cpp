#include "ui/preference_controls.h"

#include <string>
#include <utility>

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QLabel>
#include <QRadioButton>
#include <QStandardItemModel>
#include <QStyle>
#include <QVBoxLayout>

#include "app/preference_table.h"
#include "support/preference_text.h"
#include "support/preferences.h"
#include "ui/colours.h"
#include "ui/labelled_row.h"
#include "ui/qt_text.h"

namespace reelvane {
namespace {

constexpr int kMenuCharacters = 22;
constexpr int kMenuRows = 16;

/// How far the text of a check box or a radio button stands in.
int textIndent(const QStyle& style, QStyle::PixelMetric indicator, QStyle::PixelMetric gap) {
    return style.pixelMetric(indicator) + style.pixelMetric(gap);
}

}  // namespace

PreferenceControl::PreferenceControl(Preferences& preferences, PreferenceText text, QWidget* parent)
    : QWidget(parent),
      preferences_(preferences),
      text_(std::move(text)),
      column_(new QVBoxLayout(this)) {
    column_->setContentsMargins({});
    column_->setSpacing(fontMetrics().height() / 6);
}

int PreferenceControl::storedInteger() const {
    return effectiveInteger(*findPreference(key()), preferences_.defaultInt(key()));
}

void PreferenceControl::store(int value) {
    preferences_.changeLater(key(), [value](const auto&) { return preferenceText(value); });
    if (changed_) changed_();
}

void PreferenceControl::adopt(QWidget& widget) {
    describe(widget, text_.label, text_.help);
    widget.setObjectName(toQString(text_.key));
    widget.setFocusPolicy(Qt::StrongFocus);
    widget.installEventFilter(this);
}

bool PreferenceControl::eventFilter(QObject* watched, QEvent* event) {
    const auto* const widget = qobject_cast<QWidget*>(watched);
    if (event->type() == QEvent::Wheel && widget != nullptr && !widget->hasFocus()) {
        event->ignore();  // the page scrolls instead
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

PreferenceCheckBox::PreferenceCheckBox(Preferences& preferences, const PreferenceText& text,
                                       Sense sense, QWidget* parent)
    : PreferenceControl(preferences, text, parent),
      box_(new QCheckBox(text.label, this)),
      sense_(sense) {
    adopt(*box_);
    column().addWidget(box_);
    addHelp(column(), text.help,
            textIndent(*style(), QStyle::PM_IndicatorWidth, QStyle::PM_CheckBoxLabelSpacing));
    connect(box_, &QCheckBox::clicked, this,
            [this](bool checked) { store(checked != (sense_ == Sense::Inverted) ? 1 : 0); });
    PreferenceCheckBox::showStored();
}

void PreferenceCheckBox::showStored() {
    box_->setChecked((storedInteger() != 0) != (sense_ == Sense::Inverted));
}

void PreferenceCheckBox::enable(PreferenceControl& dependent) {
    dependent.setEnabled(box_->isChecked());
    connect(box_, &QCheckBox::toggled, &dependent, &QWidget::setEnabled);
}

PreferenceMenu::PreferenceMenu(Preferences& preferences, const PreferenceText& text,
                               const PreferenceChoices& choices, QWidget* parent)
    : PreferenceControl(preferences, text, parent),
      box_(new QComboBox(this)) {
    adopt(*box_);
    box_->setMinimumContentsLength(kMenuCharacters);
    box_->setMaxVisibleItems(kMenuRows);
    addLabelledRow(column(), *box_, text.label, text.help);
    for (const auto& choice : choices) addChoice(choice);
    colourHeadings();
    // A menu would cover the screen; this is a list that scrolls.
    if (box_->count() > kMenuRows) box_->setStyleSheet("combobox-popup: 0;");
    connect(box_, &QComboBox::activated, this, [this] { store(box_->currentData().toInt()); });
    PreferenceMenu::showStored();
}

void PreferenceMenu::addChoice(const PreferenceChoice& choice) {
    if (choice.value) {
        box_->addItem(choice.title, *choice.value);
        return;
    }
    box_->insertSeparator(box_->count());
    if (choice.title.isEmpty()) return;
    box_->addItem(choice.title);
    auto* const model = qobject_cast<QStandardItemModel*>(box_->model());
    auto* const heading = model->item(box_->count() - 1);
    heading->setEnabled(false);
    headings_.push_back(heading);
}

/// What cannot be chosen is drawn too faint to be read.
void PreferenceMenu::colourHeadings() {
    for (auto* const heading : headings_) heading->setForeground(quietText(palette()));
}

void PreferenceMenu::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) colourHeadings();
    PreferenceControl::changeEvent(event);
}

void PreferenceMenu::showStored() {
    box_->setCurrentIndex(box_->findData(storedInteger()));
}

PreferenceRadioButtons::PreferenceRadioButtons(Preferences& preferences, const PreferenceText& text,
                                               const PreferenceChoices& choices, QWidget* parent)
    : PreferenceControl(preferences, text, parent),
      buttons_(new QButtonGroup(this)) {
    describe(*this, text.label, text.help);
    setObjectName(toQString(text.key));
    const auto indent = textIndent(*style(), QStyle::PM_ExclusiveIndicatorWidth,
                                   QStyle::PM_RadioButtonLabelSpacing);
    for (const auto& choice : choices) {
        auto title = choice.title;
        auto* const button = new QRadioButton(title.replace('&', "&&"), this);
        describe(*button, choice.title, choice.help);
        buttons_->addButton(button, choice.value.value_or(0));
        column().addWidget(button);
        addHelp(column(), choice.help, indent);
        column().addSpacing(fontMetrics().height() / 3);
    }
    connect(buttons_, &QButtonGroup::idClicked, this, [this](int value) { store(value); });
    PreferenceRadioButtons::showStored();
}

void PreferenceRadioButtons::showStored() {
    if (auto* const button = buttons_->button(storedInteger())) button->setChecked(true);
}

}  // namespace reelvane
