#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "conversion/conversion_settings.h"
#include "media/mkv_file_info.h"

namespace reelvane {

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
