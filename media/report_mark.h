#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace reelvane {

/// What tells a report's lines from words of the movie that look like them. The name of a tag may
/// hold line feeds, and ffmpeg prints it as it is, so a place in the report proves nothing. But it
/// gives every stream of its input the codec tag that it is told to, and prints that with each: a
/// number made up for one run is one that no movie knows.
class ReportMark {
public:
    /// From 0x10000000 on, which is printed with eight digits.
    explicit ReportMark(std::uint32_t number);

    /// What stands before the "-i" of the input.
    [[nodiscard]] std::vector<std::string> arguments() const;
    /// What stands in for the input's path, so that the input line is marked, too.
    [[nodiscard]] std::string standIn() const;

    /// The report as it would read without the mark and without lines that the movie has forged: of
    /// streams and inputs that are not marked, of a duration behind the streams. Where several
    /// durations differ none is left. A report without a marked stream, as something that is not
    /// quite ffmpeg may print it, comes back as it was. Linear.
    [[nodiscard]] std::string genuine(std::string_view report) const;

private:
    std::string words_;  ///< " / 0xC1D2E3F4)"
};

}  // namespace reelvane
