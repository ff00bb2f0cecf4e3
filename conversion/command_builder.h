#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
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

}  // namespace reelvane
