#include "ui/preferences/preference_page.h"

#include <QLabel>
#include <QVBoxLayout>

namespace reelvane {
namespace {

constexpr int kLineLength = 84;  ///< in average characters

}  // namespace

PreferencePage::PreferencePage(Preferences& preferences, const QString& title, QWidget* parent)
    : QScrollArea(parent) {
    setWindowTitle(title);
    setAccessibleName(title);
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    setFocusPolicy(Qt::NoFocus);
    auto* const content = new QWidget;
    content->setMaximumWidth(fontMetrics().averageCharWidth() * kLineLength);
    column_ = new PreferenceColumn(preferences, content);
    auto* const margins = new QVBoxLayout(content);
    const auto gap = fontMetrics().height();
    margins->setContentsMargins(gap, gap, gap, gap);
    margins->addWidget(column_);
    margins->addStretch(1);
    setWidget(content);
}

std::vector<std::string_view> PreferencePage::keys() const {
    return column_->keys();
}

void PreferencePage::showStored() {
    column_->showStored();
}

PreferenceColumn::PreferenceColumn(Preferences& preferences, QWidget* parent)
    : QWidget(parent),
      preferences_(preferences),
      column_(new QVBoxLayout(this)) {
    column_->setContentsMargins({});
    column_->setSpacing(fontMetrics().height() * 2 / 3);
}

void PreferenceColumn::addHeading(const QString& heading) {
    if (column_->count() > 0) column_->addSpacing(fontMetrics().height() / 2);
    auto* const label = new QLabel(heading, this);
    auto font = label->font();
    font.setBold(true);
    label->setFont(font);
    addWidget(label);
}

void PreferenceColumn::addWidget(QWidget* widget) {
    column_->addWidget(widget);
    updateGeometry();  // what holds the column has measured it while it was smaller
}

std::vector<std::string_view> PreferenceColumn::keys() const {
    std::vector<std::string_view> keys;
    for (const auto* const control : controls_) keys.push_back(control->key());
    return keys;
}

void PreferenceColumn::showStored() {
    for (auto* const control : controls_) control->showStored();
}

}  // namespace reelvane
