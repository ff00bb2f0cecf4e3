#include "mp4/mp4_reader.h"

#include <algorithm>
#include <array>
#include <span>

#include "mp4/mp4_box.h"
#include "mp4/mp4_fragments.h"
#include "mp4/mp4_track_reader.h"

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
    std::uint64_t padding = 0;  ///< bytes after the last box, too few to be one
    bool isZeroPadding = true;
    std::string lastBox{};  ///< the type of the last whole one
};

/// Some programs fill a file up, mostly with zeros; eight of them read as a box to the end of the
/// file. Other bytes are too few for a box only up to seven.
void readPadding(const ByteSource& file, std::uint64_t offset, TopLevel& top) {
    std::array<std::byte, 7> bytes{};
    const auto left = file.size() - offset;
    top.whole = left <= bytes.size();
    if (!top.whole) return;
    const auto rest = std::span(bytes).first(left);
    top.padding = left;
    top.isZeroPadding = file.read(offset, rest) && bigEndian(rest) == 0;
}

TopLevel readTopLevel(const ByteSource& file) {
    TopLevel top;
    std::uint64_t offset = 0;
    while (offset < file.size()) {
        const auto box = readBox(file, offset, file.size());
        if (!box || box->end > file.size()) {
            if (box) {
                top.whole = false;
                top.cutBox = box->type;
            } else {
                readPadding(file, offset, top);
            }
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

/// Time scale of the whole movie (mvhd) and its play time in it.
struct MovieHeader {
    std::uint64_t timeScale = 0;
    Mp4Field duration{};
};

std::optional<MovieHeader> readMovieHeader(const ByteSource& file, const Mp4Box& moov) {
    const auto mvhd = childBox(file, moov, "mvhd");
    if (!mvhd) return std::nullopt;
    const auto version = numberInBox(file, *mvhd, 0, 1);
    const bool wide = version == 1U;
    const auto scale = numberInBox(file, *mvhd, wide ? 20 : 12, 4);
    const std::uint64_t position = wide ? 24 : 16;
    const std::size_t width = wide ? 8 : 4;
    const auto duration = durationInBox(file, *mvhd, position, width);
    if (!version || !scale || !duration || *scale == 0) return std::nullopt;
    return MovieHeader{
        .timeScale = *scale,
        .duration = {.offset = mvhd->contentBegin + position, .width = width, .value = *duration}};
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

/// What is left over may be the beginning of the next fragment: three zeros and fewer are that of
/// its size. An index of the fragments (mfra) comes after the last one.
bool isCutBetweenFragments(const TopLevel& top) {
    constexpr std::uint64_t kZerosOfASize = 3;
    if (top.padding == 0 || top.lastBox == "mfra") return false;
    return !top.isZeroPadding || top.padding <= kZerosOfASize;
}

Mp4Reading readOpened(const ByteSource& file) {
    const auto top = readTopLevel(file);
    if (top.moov && childBox(file, *top.moov, "rmra")) {
        return {.problem = "only refers to other files", .uncheckable = true};
    }
    if (auto problem = problemOf(top)) return {.problem = std::move(*problem)};
    const auto header = readMovieHeader(file, *top.moov);
    if (!header) {
        // QuickTime can pack the whole index with zlib; hardly any file of this century does.
        const bool packed = childBox(file, *top.moov, "cmov").has_value();
        if (packed) return {.problem = "has a compressed index", .uncheckable = true};
        return {.problem = "has a damaged movie header (mvhd)"};
    }
    Mp4Movie movie{.seconds = static_cast<double>(header->duration.value) /
                              static_cast<double>(header->timeScale),
                   .mediaBytes = top.media.bytes(),
                   .timeScale = header->timeScale,
                   .duration = header->duration};
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

bool isPictureOrSound(const ByteSource& file, const Mp4Box& trak) {
    static constexpr std::array<std::uint64_t, 2> kHandlers{0x76696465, 0x736F756E};  // vide, soun
    const auto mdia = childBox(file, trak, "mdia");
    const auto hdlr = mdia ? childBox(file, *mdia, "hdlr") : std::nullopt;
    const auto handler = hdlr ? numberInBox(file, *hdlr, 8, 4) : std::nullopt;
    return handler && std::ranges::count(kHandlers, *handler) > 0;
}

}  // namespace

std::size_t partsOfMp4(const std::filesystem::path& file) {
    const auto source = ByteSource::open(file);
    if (!source) return 0;
    std::size_t most = 0;
    forEachBox(*source, 0, source->size(), [&](const Mp4Box& moov) {
        if (moov.type != "moov") return true;
        forEachBox(*source, moov.contentBegin, moov.end, [&](const Mp4Box& trak) {
            if (trak.type == "trak" && isPictureOrSound(*source, trak)) {
                most = std::max(most, readEdits(*source, trak).parts);
            }
            return true;
        });
        return false;
    });
    return most;
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
