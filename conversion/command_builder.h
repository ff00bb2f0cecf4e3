#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "conversion/conversion_settings.h"
#include "media/mkv_file_info.h"

namespace reelvane {

inline constexpr auto kAACBitrates =
    std::to_array<std::string_view>({"96k", "128k", "160k", "192k"});
inline constexpr auto kAC3StereoBitrates =
    std::to_array<std::string_view>({"160k", "192k", "224k", "256k"});
inline constexpr auto kAC3SurroundBitrates =
    std::to_array<std::string_view>({"384k", "448k", "512k", "576k"});

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
