#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace reelvane {

/// What the output's container depends on.
struct ContainerFacts {
    std::filesystem::path output{};
    std::string_view videoCodec{};  ///< always copied
    bool namesColour = false;       ///< the picture has colours, a range or HDR that boxes name
    bool hasDolbyVision = false;
    std::span<const std::string_view> copiedAudioCodecs{};
    bool produceStreamableFile = false;
};

/// The arguments that stand just before the output path. The converter picks a muxer for "m4v" that
/// refuses most codecs and writes no colours, so others get the MP4 muxer by name; HEVC gets the
/// tag that Apple's players ask for; the record of Dolby Vision is written only where that is
/// allowed.
[[nodiscard]] std::vector<std::string> containerArguments(const ContainerFacts& facts);

}  // namespace reelvane
