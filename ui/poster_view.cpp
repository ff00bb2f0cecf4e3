#include "ui/poster_view.h"

#include <utility>

#include <QPainter>

#include "ui/colours.h"

namespace reelvane {
namespace {

constexpr double kRounding = 0.08;  // of the height
constexpr double kStandInShare = 0.45;
constexpr double kGroundShare = 0.09;

}  // namespace

PosterView::PosterView(PosterFrames& posters, QIcon standIn, QWidget* parent)
    : QWidget(parent),
      posters_(posters),
      standIn_(std::move(standIn)) {}

void PosterView::showMovie(const std::filesystem::path& movie) {
    setPoster(posters_.cached(movie));
    request_ = {};
    if (!poster_.isNull()) return;
    request_ = posters_.request(movie, [this](const QImage& poster) { setPoster(poster); });
}

void PosterView::clear() {
    request_ = {};
    setPoster({});
}

void PosterView::setPoster(const QImage& poster) {
    if (poster.isNull() && poster_.isNull()) return;
    poster_ = poster;
    scaled_ = {};
    update();
}

const QPixmap& PosterView::scaledPoster() {
    const auto ratio = devicePixelRatioF();
    const QSize wanted = size() * ratio;
    if (scaled_.size() != wanted) {
        const auto filling =
            poster_.scaled(wanted, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
        const QPoint corner((filling.width() - wanted.width()) / 2,
                            (filling.height() - wanted.height()) / 2);
        scaled_ = QPixmap::fromImage(filling.copy(QRect(corner, wanted)));
        scaled_.setDevicePixelRatio(ratio);
    }
    return scaled_;
}

void PosterView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const double rounding = kRounding * height();
    if (!poster_.isNull()) {
        painter.setBrush(scaledPoster());
        painter.drawRoundedRect(rect(), rounding, rounding);
        return;
    }
    auto ground = palette().color(QPalette::Text);
    ground.setAlphaF(static_cast<float>(kGroundShare));
    painter.setBrush(ground);
    painter.drawRoundedRect(rect(), rounding, rounding);
    const int side = static_cast<int>(kStandInShare * height());
    QRect place({}, QSize(side, side));
    place.moveCenter(rect().center());
    painter.setOpacity(0.5);
    standIn_.paint(&painter, place);
}

}  // namespace reelvane
