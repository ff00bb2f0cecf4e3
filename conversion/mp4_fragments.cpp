#include "conversion/mp4_fragments.h"

#include <algorithm>
#include <map>

namespace reelvane {
namespace {

// Flags of "tfhd" and "trun": which of their optional fields are there.
constexpr std::uint64_t kBaseDataOffset = 0x1;
constexpr std::uint64_t kSampleDescriptionIndex = 0x2;
constexpr std::uint64_t kDefaultSampleDuration = 0x8;
constexpr std::uint64_t kDataOffset = 0x1;
constexpr std::uint64_t kFirstSampleFlags = 0x4;
constexpr std::uint64_t kSampleDuration = 0x100;
constexpr std::uint64_t kSampleFields = 0xF00;

/// One track while its fragments are read; times in its own scale.
struct TrackTally {
    Mp4Track* track = nullptr;
    std::uint64_t defaultDuration = 0;
    std::uint64_t end = 0;
};
using Tallies = std::map<std::uint64_t, TrackTally>;

Tallies talliesOf(const ByteSource& file, const Mp4Box& mvex, Mp4Movie& movie) {
    Tallies tallies;
    for (auto& track : movie.tracks) tallies[track.trackID].track = &track;
    forEachBox(file, mvex.contentBegin, mvex.end, [&](const Mp4Box& box) {
        const auto trackID = box.type == "trex" ? numberInBox(file, box, 4, 4) : std::nullopt;
        const auto found = trackID ? tallies.find(*trackID) : tallies.end();
        if (found != tallies.end()) {
            found->second.defaultDuration = numberInBox(file, box, 12, 4).value_or(0);
        }
        return true;
    });
    return tallies;
}

/// Adds a run of samples.
bool readRun(const ByteSource& file, const Mp4Box& trun, std::uint64_t duration,
             TrackTally& tally) {
    const auto flags = numberInBox(file, trun, 1, 3);
    const auto count = numberInBox(file, trun, 4, 4);
    if (!flags || !count) return false;
    tally.track->sampleCount += *count;
    if ((*flags & kSampleDuration) == 0) {
        tally.end += *count * duration;
        return true;
    }
    std::uint64_t width = 0;
    for (auto field = kSampleDuration; (field & kSampleFields) != 0; field <<= 1U) {
        if ((*flags & field) != 0) width += 4;
    }
    std::uint64_t position = 8;
    for (const auto field : {kDataOffset, kFirstSampleFlags}) {
        if ((*flags & field) != 0) position += 4;
    }
    if (*count > trun.contentSize() / width) return false;
    for (std::uint64_t i = 0; i < *count; ++i, position += width) {
        const auto own = numberInBox(file, trun, position, 4);
        if (!own) return false;
        tally.end += *own;
    }
    return true;
}

bool readTrackFragment(const ByteSource& file, const Mp4Box& traf, Tallies& tallies) {
    const auto tfhd = childBox(file, traf, "tfhd");
    const auto flags = tfhd ? numberInBox(file, *tfhd, 1, 3) : std::nullopt;
    const auto trackID = tfhd ? numberInBox(file, *tfhd, 4, 4) : std::nullopt;
    if (!flags || !trackID) return false;
    const auto found = tallies.find(*trackID);
    if (found == tallies.end()) return false;
    auto& tally = found->second;
    auto duration = tally.defaultDuration;
    if ((*flags & kDefaultSampleDuration) != 0) {
        const std::uint64_t position = 8 + ((*flags & kBaseDataOffset) != 0 ? 8U : 0U) +
                                       ((*flags & kSampleDescriptionIndex) != 0 ? 4U : 0U);
        const auto own = numberInBox(file, *tfhd, position, 4);
        if (!own) return false;
        duration = *own;
    }
    if (const auto tfdt = childBox(file, traf, "tfdt")) {
        const bool wide = numberInBox(file, *tfdt, 0, 1) == 1U;
        const auto begin = numberInBox(file, *tfdt, 4, wide ? 8 : 4);
        if (!begin) return false;
        tally.end = *begin;
    }
    bool sound = true;
    const bool whole = forEachBox(file, traf.contentBegin, traf.end, [&](const Mp4Box& box) {
        if (box.type == "trun") sound = readRun(file, box, duration, tally);
        return sound;
    });
    return whole && sound;
}

}  // namespace

bool readFragments(const ByteSource& file, const Mp4Box& mvex, Mp4Movie& movie) {
    auto tallies = talliesOf(file, mvex, movie);
    bool sound = true;
    const bool whole = forEachBox(file, 0, file.size(), [&](const Mp4Box& moof) {
        if (moof.type != "moof") return true;
        const bool inside = forEachBox(file, moof.contentBegin, moof.end, [&](const Mp4Box& traf) {
            if (traf.type == "traf") sound = readTrackFragment(file, traf, tallies);
            return sound;
        });
        sound = sound && inside;
        return sound;
    });
    for (const auto& [trackID, tally] : tallies) {
        auto& track = *tally.track;
        const auto end = static_cast<double>(tally.end) / static_cast<double>(track.timeScale);
        track.seconds = std::max(track.seconds, end);
        movie.seconds = std::max(movie.seconds, track.seconds);
    }
    return whole && sound;
}

}  // namespace reelvane
