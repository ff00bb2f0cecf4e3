#include "ui/widgets/pages.h"

#include <QAccessibleWidget>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QVBoxLayout>

namespace reelvane {
namespace {

constexpr double kHeadingSize = 1.3;
constexpr int kParagraphWidth = 52;  // in average characters
constexpr int kPictureLines = 4;

QLabel* makeText(const QString& text, QWidget* parent) {
    auto* const label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    label->setWordWrap(true);
    label->setMinimumWidth(label->fontMetrics().averageCharWidth() * kParagraphWidth);
    return label;
}

QLabel* makeHeading(const QString& text, QWidget* parent) {
    auto* const label = makeText(text, parent);
    auto font = label->font();
    font.setBold(true);
    if (font.pointSizeF() > 0) font.setPointSizeF(font.pointSizeF() * kHeadingSize);
    label->setFont(font);
    return label;
}

QAccessibleInterface* makeAccessibleStack(const QString& /*className*/, QObject* object) {
    auto* const stack = dynamic_cast<PageStack*>(object);
    return stack == nullptr ? nullptr : new QAccessibleWidget(stack, QAccessible::Client);
}

}  // namespace

QLabel* makeParagraph(const QString& text, QWidget* parent) {
    auto* const label = makeText(text, parent);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QLayout* makeIntroduction(const QIcon& picture, const QString& heading, const QString& words,
                          QWidget* parent) {
    const auto line = parent->fontMetrics().height();
    auto* const row = new QHBoxLayout;
    row->setSpacing(line);
    if (!picture.isNull()) {
        auto* const shown = new QLabel(parent);
        shown->setAccessibleName(QGuiApplication::applicationDisplayName());
        const QSize size(line * kPictureLines, line * kPictureLines);
        shown->setPixmap(picture.pixmap(size, parent->devicePixelRatioF()));
        row->addWidget(shown, 0, Qt::AlignTop);
    }
    auto* const texts = new QVBoxLayout;
    texts->setSpacing(line / 3);
    texts->addWidget(makeHeading(heading, parent));
    texts->addWidget(makeParagraph(words, parent));
    texts->addStretch(1);
    row->addLayout(texts, 1);
    return row;
}

PageStack::PageStack(QWidget* parent) : QStackedWidget(parent) {
    QAccessible::installFactory(makeAccessibleStack);
}

}  // namespace reelvane
