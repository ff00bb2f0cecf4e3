#include "ui/notice_bar.h"

#include <utility>

#include <QAccessibleEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QPushButton>

#include "ui/colours.h"
#include "ui/elided_label.h"

namespace reelvane {
namespace {

constexpr double kNoticeGround = 0.12;
constexpr double kNoticeLine = 0.2;

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

}  // namespace reelvane
