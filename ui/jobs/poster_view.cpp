#include "ui/jobs/poster_view.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

#include <QCache>
#include <QPainter>

#include "support/logging.h"
#include "support/ports/dispatcher.h"
#include "support/ports/host.h"
#include "support/ports/main_bundle.h"
#include "support/strings.h"
#include "support/vantor.h"
#include "ui/jobs/poster_maker.h"
#include "ui/jobs/thumbnail_cache.h"
#include "ui/widgets/theme.h"

namespace reelvane {
namespace {

constexpr qsizetype kMemory = qsizetype{16} << 20U;  // bytes: more than a hundred posters
// Long, because what gives way to all else is slow on a busy machine.
constexpr auto kTimeLimit = std::chrono::seconds(30);
// How many threads of the background may be lost to folders that do not answer. Others need some.
constexpr int kMostLost = 2;
constexpr double kRounding = 0.08;  // of the height
constexpr double kStandInShare = 0.45;
constexpr double kGroundShare = 0.09;

using std::filesystem::path;

struct Poster {
    ThumbnailOriginal original{};
    QImage picture{};  ///< null: there is none
};

/// All that finding one poster takes, off the main thread.
struct Search {
    path movie{};
    Poster known{};  ///< good if the movie has not changed since
    ThumbnailCache cache;
    PosterTools tools{};
    std::stop_token stop{};
};

Poster make(const Search& search, const ThumbnailOriginal& original) {
    const auto made = makePoster(search.movie, search.tools, search.stop);
    if (made.movieHasNone) search.cache.storeFailure(original);
    if (made.picture.isNull()) return {};
    PngTexts texts;
    if (made.runtimeSeconds) {
        texts.emplace_back("Thumb::Movie::Length", std::to_string(*made.runtimeSeconds));
    }
    search.cache.store(made.picture, original, std::move(texts));
    return {.original = original, .picture = made.picture};
}

Poster find(const Search& search) {
    const auto original = search.cache.originalOf(search.movie);
    if (!original) return {};
    if (search.known.original == *original) return search.known;
    if (auto picture = search.cache.find(*original); !picture.isNull()) {
        return {.original = *original, .picture = std::move(picture)};
    }
    if (search.stop.stop_requested() || search.cache.hasFailed(*original)) return {};
    auto poster = make(search, *original);
    if (poster.picture.isNull()) {
        vn_log_level(LogDebug, "No poster of '%@'", Fennimar::validUtf8(search.movie.native()));
    }
    return poster;
}

}  // namespace

/// Who waits for which poster, and the one search that runs. Main thread only.
class ThumbnailPosters::Queue : public std::enable_shared_from_this<Queue> {
public:
    explicit Queue(const Vantor& vantor)
        : ports_(vantor.ports()),
          thumbnails_(ports_.host.folders().cache, "reelvane", vantor.appVersionString()) {}

    [[nodiscard]] Subscription add(const path& movie, Arrived arrived) {
        const auto number = ++lastNumber_;
        waiters_.emplace(number, Waiter{movie, std::move(arrived)});
        // Later, so that of several requests the last one comes first.
        ports_.dispatcher.asyncMain(whileAlive([](Queue& queue) { queue.startNext(); }));
        return Subscription(whileAlive([number](Queue& queue) { queue.waiters_.erase(number); }));
    }
    [[nodiscard]] QImage cached(const path& movie) {
        const auto* const poster = memory_.object(movie.native());
        return poster != nullptr ? poster->picture : QImage();
    }
    /// Ends the search that runs: nobody waits for anything any more.
    void stop() {
        waiters_.clear();
        if (running_) running_->stop.request_stop();
    }

private:
    struct Waiter {
        path movie{};
        Arrived arrived{};
    };
    struct Running {
        std::uint64_t number = 0;
        path movie{};
        std::stop_source stop{};
        std::unique_ptr<Timer> limit{};
    };

    template <typename Do>
    [[nodiscard]] Work whileAlive(Do act) {
        return [queue = weak_from_this(), act = std::move(act)] {
            if (const auto alive = queue.lock()) act(*alive);
        };
    }

    void startNext() {
        if (running_ || lost_ >= kMostLost || waiters_.empty()) return;
        const auto number = ++lastNumber_;
        auto& running = running_.emplace(Running{.number = number});
        running.movie = waiters_.rbegin()->second.movie;
        const auto* const known = memory_.object(running.movie.native());
        Search search{.movie = running.movie,
                      .known = known != nullptr ? *known : Poster(),
                      .cache = thumbnails_,
                      .tools = {.launcher = &ports_.processLauncher,
                                .ffmpeg = ports_.mainBundle.pathForResource("ffmpeg"),
                                .side = ThumbnailCache::kSide},
                      .stop = running.stop.get_token()};
        ports_.dispatcher.asyncBackground([queue = weak_from_this(), search = std::move(search),
                                           number, &dispatcher = ports_.dispatcher] {
            dispatcher.asyncMain([queue, number, movie = search.movie, poster = find(search)] {
                if (const auto alive = queue.lock()) alive->finish(number, movie, poster);
            });
        });
        running.limit = ports_.dispatcher.every(kTimeLimit, [this] { endAttempt(); });
    }

    /// First by asking. One that does not end even then waits for a folder that does not answer.
    void endAttempt() {
        if (!running_->stop.stop_requested()) {
            running_->stop.request_stop();
            return;
        }
        ++lost_;
        const auto movie = running_->movie;
        running_.reset();
        tell(movie, {});
        startNext();
    }

    void finish(std::uint64_t number, const path& movie, const Poster& poster) {
        if (running_ && running_->number == number) {
            running_.reset();
        } else {
            --lost_;
        }
        if (poster.picture.isNull()) {
            memory_.remove(movie.native());
        } else {
            memory_.insert(movie.native(), std::make_unique<Poster>(poster).release(),
                           poster.picture.sizeInBytes());
        }
        tell(movie, poster.picture);
        startNext();
    }

    void tell(const path& movie, const QImage& picture) {
        std::vector<std::uint64_t> numbers;
        for (const auto& [number, waiter] : waiters_) {
            if (waiter.movie.native() == movie.native()) numbers.push_back(number);
        }
        for (const auto number : numbers) {
            const auto waiter = waiters_.extract(number);  // empty: an earlier one cancelled it
            if (!waiter.empty() && !picture.isNull()) waiter.mapped().arrived(picture);
        }
    }

    Ports ports_;
    ThumbnailCache thumbnails_;
    QCache<std::string, Poster> memory_{kMemory};
    std::map<std::uint64_t, Waiter> waiters_;  ///< the last one asked last
    std::uint64_t lastNumber_ = 0;
    std::optional<Running> running_;
    int lost_ = 0;  ///< searches that were given up and have not come back
};

ThumbnailPosters::ThumbnailPosters(const Vantor& vantor)
    : queue_(std::make_shared<Queue>(vantor)) {}

ThumbnailPosters::~ThumbnailPosters() {
    queue_->stop();
}

Subscription ThumbnailPosters::request(const path& movie, Arrived arrived) {
    return queue_->add(movie, std::move(arrived));
}

QImage ThumbnailPosters::cached(const path& movie) const {
    return queue_->cached(movie);
}

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
