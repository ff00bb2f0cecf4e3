#include "ui/widgets/labels.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include <QAccessibleWidget>
#include <QEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QStyle>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>
#include <QToolTip>

#include "ui/widgets/qt_text.h"
#include "ui/widgets/theme.h"

namespace reelvane {
namespace {

constexpr int kLeastCharacters = 6;
constexpr double kFocusWidth = 2;  // in points, as the rounding
constexpr double kFocusRounding = 4;

QAccessibleInterface* makeAccessibleLabel(const QString& /*className*/, QObject* object) {
    auto* const label = dynamic_cast<QuietLabel*>(object);
    if (label == nullptr || label->spoken() == QuietLabel::Spoken::Here) return nullptr;
    return new QAccessibleWidget(label, QAccessible::Client);
}

/// Screen readers take it for the label that it looks like, not for a field to write in.
QAccessibleInterface* makeAccessibleText(const QString& /*className*/, QObject* object) {
    auto* const view = dynamic_cast<PlainTextView*>(object);
    if (view == nullptr) return nullptr;
    return new QAccessibleWidget(view, QAccessible::StaticText, view->toPlainText());
}

}  // namespace

ElidedLabel::ElidedLabel(Qt::TextElideMode mode, Rank rank, QWidget* parent)
    : QLabel(parent),
      mode_(mode),
      rank_(rank) {
    setTextFormat(Qt::PlainText);
    setContentsMargins(kRoomForAccents);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

QString ElidedLabel::line() const {
    auto line = text();
    return line.replace('\n', ' ');
}

QStringList ElidedLabel::lines(int width) const {
    const auto text = line();
    QTextLayout layout(text, font());
    QStringList lines;
    int shown = 0;
    layout.beginLayout();
    while (lines.size() + 1 < mostLines_) {
        auto next = layout.createLine();
        if (!next.isValid()) break;
        next.setLineWidth(width);
        lines << text.mid(shown, next.textLength());
        shown += next.textLength();
    }
    layout.endLayout();
    if (shown < text.size()) lines << fontMetrics().elidedText(text.mid(shown), mode_, width);
    return lines;
}

void ElidedLabel::setElideMode(Qt::TextElideMode mode) {
    mode_ = mode;
    update();
}

void ElidedLabel::setMostLines(int count) {
    mostLines_ = count;
    setSizePolicy(QSizePolicy::Preferred, count > 1 ? QSizePolicy::Preferred : QSizePolicy::Fixed);
}

int ElidedLabel::heightForWidth(int width) const {
    return heightOf(std::max(lines(width).size(), qsizetype{1}));
}

int ElidedLabel::heightOf(qsizetype lines) const {
    return static_cast<int>(lines) * fontMetrics().height() + contentsMargins().top();
}

QSize ElidedLabel::sizeHint() const {
    const auto metrics = fontMetrics();
    return {metrics.horizontalAdvance(line()) + 1, heightOf(1)};
}

QSize ElidedLabel::minimumSizeHint() const {
    const auto metrics = fontMetrics();
    return {qMin(sizeHint().width(), kLeastCharacters * metrics.averageCharWidth()), heightOf(1)};
}

bool ElidedLabel::event(QEvent* event) {
    // Where all can be read the tool tip is left to what stands behind.
    if (event->type() == QEvent::ToolTip && toolTip().isEmpty() &&
        lines(contentsRect().width()).join(QString()) != line()) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), toToolTip(text()), this);
        return true;
    }
    return QLabel::event(event);
}

void ElidedLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const auto colours = palette();
    painter.setPen(rank_ == Rank::Quiet && isEnabled() ? quietText(colours)
                                                       : colours.color(foregroundRole()));
    const auto shown = lines(contentsRect().width());
    // The side is the window's, the order of the words the text's own.
    painter.setLayoutDirection(text().isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    const auto side = QStyle::visualAlignment(layoutDirection(), alignment()) | Qt::AlignAbsolute;
    auto place = contentsRect();
    if (shown.size() > 1) place.setHeight(fontMetrics().height());
    for (const auto& each : shown) {
        painter.drawText(place, static_cast<int>(side) | Qt::TextSingleLine, each.trimmed());
        place.translate(0, fontMetrics().height());
    }
}

QuietLabel::QuietLabel(const QString& text, QWidget* parent, Spoken spoken)
    : QLabel(parent),
      spoken_(spoken) {
    QAccessible::installFactory(makeAccessibleLabel);
    setText(text);  // not before: a text that changes is told at once by what it is then
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setContentsMargins(kRoomForAccents);
    setAlignment(Qt::AlignLeading | Qt::AlignTop);
}

void QuietLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const auto colours = palette();
    painter.setPen(isEnabled() ? quietText(colours) : colours.color(foregroundRole()));
    // The side is the window's, the order of the words the text's own.
    painter.setLayoutDirection(text().isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    const auto side = QStyle::visualAlignment(layoutDirection(), alignment()) | Qt::AlignAbsolute;
    painter.drawText(contentsRect(), static_cast<int>(side) | Qt::TextWordWrap, text());
}

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

FlatButton::FlatButton(QWidget* parent) : QToolButton(parent) {
    setAutoRaise(true);
    setFocusPolicy(Qt::TabFocus);
}

void FlatButton::paintEvent(QPaintEvent* event) {
    QToolButton::paintEvent(event);
    if (!hasFocus()) return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(accent(palette()), kFocusWidth));
    const double half = kFocusWidth / 2;
    painter.drawRoundedRect(QRectF(rect()).adjusted(half, half, -half, -half), kFocusRounding,
                            kFocusRounding);
}

void FlatButton::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && !event->isAutoRepeat()) {
        click();
    } else {
        QToolButton::keyPressEvent(event);
    }
}

}  // namespace reelvane
