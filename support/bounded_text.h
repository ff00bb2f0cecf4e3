#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace reelvane {

/// What a program printed, however much that is: whole up to four parts, and of more the first part
/// and at least the last one, with a line between them that says how much was left out.
class BoundedText {
public:
    static constexpr std::size_t kPart = std::size_t{1} << 20U;  ///< bytes
    static constexpr std::size_t kUnbounded = SIZE_MAX / 8;      ///< a part that keeps everything

    explicit BoundedText(std::size_t part = kPart) : part_(part) {}

    void append(std::string_view text);

    [[nodiscard]] const std::string& text() const { return text_; }
    [[nodiscard]] std::uint64_t omittedBytes() const { return omitted_; }

private:
    std::size_t part_;
    std::string text_;
    std::size_t markLength_ =
        0;  ///< of the line that stands behind the first part; 0: there is none
    std::uint64_t omitted_ = 0;
};

}  // namespace reelvane
