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
    /// Nobody can answer the file sheet: a file that does not become a job at once (the save panel
    /// was declined, the menu points nowhere) is told as refused, and the next one is taken.
    bool unattended = false;
};

}  // namespace reelvane
