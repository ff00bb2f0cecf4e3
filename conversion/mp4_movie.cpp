#include "conversion/mp4_movie.h"

#include <algorithm>

#include "conversion/mp4_box.h"
#include "conversion/mp4_track_reader.h"

namespace reelvane {
namespace {

/// What stands at the top level of a file.
struct TopLevel {
    std::optional<Mp4Box> moov{};
    std::vector<MediaRange> media{};
    std::uint64_t mediaBytes = 0;
    bool isMp4 = false;
    std::string cutBox{};  ///< the type of a box that reaches beyond the end of the file
    bool whole = true;
};

TopLevel readTopLevel(const ByteSource& file) {
    TopLevel top;
    std::uint64_t offset = 0;
    while (offset < file.size()) {
        const auto box = readBox(file, offset, file.size());
        if (!box || box->end > file.size()) {
            top.whole = false;
            if (box) top.cutBox = box->type;
            break;
        }
        if (box->type == "ftyp") top.isMp4 = true;
        if (box->type == "moov" && !top.moov) top.moov = box;
        if (box->type == "mdat") {
            top.media.push_back({.begin = box->contentBegin, .end = box->end});
            top.mediaBytes += box->contentSize();
        }
        offset = box->end;
    }
    return top;
}

/// Absent: the top level is in order.
std::optional<std::string> problemOf(const TopLevel& top) {
    if (!top.isMp4 && !top.moov) return "is no MP4 file";
    if (!top.cutBox.empty() &&
        std::ranges::all_of(top.cutBox, [](char c) { return c >= ' ' && c <= '~'; })) {
        return "is cut off inside its box \"" + top.cutBox + "\"";
    }
    if (!top.whole) return "ends with bytes that are no box";
    if (!top.moov) return "has no index (moov)";
    if (top.mediaBytes == 0) return "has no media data (mdat)";
    return std::nullopt;
}

/// Play time of the whole movie (mvhd) and its time scale.
struct MovieHeader {
    std::uint64_t timeScale = 0;
    double seconds = 0;
};

std::optional<MovieHeader> readMovieHeader(const ByteSource& file, const Mp4Box& moov) {
    const auto mvhd = childBox(file, moov, "mvhd");
    if (!mvhd) return std::nullopt;
    const auto version = numberInBox(file, *mvhd, 0, 1);
    const bool wide = version == 1U;
    const auto scale = numberInBox(file, *mvhd, wide ? 20 : 12, 4);
    const auto duration = numberInBox(file, *mvhd, wide ? 24 : 16, wide ? 8 : 4);
    if (!version || !scale || !duration || *scale == 0) return std::nullopt;
    return MovieHeader{.timeScale = *scale,
                       .seconds = static_cast<double>(*duration) / static_cast<double>(*scale)};
}

}  // namespace

Mp4Reading readMp4(const std::filesystem::path& path) {
    const auto file = ByteSource::open(path);
    if (!file) return {.problem = "cannot be opened"};
    const auto top = readTopLevel(*file);
    if (auto problem = problemOf(top)) return {.problem = std::move(*problem)};
    const auto header = readMovieHeader(*file, *top.moov);
    if (!header) return {.problem = "has a damaged movie header (mvhd)"};

    Mp4Movie movie{.seconds = header->seconds, .mediaBytes = top.mediaBytes};
    movie.fragmented = childBox(*file, *top.moov, "mvex").has_value();
    const TrackContext context{
        .timeScale = header->timeScale, .fragmented = movie.fragmented, .media = top.media};
    std::string problem;
    const bool whole =
        forEachBox(*file, top.moov->contentBegin, top.moov->end, [&](const Mp4Box& box) {
            if (box.type != "trak") return true;
            auto track = readTrack(*file, box, context);
            problem = track.problem;
            if (track.track) movie.tracks.push_back(std::move(*track.track));
            return problem.empty();
        });
    if (!whole) return {.problem = "has a damaged index (moov)"};
    if (!problem.empty()) return {.problem = std::move(problem)};
    if (movie.tracks.empty()) return {.problem = "has no track"};
    std::uint64_t needed = 0;
    for (const auto& track : movie.tracks) needed += track.sampleBytes;
    if (!movie.fragmented && needed > movie.mediaBytes) {
        return {.problem = "has less media data than its index describes"};
    }
    return {.movie = std::move(movie)};
}

}  // namespace reelvane
