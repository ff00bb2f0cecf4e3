#include "mp4/mp4_box.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <iterator>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "support/posix_io.h"

namespace reelvane {
namespace {

constexpr std::uint64_t kShortHeader = 8;
constexpr std::uint64_t kLongHeader = 16;

// In units of some 20 ns; a read of the file costs one more for each byte. Ten hours with a
// fragment for every frame of picture and sound stay below the limit.
constexpr std::uint64_t kFileCost = 64;
constexpr std::uint64_t kWindowCost = 2;
constexpr std::uint64_t kBudget = std::uint64_t{1} << 29U;

}  // namespace

ByteSource::ByteSource(FileDescriptor file, std::uint64_t size)
    : file_(std::move(file)),
      size_(size),
      budget_(kBudget) {}

std::optional<ByteSource> ByteSource::open(const std::filesystem::path& file) {
    FileDescriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status = {};
    if (!descriptor.isOpen() || ::fstat(descriptor.get(), &status) != 0) return std::nullopt;
    if (!S_ISREG(status.st_mode)) return std::nullopt;
    return ByteSource(std::move(descriptor), static_cast<std::uint64_t>(status.st_size));
}

bool ByteSource::spend(std::uint64_t cost) const {
    isExhausted_ = isExhausted_ || cost > budget_;
    if (!isExhausted_) budget_ -= cost;
    return !isExhausted_;
}

bool ByteSource::read(std::uint64_t offset, std::span<std::byte> buffer) const {
    if (offset > size_ || buffer.size() > size_ - offset) return false;
    const bool inWindow = isInWindow(offset, buffer.size());
    if (!spend(inWindow ? kWindowCost : kFileCost + buffer.size())) return false;
    if (buffer.size() > window_.size()) return readFile(offset, buffer);
    if (!inWindow) {
        windowBegin_ = offset;
        windowSize_ = std::min<std::uint64_t>(window_.size(), size_ - offset);
        if (!readFile(offset, std::span(window_).first(windowSize_))) windowSize_ = 0;
        if (windowSize_ == 0 && !buffer.empty()) return false;
    }
    std::ranges::copy(std::span(window_).subspan(offset - windowBegin_, buffer.size()),
                      buffer.begin());
    return true;
}

bool ByteSource::isInWindow(std::uint64_t offset, std::uint64_t bytes) const {
    return offset >= windowBegin_ && offset - windowBegin_ <= windowSize_ &&
           bytes <= windowSize_ - (offset - windowBegin_);
}

bool ByteSource::readFile(std::uint64_t offset, std::span<std::byte> buffer) const {
    while (!buffer.empty()) {
        const auto count =
            ::pread(file_.get(), buffer.data(), buffer.size(), static_cast<off_t>(offset));
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) {
            hasFailed_ = true;
            return false;
        }
        buffer = buffer.subspan(static_cast<std::size_t>(count));
        offset += static_cast<std::uint64_t>(count);
    }
    return true;
}

std::uint64_t bigEndian(std::span<const std::byte> bytes) {
    std::uint64_t number = 0;
    for (const auto byte : bytes) number = number << 8U | std::to_integer<std::uint64_t>(byte);
    return number;
}

std::optional<Mp4Box> readBox(const ByteSource& file, std::uint64_t offset, std::uint64_t areaEnd) {
    std::array<std::byte, kLongHeader> header{};
    if (areaEnd < offset || areaEnd - offset < kShortHeader) return std::nullopt;
    if (!file.read(offset, std::span(header).first(kShortHeader))) return std::nullopt;
    Mp4Box box;
    for (std::size_t i = 4; i < kShortHeader; ++i) box.type += static_cast<char>(header.at(i));
    box.offset = offset;
    auto size = bigEndian(std::span(header).first(4));
    auto headerSize = kShortHeader;
    if (size == 1) {
        headerSize = kLongHeader;
        if (areaEnd - offset < kLongHeader || !file.read(offset, header)) return std::nullopt;
        size = bigEndian(std::span(header).subspan(kShortHeader));
    } else if (size == 0) {
        size = areaEnd - offset;
    }
    if (size < headerSize || size > UINT64_MAX - offset) return std::nullopt;
    box.contentBegin = offset + headerSize;
    box.end = offset + size;
    return box;
}

bool forEachBox(const ByteSource& file, std::uint64_t begin, std::uint64_t end,
                const std::function<bool(const Mp4Box&)>& visit) {
    while (begin < end) {
        const auto box = readBox(file, begin, end);
        if (!box || box->end > end) return false;
        if (!visit(*box)) return true;
        begin = box->end;
    }
    return true;
}

std::optional<Mp4Box> childBox(const ByteSource& file, const Mp4Box& parent,
                               std::string_view type) {
    std::optional<Mp4Box> found;
    forEachBox(file, parent.contentBegin, parent.end, [&](const Mp4Box& box) {
        if (box.type == type) found = box;
        return !found;
    });
    return found;
}

std::optional<std::uint64_t> numberInBox(const ByteSource& file, const Mp4Box& box,
                                         std::uint64_t position, std::size_t width) {
    std::array<std::byte, 8> bytes{};
    const auto field = std::span(bytes).first(width);
    if (position > box.contentSize() || width > box.contentSize() - position) return std::nullopt;
    if (!file.read(box.contentBegin + position, field)) return std::nullopt;
    return bigEndian(field);
}

std::optional<std::uint64_t> durationInBox(const ByteSource& file, const Mp4Box& box,
                                           std::uint64_t position, std::size_t width) {
    const auto duration = numberInBox(file, box, position, width);
    return duration == (width == 8 ? UINT64_MAX : UINT32_MAX) ? 0 : duration;
}

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

FieldPatch fieldPatch(std::uint64_t offset, std::uint64_t value, std::size_t width) {
    FieldPatch result{.offset = offset};
    for (auto shift = static_cast<unsigned>(width * 8); shift > 0; shift -= 8) {
        result.bytes.push_back(static_cast<std::uint8_t>(value >> (shift - 8) & 0xFFU));
    }
    return result;
}

bool applyPatches(const std::filesystem::path& file, const std::vector<FieldPatch>& patches) {
    if (patches.empty()) return true;
    const FileDescriptor descriptor(::open(file.c_str(), O_WRONLY | O_CLOEXEC));
    if (!descriptor.isOpen()) return false;
    for (const auto& field : patches) {
        ssize_t written = 0;
        do {
            written = ::pwrite(descriptor.get(), field.bytes.data(), field.bytes.size(),
                               static_cast<off_t>(field.offset));
        } while (written < 0 && errno == EINTR);
        if (written != static_cast<ssize_t>(field.bytes.size())) return false;
    }
    return true;
}

}  // namespace reelvane
