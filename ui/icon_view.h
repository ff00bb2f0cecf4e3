#pragma once

#include <QIcon>
#include <QPainter>
#include <QWidget>

namespace reelvane {

/// A small picture beside a text, drawn for the resolution and the theme of the moment.
class IconView final : public QWidget {
public:
    using QWidget::QWidget;

    void setIcon(const QIcon& icon) {
        icon_ = icon;
        update();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        icon_.paint(&painter, rect());
    }

private:
    QIcon icon_;
};

}  // namespace reelvane
