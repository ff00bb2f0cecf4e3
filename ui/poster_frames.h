#pragma once

#include <filesystem>
#include <functional>

#include <QImage>

#include "support/observable.h"

namespace reelvane {

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

}  // namespace reelvane
