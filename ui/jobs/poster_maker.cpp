#include "ui/jobs/poster_maker.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

#include <QByteArray>

#include "media/probe_report.h"
#include "media/report_outline.h"
#include "support/make_string.h"
#include "support/paths.h"
#include "support/ports/child_process.h"
#include "support/strings.h"

namespace reelvane {
namespace {

constexpr int kLatestFirst = 60'000;    // ms: farther away only costs time
constexpr int kLatestSecond = 300'000;  // past any opening titles

/// What the child printed; absent when it was stopped or could not be run.
std::optional<std::string> outputOf(std::vector<std::string> arguments, const PosterTools& tools,
                                    const std::stop_token& stop) {
    auto result = tools.launcher->run({.executable = tools.ffmpeg,
                                       .arguments = std::move(arguments),
                                       .background = true,
                                       .stop = stop,
                                       .keepsAllOutput = true});
    if (!result.finished || stop.stop_requested()) return std::nullopt;
    return std::move(result.finished->output);
}

/// The picture in what ffmpeg printed, where a library of it may have put in a word of its own.
QImage pictureIn(std::string_view output) {
    const auto begin = output.find("\x89PNG");
    if (begin == std::string_view::npos) return {};
    const auto png = output.substr(begin);
    return QImage::fromData(QByteArray::fromRawData(png.data(), static_cast<qsizetype>(png.size())),
                            "PNG");
}

/// Fits the picture, as it is to be seen, into the square; smaller ones stay as they are.
std::string scaling(int side) {
    const auto factor = makeString("min(1,min(%i/(iw*sar),%i/ih))", side, side);
    return makeString("scale=w='max(1,round(iw*sar*%s))':h='max(1,round(ih*%s))',setsar=1", factor,
                      factor);
}

constexpr std::string_view kToneMapping =
    ",zscale=t=linear:npl=203,format=gbrpf32le,zscale=p=bt709,tonemap=mobius:desat=0"
    ",zscale=t=bt709:m=bt709:r=full";

}  // namespace

PosterFacts posterFactsIn(std::string_view report) {
    const auto outline = outlineOf(report);
    const auto isHighDynamicRange = [](const StreamBlock& stream) {
        return Fennimar::contains(stream.details, "smpte2084") ||
               Fennimar::contains(stream.details, "arib-std-b67");
    };
    return {.readable = !outline.demuxer.empty() && !isPlaylistDemuxer(outline.demuxer),
            .seconds = std::max(outline.summary.runtimeSeconds.value_or(0), 0),
            .highDynamicRange =
                std::any_of(outline.streams.begin(), outline.streams.end(), isHighDynamicRange)};
}

std::vector<PosterAttempt> posterAttempts(const PosterFacts& facts) {
    const auto part = [&](int divisor, int latest) {
        return static_cast<int>(std::min<long long>(facts.seconds * 1000LL / divisor, latest));
    };
    const int first = part(10, kLatestFirst);
    std::vector<PosterAttempt> attempts = {
        {.milliseconds = first, .toneMapped = facts.highDynamicRange}};
    if (facts.seconds > 0) {
        attempts.push_back(
            {.milliseconds = part(3, kLatestSecond), .toneMapped = facts.highDynamicRange});
    }
    // Not every ffmpeg can map tones.
    if (facts.highDynamicRange) attempts.push_back({.milliseconds = first});
    attempts.push_back({.milliseconds = 0, .keyFrames = false});
    return attempts;
}

std::vector<std::string> posterArguments(const std::filesystem::path& movie,
                                         const PosterAttempt& attempt, int side) {
    std::vector<std::string> arguments;
    const auto add = [&](std::initializer_list<std::string> words) {
        arguments.insert(arguments.end(), words);
    };
    add({"-nostdin", "-v", "quiet", "-threads", "1"});
    // The nearest such picture before the place is good enough.
    if (attempt.keyFrames) add({"-noaccurate_seek", "-skip_frame", "nokey"});
    // Where there is none it must not read on to the end.
    add({"-ss", makeString("%ims", attempt.milliseconds), "-t", "30", "-i", movie.native()});
    // A picture from before the place counts as too late, unless its time is taken from it.
    auto filter = "setpts=0," + scaling(side);
    if (attempt.toneMapped) filter += kToneMapping;
    add({"-map", "0:V:0", "-frames:v", "1", "-vf", filter, "-filter_threads", "1"});  // V: no cover
    add({"-f", "image2pipe", "-c:v", "png", "-pix_fmt", "rgb24", "-threads", "1", "-"});
    return arguments;
}

bool isBlank(const QImage& picture) {
    constexpr int kSmall = 16;
    constexpr int kLeastRange = 32;  // of 256 shades
    const auto small =
        picture.scaled(kSmall, kSmall, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
            .convertToFormat(QImage::Format_Grayscale8);
    int darkest = 255;
    int lightest = 0;
    for (int y = 0; y < small.height(); ++y) {
        for (int x = 0; x < small.width(); ++x) {
            const int shade = qGray(small.pixel(x, y));
            darkest = std::min(darkest, shade);
            lightest = std::max(lightest, shade);
        }
    }
    return lightest - darkest < kLeastRange;
}

MadePoster makePoster(const std::filesystem::path& file, const PosterTools& tools,
                      const std::stop_token& stop) {
    const auto movie = Fennimar::absolutePath(file);
    const auto report = outputOf({"-nostdin", "-i", movie.native()}, tools, stop);
    if (!report || !isFromFfmpeg(*report)) return {};
    const auto facts = posterFactsIn(*report);
    if (!facts.readable) return {.movieHasNone = true};
    MadePoster made;
    if (facts.seconds > 0) made.runtimeSeconds = facts.seconds;
    for (const auto& attempt : posterAttempts(facts)) {
        const auto output = outputOf(posterArguments(movie, attempt, tools.side), tools, stop);
        if (!output) return {};
        auto picture = pictureIn(*output);
        if (picture.isNull()) continue;
        const bool isEnough = !isBlank(picture);
        if (isEnough || made.picture.isNull()) made.picture = std::move(picture);
        if (isEnough) break;
    }
    made.movieHasNone = made.picture.isNull();
    return made;
}

}  // namespace reelvane
