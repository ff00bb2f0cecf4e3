#include "ui/preference_slider.h"

#include <chrono>
#include <cmath>
#include <utility>

#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>
#include <QVBoxLayout>

#include "app/preference_table.h"
#include "support/preferences.h"
#include "ui/labelled_row.h"
#include "ui/quiet_label.h"

namespace reelvane {
namespace {

constexpr int kNormal = 100;
constexpr int kSliderEnd = 300;
constexpr int kStep = 5;
constexpr int kSnap = 4;  ///< so near, the slider means 100
constexpr std::chrono::milliseconds kRest{300};

}  // namespace

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
    field_->setRange(entry.minimum, entry.maximum);
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

}  // namespace reelvane
