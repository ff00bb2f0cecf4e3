#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "conversion/conversion_settings.h"
#include "media/mkv_file_info.h"

namespace reelvane {

/// Everything that the argument list depends on; nothing else is read.
struct CommandInput {
    MKVFileInfo file{};  ///< with its destination set
    std::size_t audioTrackIndex = 0;
    ConversionSettings settings{};
    std::filesystem::path progressFile{};
    bool needsFixup = false;  ///< the trial run's answer
};

/// The converter's argument list, without the executable. The chosen audio method must be one of
/// the four; the caller has checked that.
[[nodiscard]] std::vector<std::string> buildArguments(const CommandInput& input);

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

class Translations;

/// The argument list of a conversion that is not made, or an empty one and why it could not be.
struct PlannedCommand {
    std::vector<std::string> arguments{};
    std::string problem{};  ///< a sentence in the user's language; empty: none
};

/// What a conversion would be run with, were it started now with these preferences. Makes nothing;
/// looks into the progress folder for a free name. Whether a copied AAC track needs to be fixed up
/// shows only in a trial run as the conversion starts, so that is left out.
[[nodiscard]] PlannedCommand plannedCommand(const Translations& translations,
                                            const MKVFileInfo& file, std::size_t audioTrackIndex,
                                            const ConversionSettings& preferences,
                                            const std::filesystem::path& progressFolder);

}  // namespace reelvane
