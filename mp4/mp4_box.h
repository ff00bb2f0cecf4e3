#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "support/posix_io.h"

namespace reelvane {

/// Reads parts of a file that nobody vouches for. All reads together are limited, so that no file
/// can keep the reader busy for more than some ten seconds: eight million of the file, 512 MiB, or
/// 268 million that came along with one of them. Any thread, but not shared.
class ByteSource {
public:
    /// Absent when the file cannot be opened for reading.
    [[nodiscard]] static std::optional<ByteSource> open(const std::filesystem::path& file);

    [[nodiscard]] std::uint64_t size() const { return size_; }
    /// Fills the whole buffer from the offset; false when the file does not hold that much, or when
    /// too much has been read already.
    [[nodiscard]] bool read(std::uint64_t offset, std::span<std::byte> buffer) const;
    /// The limit was met: what could not be read is unknown, not broken.
    [[nodiscard]] bool isExhausted() const { return isExhausted_; }
    /// A part that the file has could not be read, or the file has become shorter: unknown as well.
    [[nodiscard]] bool hasFailed() const { return hasFailed_; }

private:
    ByteSource(FileDescriptor file, std::uint64_t size);

    [[nodiscard]] bool spend(std::uint64_t cost) const;
    [[nodiscard]] bool isInWindow(std::uint64_t offset, std::uint64_t bytes) const;
    [[nodiscard]] bool readFile(std::uint64_t offset, std::span<std::byte> buffer) const;

    FileDescriptor file_;
    std::uint64_t size_ = 0;
    // Neighbouring headers and fields cost one read of the file.
    mutable std::array<std::byte, 4096> window_{};
    mutable std::uint64_t windowBegin_ = 0;
    mutable std::uint64_t windowSize_ = 0;
    mutable std::uint64_t budget_ = 0;
    mutable bool isExhausted_ = false;
    mutable bool hasFailed_ = false;
};

/// A number of 1, 2, 4 or 8 bytes, most significant byte first.
[[nodiscard]] std::uint64_t bigEndian(std::span<const std::byte> bytes);

/// One box of the ISO base media file format (ISO/IEC 14496-12, 4.2): a size, a type, a content.
struct Mp4Box {
    std::string type{};        ///< four bytes, "moov"
    std::uint64_t offset = 0;  ///< of the box itself, from the start of the file
    std::uint64_t contentBegin = 0;
    std::uint64_t end = 0;  ///< one past its last byte, as its size field says

    [[nodiscard]] std::uint64_t contentSize() const { return end - contentBegin; }
};

/// The box at the offset inside an area that ends at `areaEnd`. Its size is taken from the file and
/// may claim more than the area holds: the caller compares `end`. Absent when not even the header
/// fits, or the size is smaller than the header. A size of 0 reaches to the end of the area.
[[nodiscard]] std::optional<Mp4Box> readBox(const ByteSource& file, std::uint64_t offset,
                                            std::uint64_t areaEnd);

/// Walks the boxes of an area in order, as long as `visit` answers true. False when a box does not
/// fit into the area: nothing after it can be trusted.
bool forEachBox(const ByteSource& file, std::uint64_t begin, std::uint64_t end,
                const std::function<bool(const Mp4Box&)>& visit);

/// The first box of a type directly inside another one.
[[nodiscard]] std::optional<Mp4Box> childBox(const ByteSource& file, const Mp4Box& parent,
                                             std::string_view type);

/// A number of `width` bytes at `position` in the box's content; absent when it lies outside.
[[nodiscard]] std::optional<std::uint64_t> numberInBox(const ByteSource& file, const Mp4Box& box,
                                                       std::uint64_t position, std::size_t width);

/// A duration: as numberInBox, but 0 where all bits are set, which says that it is unknown.
[[nodiscard]] std::optional<std::uint64_t> durationInBox(const ByteSource& file, const Mp4Box& box,
                                                         std::uint64_t position, std::size_t width);

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

/// One field of a file to be set in place; its size never changes.
struct FieldPatch {
    std::uint64_t offset = 0;
    std::vector<std::uint8_t> bytes{};  ///< most significant first
};

/// A field of `width` bytes with this value.
[[nodiscard]] FieldPatch fieldPatch(std::uint64_t offset, std::uint64_t value, std::size_t width);

/// Writes the fields, one write each, so that the file plays after every one of them. False when
/// one could not be written.
[[nodiscard]] bool applyPatches(const std::filesystem::path& file,
                                const std::vector<FieldPatch>& patches);

}  // namespace reelvane
