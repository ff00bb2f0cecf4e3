#include "ui/window_text.h"

#include <QLabel>

namespace reelvane {
namespace {

constexpr double kHeadingSize = 1.3;
constexpr int kLineLength = 52;  ///< in average characters

QLabel* makeText(const QString& text, QWidget* parent) {
    auto* const label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    label->setWordWrap(true);
    label->setMinimumWidth(label->fontMetrics().averageCharWidth() * kLineLength);
    return label;
}

}  // namespace

QLabel* makeHeading(const QString& text, QWidget* parent) {
    auto* const label = makeText(text, parent);
    auto font = label->font();
    font.setBold(true);
    if (font.pointSizeF() > 0) font.setPointSizeF(font.pointSizeF() * kHeadingSize);
    label->setFont(font);
    return label;
}

QLabel* makeParagraph(const QString& text, QWidget* parent) {
    auto* const label = makeText(text, parent);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

}  // namespace reelvane
