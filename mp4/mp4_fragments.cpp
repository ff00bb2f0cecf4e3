#include "mp4/mp4_fragments.h"

#include <algorithm>
#include <map>
#include <optional>

namespace reelvane {
namespace {

// Flags of "tfhd" and "trun": which of their optional fields are there.
constexpr std::uint64_t kBaseDataOffset = 0x1;
constexpr std::uint64_t kSampleDescriptionIndex = 0x2;
constexpr std::uint64_t kDefaultSampleDuration = 0x8;
constexpr std::uint64_t kDefaultSampleSize = 0x10;
constexpr std::uint64_t kDefaultBaseIsMoof = 0x20000;
constexpr std::uint64_t kDataOffset = 0x1;
constexpr std::uint64_t kFirstSampleFlags = 0x4;
constexpr std::uint64_t kSampleDuration = 0x100;
constexpr std::uint64_t kSampleSize = 0x200;
constexpr std::uint64_t kSampleFields = 0xF00;

/// Of one sample, or of several together.
struct SampleValues {
    std::uint64_t duration = 0;
    std::uint64_t size = 0;
};

/// One track while its fragments are read; times in its own scale.
struct TrackTally {
    Mp4Track* track = nullptr;
    SampleValues defaults{};
    std::optional<std::uint64_t> begin{};  ///< where a recording without an own start sets in
    std::uint64_t end = 0;
};

/// One track's part of a fragment while its runs are read; places from the start of the file.
struct TrackFragment {
    TrackTally& tally;
    SampleValues defaults{};
    std::uint64_t base = 0;  ///< what the offsets of runs count from
    std::uint64_t next = 0;  ///< where a run begins that has no offset
};

/// A box's fields, one after the other.
class Fields {
public:
    Fields(const ByteSource& file, const Mp4Box& box, std::uint64_t position)
        : file_(file),
          box_(box),
          position_(position) {}

    /// 0 where the box has ended.
    std::uint64_t take(std::size_t width) {
        const auto number = numberInBox(file_, box_, position_, width);
        isSound_ = isSound_ && number;
        position_ += width;
        return number.value_or(0);
    }
    [[nodiscard]] bool isSound() const { return isSound_; }
    [[nodiscard]] std::uint64_t position() const { return position_; }
    [[nodiscard]] std::uint64_t left() const {
        return box_.contentSize() - std::min(position_, box_.contentSize());
    }
    void goTo(std::uint64_t position) { position_ = position; }

private:
    const ByteSource& file_;
    const Mp4Box& box_;
    std::uint64_t position_ = 0;
    bool isSound_ = true;
};

/// What all samples of a run last and hold together. `fields` stands at the first one's own fields,
/// which `flags` name. Absent when the run has fewer samples than it says.
std::optional<SampleValues> totalsOf(Fields& fields, std::uint64_t flags, std::uint64_t count,
                                     const SampleValues& defaults) {
    std::uint64_t width = 0;
    for (auto field = kSampleDuration; (field & kSampleFields) != 0; field <<= 1U) {
        if ((flags & field) != 0) width += 4;
    }
    const bool ownDuration = (flags & kSampleDuration) != 0;
    const bool ownSize = (flags & kSampleSize) != 0;
    SampleValues totals{.duration = ownDuration ? 0 : count * defaults.duration,
                        .size = ownSize ? 0 : count * defaults.size};
    if (width > 0 && count > fields.left() / width) return std::nullopt;
    if (!ownDuration && !ownSize) return totals;
    for (auto next = fields.position(); count > 0 && fields.isSound(); --count) {
        fields.goTo(next);
        if (ownDuration) totals.duration += fields.take(4);
        if (ownSize) totals.size += fields.take(4);
        next += width;
    }
    return fields.isSound() ? std::optional(totals) : std::nullopt;
}

class FragmentReader {
public:
    FragmentReader(const ByteSource& file, const Mp4Box& mvex, const MediaRanges& media,
                   Mp4Movie& movie);

    /// Answers the problem, or an empty text.
    [[nodiscard]] std::string read(const Mp4Box& moof);
    [[nodiscard]] const std::map<std::uint64_t, TrackTally>& tallies() const { return tallies_; }

private:
    [[nodiscard]] bool readTrack(const Mp4Box& moof, const Mp4Box& traf);
    [[nodiscard]] bool readRuns(const Mp4Box& traf, TrackFragment& fragment);
    [[nodiscard]] bool readRun(const Mp4Box& trun, TrackFragment& fragment);

    const ByteSource& file_;
    const MediaRanges& media_;
    std::map<std::uint64_t, TrackTally> tallies_{};
    std::uint64_t dataEnd_ = 0;  ///< of the track's part before, or where the fragment begins
    bool isInMedia_ = true;
};

FragmentReader::FragmentReader(const ByteSource& file, const Mp4Box& mvex, const MediaRanges& media,
                               Mp4Movie& movie)
    : file_(file),
      media_(media) {
    for (auto& track : movie.tracks) tallies_[track.trackID].track = &track;
    forEachBox(file, mvex.contentBegin, mvex.end, [&](const Mp4Box& box) {
        const auto trackID = box.type == "trex" ? numberInBox(file, box, 4, 4) : std::nullopt;
        const auto found = trackID ? tallies_.find(*trackID) : tallies_.end();
        if (found != tallies_.end()) {
            found->second.defaults = {.duration = numberInBox(file, box, 12, 4).value_or(0),
                                      .size = numberInBox(file, box, 16, 4).value_or(0)};
        }
        return true;
    });
}

std::string FragmentReader::read(const Mp4Box& moof) {
    dataEnd_ = moof.offset;
    bool sound = true;
    const bool whole = forEachBox(file_, moof.contentBegin, moof.end, [&](const Mp4Box& traf) {
        if (traf.type == "traf") sound = readTrack(moof, traf);
        return sound;
    });
    if (!isInMedia_) return "has a fragment (moof) that points outside its media data";
    return whole && sound ? "" : "has a damaged fragment (moof)";
}

bool FragmentReader::readTrack(const Mp4Box& moof, const Mp4Box& traf) {
    const auto tfhd = childBox(file_, traf, "tfhd");
    if (!tfhd) return false;
    Fields fields(file_, *tfhd, 1);
    const auto flags = fields.take(3);
    const auto found = tallies_.find(fields.take(4));
    if (found == tallies_.end()) return false;
    TrackFragment fragment{.tally = found->second, .defaults = found->second.defaults};
    fragment.base = (flags & kDefaultBaseIsMoof) != 0 ? moof.offset : dataEnd_;
    if ((flags & kBaseDataOffset) != 0) fragment.base = fields.take(8);
    if ((flags & kSampleDescriptionIndex) != 0) fields.take(4);
    if ((flags & kDefaultSampleDuration) != 0) fragment.defaults.duration = fields.take(4);
    if ((flags & kDefaultSampleSize) != 0) fragment.defaults.size = fields.take(4);
    fragment.next = fragment.base;
    return fields.isSound() && readRuns(traf, fragment);
}

bool FragmentReader::readRuns(const Mp4Box& traf, TrackFragment& fragment) {
    if (const auto tfdt = childBox(file_, traf, "tfdt")) {
        const bool wide = numberInBox(file_, *tfdt, 0, 1) == 1U;
        const auto begin = numberInBox(file_, *tfdt, 4, wide ? 8 : 4);
        if (!begin) return false;
        auto& tally = fragment.tally;
        if (!tally.begin) tally.begin = tally.track->sampleCount == 0 ? *begin : 0;
        tally.end = *begin;
    }
    bool sound = true;
    const bool whole = forEachBox(file_, traf.contentBegin, traf.end, [&](const Mp4Box& box) {
        if (box.type == "trun") sound = readRun(box, fragment);
        return sound;
    });
    dataEnd_ = fragment.next;
    return whole && sound;
}

bool FragmentReader::readRun(const Mp4Box& trun, TrackFragment& fragment) {
    Fields fields(file_, trun, 1);
    const auto flags = fields.take(3);
    const auto count = fields.take(4);
    if ((flags & kDataOffset) != 0) {
        const auto offset = static_cast<std::int32_t>(static_cast<std::uint32_t>(fields.take(4)));
        fragment.next = fragment.base + static_cast<std::uint64_t>(offset);
    }
    if ((flags & kFirstSampleFlags) != 0) fields.take(4);
    const auto totals = totalsOf(fields, flags, count, fragment.defaults);
    if (!totals) return false;
    auto& track = *fragment.tally.track;
    track.sampleCount += count;
    track.sampleBytes += totals->size;
    fragment.tally.end += totals->duration;
    isInMedia_ = totals->size == 0 || media_.holds(fragment.next, totals->size);
    fragment.next += totals->size;
    return isInMedia_;
}

}  // namespace

std::string readFragments(const ByteSource& file, const Mp4Box& mvex, const MediaRanges& media,
                          Mp4Movie& movie) {
    FragmentReader reader(file, mvex, media, movie);
    std::string problem;
    forEachBox(file, 0, file.size(), [&](const Mp4Box& box) {
        if (box.type == "moof") problem = reader.read(box);
        return problem.empty();
    });
    for (const auto& [trackID, tally] : reader.tallies()) {
        auto& track = *tally.track;
        const auto units = tally.end - std::min(tally.end, tally.begin.value_or(0));
        const auto seconds = static_cast<double>(units) / static_cast<double>(track.timeScale);
        track.seconds = std::max(track.seconds, seconds);
        movie.seconds = std::max(movie.seconds, track.seconds);
    }
    return problem;
}

}  // namespace reelvane
