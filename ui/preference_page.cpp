#include "ui/preference_page.h"

#include <QVBoxLayout>

#include "ui/preference_column.h"

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

}  // namespace reelvane
