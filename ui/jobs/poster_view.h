#pragma once

#include <filesystem>
#include <functional>
#include <memory>

#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QWidget>

#include "support/observable.h"

namespace reelvane {

class Vantor;

/// The poster frame of a movie: a small picture by which its row is recognised. Main thread only;
/// nothing here ever waits for a disk or a process.
class PosterFrames {
public:
    using Arrived = std::function<void(const QImage&)>;

    virtual ~PosterFrames() = default;

    /// Looks for the poster in the background and tells it once, in a later turn of the loop,
    /// unless the subscription goes first. A movie without a poster never tells.
    [[nodiscard]] virtual Subscription request(const std::filesystem::path& movie,
                                               Arrived arrived) = 0;
    /// The poster if it is at hand, else a null image. To be asked while painting.
    [[nodiscard]] virtual QImage cached(const std::filesystem::path& movie) const = 0;
};

/// Posters from the thumbnails that the user's programs share. What is missing there is made by
/// ffmpeg and left for the others: one at a time, what was asked for last first, and with a
/// priority so low that no conversion feels it. What nobody waits for any more is never begun.
class ThumbnailPosters final : public PosterFrames {
public:
    /// The ports must outlive the background work, which may outlast this object.
    explicit ThumbnailPosters(const Vantor& vantor);
    ~ThumbnailPosters() override;
    ThumbnailPosters(const ThumbnailPosters&) = delete;
    ThumbnailPosters& operator=(const ThumbnailPosters&) = delete;
    ThumbnailPosters(ThumbnailPosters&&) = delete;
    ThumbnailPosters& operator=(ThumbnailPosters&&) = delete;

    [[nodiscard]] Subscription request(const std::filesystem::path& movie,
                                       Arrived arrived) override;
    [[nodiscard]] QImage cached(const std::filesystem::path& movie) const override;

private:
    class Queue;
    std::shared_ptr<Queue> queue_;  // shared, because subscriptions and work may outlast this
};

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
