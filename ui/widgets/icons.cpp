#include "ui/widgets/icons.h"

#include <memory>

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>

#include "ui/widgets/qt_text.h"

namespace reelvane {
namespace {

QColor colourFor(QIcon::Mode mode) {
    const auto palette = QGuiApplication::palette();
    switch (mode) {
        case QIcon::Disabled:
            return palette.color(QPalette::Disabled, QPalette::WindowText);
        case QIcon::Selected:
            return palette.color(QPalette::Active, QPalette::HighlightedText);
        default:
            return palette.color(QPalette::Active, QPalette::WindowText);
    }
}

/// Draws the shape of an SVG picture in the palette's colour of the moment.
class SymbolicEngine final : public QIconEngine {
public:
    explicit SymbolicEngine(std::shared_ptr<QSvgRenderer> shape) : shape_(std::move(shape)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
               QIcon::State state) override {
        const auto ratio = painter->device()->devicePixelRatioF();
        painter->drawPixmap(rect, scaledPixmap(rect.size() * ratio, mode, state, ratio));
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        return scaledPixmap(size, mode, state, 1);
    }
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State /*state*/,
                         qreal scale) override {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        shape_->render(&painter, QRectF(QPointF(), QSizeF(size)));
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(picture.rect(), colourFor(mode));
        painter.end();
        picture.setDevicePixelRatio(scale);
        return picture;
    }
    [[nodiscard]] QIconEngine* clone() const override {
        // NOLINTNEXTLINE(cppcoreguidelines-owning-memory): Qt takes it over
        return new SymbolicEngine(shape_);
    }
    // An icon counts as empty without sizes.
    QList<QSize> availableSizes(QIcon::Mode /*mode*/, QIcon::State /*state*/) override {
        return {shape_->defaultSize()};
    }

private:
    std::shared_ptr<QSvgRenderer> shape_;  // shared with the copies that Qt makes of an icon
};

}  // namespace

QString Icons::file(std::string_view name) const {
    return displayPath(folder_ / (std::string(name) + ".svg"));
}

QIcon Icons::symbolic(std::string_view name) const {
    auto shape = std::make_shared<QSvgRenderer>(file(name));
    if (!shape->isValid()) return {};
    return QIcon(new SymbolicEngine(std::move(shape)));
}

QIcon Icons::coloured(std::string_view name) const {
    return QIcon(file(name));
}

}  // namespace reelvane
