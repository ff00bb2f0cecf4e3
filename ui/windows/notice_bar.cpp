#include "ui/windows/notice_bar.h"

#include <utility>

#include <QAccessible>
#include <QAccessibleEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/intake_messages.h"
#include "ui/widgets/labels.h"
#include "ui/widgets/qt_text.h"
#include "ui/widgets/theme.h"

namespace reelvane {
namespace {

constexpr double kNoticeGround = 0.12;
constexpr double kNoticeLine = 0.2;
constexpr int kReasonLines = 7;

}  // namespace

NoticeBar::NoticeBar(Edge edge, const QString& button, std::function<void()> act, QWidget* parent)
    : QWidget(parent),
      edge_(edge),
      text_(new ElidedLabel(Qt::ElideMiddle, ElidedLabel::Rank::Main, this)),
      button_(new QPushButton(button, this)) {
    connect(button_, &QPushButton::clicked, this, std::move(act));
    auto* const row = new QHBoxLayout(this);
    const int line = fontMetrics().height();
    row->setContentsMargins(line, line / 3, line, line / 3);
    row->setSpacing(line);
    row->addWidget(text_, 1);
    row->addWidget(button_);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    hide();
}

void NoticeBar::showText(const QString& text) {
    text_->setText(text);
    setAccessibleName(text);
    button_->setAccessibleDescription(text);
    show();
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void NoticeBar::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const auto colours = palette();
    const auto window = colours.color(QPalette::Window);
    painter.fillRect(rect(), mixed(window, accent(colours), kNoticeGround));
    painter.fillRect(0, edge_ == Edge::Above ? height() - 1 : 0, width(), 1,
                     mixed(window, colours.color(QPalette::WindowText), kNoticeLine));
}

RefusedFilesBar::RefusedFilesBar(RefusedFiles& refused, QWidget* parent)
    : QFrame(parent),
      refused_(refused),
      title_(new QLabel(this)),
      text_(new QPlainTextEdit(this)) {
    setObjectName("refusedFiles");
    setFrameShape(QFrame::StyledPanel);
    auto bold = font();
    bold.setBold(true);
    title_->setFont(bold);
    title_->setBuddy(text_);
    text_->setReadOnly(true);
    text_->setTabChangesFocus(true);
    text_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    text_->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    text_->setFrameShape(QFrame::NoFrame);
    text_->setFixedHeight(fontMetrics().lineSpacing() * kReasonLines);
    auto* const close = new QPushButton(tr("Close"), this);
    close->setAutoDefault(true);  // Return presses it
    close->setToolTip(tr("Close this list (Escape)"));
    connect(close, &QPushButton::clicked, this, [this] { refused_.clear(); });

    auto* const header = new QHBoxLayout;
    header->addWidget(title_, 1);
    header->addWidget(close);
    auto* const rows = new QVBoxLayout(this);
    const int margin = fontMetrics().height() / 2;
    rows->setContentsMargins(margin, margin, margin, margin);
    rows->setSpacing(margin / 2);
    rows->addLayout(header);
    rows->addWidget(text_);
    subscription_ = refused_.observe([this] { follow(); });
    hide();
    follow();
}

void RefusedFilesBar::follow() {
    const auto& list = refused_.list();
    if (list.size() < shown_) {
        shown_ = 0;
        text_->clear();
    }
    while (shown_ < list.size()) append(shown_++);
    title_->setText(tr("Files that were not added: %1").arg(list.size()));
    setAccessibleName(title_->text());
    text_->setAccessibleName(title_->text());
    if (isVisibleTo(parentWidget()) == !list.empty()) return;
    // Who works in the list goes on behind it.
    const auto* const focused = focusWidget();
    if (list.empty() && focused != nullptr && focused->hasFocus()) focusNextChild();
    setVisible(!list.empty());
    if (list.empty()) return;
    QAccessibleEvent appeared(text_, QAccessible::Alert);
    QAccessible::updateAccessibility(&appeared);
}

bool RefusedFilesBar::event(QEvent* event) {
    // Who reads here means the list by Escape, not what else in the window it would leave.
    if (event->type() == QEvent::ShortcutOverride &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        event->accept();
        return true;
    }
    return QFrame::event(event);
}

void RefusedFilesBar::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        refused_.clear();
    } else {
        QFrame::keyPressEvent(event);
    }
}

void RefusedFilesBar::append(std::size_t number) {
    const auto& [file, reason] = refused_.list().at(number);
    auto cursor = QTextCursor(text_->document());
    cursor.movePosition(QTextCursor::End);
    QTextCharFormat bold;
    bold.setFontWeight(QFont::Bold);
    if (number > 0) cursor.insertBlock();
    cursor.insertText(displayName(file), bold);
    cursor.insertText(QChar::LineSeparator + toQString(reason).replace('\n', QChar::LineSeparator),
                      QTextCharFormat());
}

}  // namespace reelvane
