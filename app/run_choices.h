#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>

namespace reelvane {

/// What the caller fixes for every file of this run, beside the preferences. The window fixes
/// nothing; the command line passes its options on.
struct RunChoices {
    std::optional<std::filesystem::path> destinationFolder{};  ///< instead of the menu's choice
    std::optional<std::size_t> audioTrackIndex{};              ///< instead of the best language
    std::optional<std::filesystem::path> subtitleFile{};       ///< instead of the paired one
};

}  // namespace reelvane
