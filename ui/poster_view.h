#pragma once

#include <filesystem>

#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QWidget>

#include "support/observable.h"
#include "ui/poster_frames.h"

namespace reelvane {

/// A movie's poster, or a calm stand-in until there is one.
class PosterView final : public QWidget {
public:
    PosterView(PosterFrames& posters, QIcon standIn, QWidget* parent);

    void showMovie(const std::filesystem::path& movie);
    /// Shows the stand-in, and wants no poster any more.
    void clear();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void setPoster(const QImage& poster);
    [[nodiscard]] const QPixmap& scaledPoster();

    PosterFrames& posters_;
    QIcon standIn_;
    Subscription request_;
    QImage poster_;
    QPixmap scaled_;  ///< as it fits the view now; null: to be made
};

}  // namespace reelvane
