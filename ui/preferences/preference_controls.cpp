#include "ui/preferences/preference_controls.h"

#include <chrono>
#include <cmath>
#include <string>
#include <utility>

#include <QBoxLayout>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QLabel>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>
#include <QStandardItemModel>
#include <QStyle>
#include <QVBoxLayout>

#include "app/preference_table.h"
#include "support/preference_text.h"
#include "support/preferences.h"
#include "ui/widgets/labels.h"
#include "ui/widgets/qt_text.h"
#include "ui/widgets/theme.h"

namespace reelvane {
namespace {

constexpr int kMenuCharacters = 22;
constexpr int kMenuRows = 16;
constexpr int kNormal = 100;  // per cent, as the next three
constexpr int kSliderEnd = 300;
constexpr int kStep = 5;
constexpr int kSnap = 4;  // so near, the slider means 100
constexpr std::chrono::milliseconds kRest{300};

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

PreferenceSlider::PreferenceSlider(Preferences& preferences, const PreferenceText& text,
                                   Explain explain, QWidget* parent)
    : PreferenceControl(preferences, text, parent),
      field_(new QSpinBox(this)),
      slider_(new QSlider(Qt::Horizontal, this)),
      meaning_(new QuietLabel({}, this)),
      explain_(std::move(explain)) {
    rest_.setSingleShot(true);
    rest_.setInterval(kRest);
    connect(&rest_, &QTimer::timeout, this, [this] { store(field_->value()); });
    makeField();
    makeSlider();
    layOut();
    PreferenceSlider::showStored();
}

PreferenceSlider::~PreferenceSlider() {
    finish();
}

void PreferenceSlider::makeField() {
    const auto& entry = *findPreference(key());
    adopt(*field_);
    field_->setRange(entry.range.minimum, entry.range.maximum);
    field_->setSingleStep(kStep);
    field_->setSuffix(tr(" %"));
    connect(field_, &QSpinBox::valueChanged, this, [this](int value) {
        show(value);
        rest_.start();
    });
    connect(field_, &QSpinBox::editingFinished, this, &PreferenceSlider::finish);
}

void PreferenceSlider::makeSlider() {
    adopt(*slider_);
    slider_->setRange(field_->minimum(), kSliderEnd);
    slider_->setSingleStep(kStep);
    slider_->setPageStep(2 * kStep);
    slider_->setTickInterval(kNormal);
    slider_->setTickPosition(QSlider::TicksBelow);
    connect(slider_, &QSlider::valueChanged, this, &PreferenceSlider::slide);
    connect(slider_, &QSlider::sliderReleased, this, &PreferenceSlider::finish);
}

void PreferenceSlider::layOut() {
    addLabelledRow(column(), *field_, text().label, text().help);
    column().addWidget(slider_);
    column().addLayout(makeScale());
    column().addWidget(meaning_);
    setTabOrder(field_, slider_);
}

/// The marks' numbers, each below its mark.
QLayout* PreferenceSlider::makeScale() {
    auto* const scale = new QHBoxLayout;
    scale->setSpacing(0);
    for (int mark = slider_->minimum(); mark <= slider_->maximum(); mark += kNormal) {
        auto* const number = new QuietLabel(tr("%1 %").arg(mark), this);
        number->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        const bool isFirst = mark == slider_->minimum();
        const bool isLast = mark == slider_->maximum();
        number->setAlignment(isFirst  ? Qt::AlignLeading
                             : isLast ? Qt::AlignTrailing
                                      : Qt::AlignHCenter);
        scale->addWidget(number, isFirst || isLast ? 1 : 2);
    }
    return scale;
}

void PreferenceSlider::slide(int value) {
    const bool meansNormal = slider_->isSliderDown() && std::abs(value - kNormal) <= kSnap;
    field_->setValue(meansNormal ? kNormal : value);
}

void PreferenceSlider::show(int value) {
    // A slider that is being dragged stays under the hand.
    if (!slider_->isSliderDown()) {
        const QSignalBlocker quiet(slider_);
        slider_->setValue(value);
    }
    meaning_->setText(explain_(value));
}

void PreferenceSlider::finish() {
    show(field_->value());
    if (!rest_.isActive()) return;
    rest_.stop();
    store(field_->value());
}

void PreferenceSlider::showStored() {
    rest_.stop();
    const QSignalBlocker quiet(field_);
    field_->setValue(qRound(preferences().defaultFloat(key())));
    show(field_->value());
}

void PreferenceSlider::hideEvent(QHideEvent* event) {
    finish();
    PreferenceControl::hideEvent(event);
}

void addLabelledRow(QBoxLayout& column, QWidget& field, const QString& label, const QString& help) {
    describe(field, label, help);
    auto* const shown = new QLabel(label, field.parentWidget());
    shown->setBuddy(&field);
    shown->setWordWrap(true);
    auto* const row = new QHBoxLayout;
    row->addWidget(shown, 1);
    row->addWidget(&field);
    column.addLayout(row);
    addHelp(column, help);
}

void addHelp(QBoxLayout& column, const QString& help, int indent) {
    auto* const row = new QHBoxLayout;
    row->addSpacing(indent);
    row->addWidget(new QuietLabel(help, nullptr, QuietLabel::Spoken::Elsewhere), 1);
    column.addLayout(row);
}

void describe(QWidget& widget, const QString& name, const QString& description) {
    widget.setAccessibleName(name);
    widget.setAccessibleDescription(description);
}

}  // namespace reelvane
