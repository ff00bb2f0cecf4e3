#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>

#include "support/localization.h"

namespace reelvane {

/// What a volume says of itself, in bytes.
struct VolumeFacts {
    std::uint64_t freeSize = 0;                      ///< for this user
    std::optional<std::uint64_t> maximumFileSize{};  ///< absent: none reported
};

/// What a user is told when a volume takes no file of the needed size.
inline constexpr std::string_view kNoLargeFiles =
    localizable("Your target disk doesn't support large files.");

/// Absent when the folder's file system cannot be asked.
[[nodiscard]] std::optional<VolumeFacts> volumeFacts(const std::filesystem::path& folder);

/// Why a file of this size should not be written there; empty when it may. Pure.
[[nodiscard]] std::string_view spaceProblem(std::uint64_t needed, const VolumeFacts& volume);

}  // namespace reelvane
