#include "ui/plain_text_view.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include <QAccessibleWidget>
#include <QTextBlock>
#include <QTextDocument>

namespace reelvane {
namespace {

/// Screen readers take it for the label that it looks like, not for a field to write in.
QAccessibleInterface* makeAccessibleText(const QString& /*className*/, QObject* object) {
    auto* const view = dynamic_cast<PlainTextView*>(object);
    if (view == nullptr) return nullptr;
    return new QAccessibleWidget(view, QAccessible::StaticText, view->toPlainText());
}

}  // namespace

PlainTextView::PlainTextView(const QString& text, const QFont& font, QWidget* parent)
    : QTextEdit(parent) {
    QAccessible::installFactory(makeAccessibleText);
    setAcceptRichText(false);
    setReadOnly(true);
    setFont(font);
    setFrameShape(QFrame::NoFrame);
    viewport()->setAutoFillBackground(false);
    document()->setDocumentMargin(0);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::ClickFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    auto colours = palette();
    colours.setColor(QPalette::Text, colours.color(QPalette::WindowText));
    setPalette(colours);
    setPlainText(text);
}

int PlainTextView::naturalWidth() const {
    const QFontMetrics metrics(font());
    int widest = 0;
    for (auto block = document()->begin(); block.isValid(); block = block.next()) {
        widest = std::max(widest, metrics.horizontalAdvance(block.text()));
    }
    return widest + metrics.averageCharWidth();
}

void PlainTextView::fit(int width, int tallest) {
    // The view lays its own document out for the size that it has now.
    const std::unique_ptr<QTextDocument> copy(document()->clone());
    copy->setTextWidth(width);
    const int needed = static_cast<int>(std::ceil(copy->size().height()));
    if (needed > tallest) {
        setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
        setFocusPolicy(Qt::StrongFocus);  // the keyboard scrolls it
    }
    setFixedSize(width, std::min(needed, tallest));
}

}  // namespace reelvane
