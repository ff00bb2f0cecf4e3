#include "conversion/mp4_movie.h"

#include <algorithm>
#include <array>
#include <span>

#include "conversion/media_ranges.h"
#include "conversion/mp4_box.h"
#include "conversion/mp4_fragments.h"
#include "conversion/mp4_track_reader.h"

namespace reelvane {
namespace {

// No real file comes near it.
constexpr std::size_t kMostTracks = 256;

/// What stands at the top level of a file.
struct TopLevel {
    std::optional<Mp4Box> moov{};
    MediaRanges media{};
    bool isMp4 = false;
    std::string cutBox{};  ///< the type of a box that reaches beyond the end of the file
    bool whole = true;
    std::uint64_t padding = 0;  ///< zero bytes after the last box
    std::string lastBox{};      ///< its type
};

/// Some programs fill a file up with zeros. Eight and more read as a box to the end of the file.
bool isPadding(const ByteSource& file, std::uint64_t offset) {
    std::array<std::byte, 7> bytes{};
    const auto left = file.size() - offset;
    if (left > bytes.size()) return false;
    const auto rest = std::span(bytes).first(left);
    return file.read(offset, rest) && bigEndian(rest) == 0;
}

TopLevel readTopLevel(const ByteSource& file) {
    TopLevel top;
    std::uint64_t offset = 0;
    while (offset < file.size()) {
        const auto box = readBox(file, offset, file.size());
        if (!box || box->end > file.size()) {
            top.whole = !box && isPadding(file, offset);
            if (top.whole) top.padding = file.size() - offset;
            if (box) top.cutBox = box->type;
            break;
        }
        if (box->type == "ftyp") top.isMp4 = true;
        if (box->type == "moov" && !top.moov) top.moov = box;
        if (box->type == "mdat") top.media.add(box->contentBegin, box->end);
        offset = box->end;
        top.lastBox = box->type;
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
    if (top.media.bytes() == 0) return "has no media data (mdat)";
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
    const auto duration = durationInBox(file, *mvhd, wide ? 24 : 16, wide ? 8 : 4);
    if (!version || !scale || !duration || *scale == 0) return std::nullopt;
    return MovieHeader{.timeScale = *scale,
                       .seconds = static_cast<double>(*duration) / static_cast<double>(*scale)};
}

/// Reads all tracks into the movie; answers the problem alone, or nothing.
Mp4Reading readTracks(const ByteSource& file, const Mp4Box& moov, const TrackContext& context,
                      Mp4Movie& movie) {
    Mp4Reading fault;
    const bool whole = forEachBox(file, moov.contentBegin, moov.end, [&](const Mp4Box& box) {
        if (box.type != "trak") return true;
        auto track = readTrack(file, box, context);
        fault = {.problem = std::move(track.problem), .uncheckable = track.uncheckable};
        if (track.track) movie.tracks.push_back(std::move(*track.track));
        if (movie.tracks.size() > kMostTracks) {
            fault = {.problem = "has too many tracks", .uncheckable = true};
        }
        return fault.problem.empty();
    });
    if (!whole) return {.problem = "has a damaged index (moov)"};
    if (fault.problem.empty() && movie.tracks.empty()) return {.problem = "has no track"};
    return fault;
}

bool hasTooLittleMedia(const Mp4Movie& movie) {
    auto left = movie.mediaBytes;
    return std::ranges::any_of(movie.tracks, [&left](const Mp4Track& track) {
        const bool fits = track.sampleBytes <= left;
        left -= fits ? track.sampleBytes : 0;
        return !fits;
    });
}

/// Three zeros and fewer may be the beginning of the next fragment's size. An index of the
/// fragments (mfra) comes after the last one.
bool isCutBetweenFragments(const TopLevel& top) {
    constexpr std::uint64_t kZerosOfASize = 3;
    return top.padding > 0 && top.padding <= kZerosOfASize && top.lastBox != "mfra";
}

Mp4Reading readOpened(const ByteSource& file) {
    const auto top = readTopLevel(file);
    if (auto problem = problemOf(top)) return {.problem = std::move(*problem)};
    const auto header = readMovieHeader(file, *top.moov);
    if (!header) {
        // QuickTime can pack the whole index with zlib; hardly any file of this century does.
        const bool packed = childBox(file, *top.moov, "cmov").has_value();
        if (packed) return {.problem = "has a compressed index", .uncheckable = true};
        return {.problem = "has a damaged movie header (mvhd)"};
    }
    Mp4Movie movie{.seconds = header->seconds, .mediaBytes = top.media.bytes()};
    const TrackContext context{.timeScale = header->timeScale, .media = top.media};
    if (auto fault = readTracks(file, *top.moov, context, movie); !fault.problem.empty()) {
        return fault;
    }
    if (hasTooLittleMedia(movie)) {
        return {.problem = "has less media data than its index describes"};
    }
    if (const auto mvex = childBox(file, *top.moov, "mvex")) {
        movie.fragmented = true;
        auto problem = readFragments(file, *mvex, top.media, movie);
        if (!problem.empty()) return {.problem = std::move(problem)};
        if (isCutBetweenFragments(top)) return {.problem = "ends with bytes that are no box"};
        if (std::ranges::all_of(movie.tracks,
                                [](const Mp4Track& track) { return track.sampleCount == 0; })) {
            return {.problem = "has an index without any sample"};
        }
    }
    return {.movie = std::move(movie)};
}

}  // namespace

bool holdsStream(const Mp4Track& track) {
    return track.kind != Mp4TrackKind::Other && track.codec != "text";
}

Mp4Reading readMp4(const std::filesystem::path& file) {
    const auto source = ByteSource::open(file);
    if (!source) {
        std::error_code unknown;
        const bool missing = !std::filesystem::exists(file, unknown) && !unknown;
        return {.problem = missing ? "is not there" : "cannot be read", .uncheckable = true};
    }
    auto reading = readOpened(*source);
    if (source->hasFailed()) return {.problem = "cannot be read", .uncheckable = true};
    if (source->isExhausted()) {
        return {.problem = "has too large an index", .uncheckable = true};
    }
    return reading;
}

}  // namespace reelvane
