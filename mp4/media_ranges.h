#pragma once

#include <cstdint>
#include <vector>

namespace reelvane {

/// Where a file's media data lie: the contents of its media data boxes, in file order.
class MediaRanges {
public:
    /// A range from `begin` to one past its last byte, behind all that were added before.
    void add(std::uint64_t begin, std::uint64_t end);

    /// Of all ranges together.
    [[nodiscard]] std::uint64_t bytes() const { return bytes_; }
    /// Whether so many bytes from the offset lie inside a single range.
    [[nodiscard]] bool holds(std::uint64_t offset, std::uint64_t bytes) const;

private:
    struct Range {
        std::uint64_t begin = 0;
        std::uint64_t end = 0;
    };
    std::vector<Range> ranges_{};
    std::uint64_t bytes_ = 0;
};

}  // namespace reelvane
