#include "mp4/media_ranges.h"

#include <algorithm>
#include <iterator>

namespace reelvane {
namespace {

// Only files with a fragment for every few frames have more.
constexpr std::size_t kMostRanges = 4096;

}  // namespace

void MediaRanges::add(std::uint64_t begin, std::uint64_t end) {
    bytes_ += end - begin;
    if (ranges_.size() < kMostRanges) {
        ranges_.push_back({.begin = begin, .end = end});
    } else {
        // What lies between the last ones counts as media then. The end of all stays exact, and
        // that is where a file is cut.
        ranges_.back().end = end;
    }
}

bool MediaRanges::holds(std::uint64_t offset, std::uint64_t bytes) const {
    const auto next = std::ranges::upper_bound(ranges_, offset, {}, &Range::begin);
    if (next == ranges_.begin()) return false;
    const auto& range = *std::prev(next);
    return offset < range.end && bytes <= range.end - offset;
}

}  // namespace reelvane
