#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "media/mkv_file_info.h"

namespace reelvane {

/// Two-letter ISO 639-1 codes and their ISO 639-2 bibliographic codes, sorted by the first.
[[nodiscard]] std::span<const std::pair<std::string_view, std::string_view>> languageTable();

/// The ISO 639-2 bibliographic code of a language in any of its spellings, "ger" for "de", "deu",
/// "ger" and "de-AT"; what is in no table passes through unchanged.
[[nodiscard]] std::string bibliographicCode(std::string_view language);

/// The user's languages as three-letter codes; what is not in the table passes through unchanged.
/// Norwegian in either written form is followed by Norwegian.
[[nodiscard]] std::vector<std::string> preferredLanguages3Letter(
    const std::vector<std::string>& identifiers);

/// The index of the audio entry to preselect: the best-ranked language, and of its entries the
/// first "aac", else the first "ac3", else the first. Absent when there is no entry.
/// `defaultAudio`: 0 takes the user's languages; 2 to 8 one fixed language; others read as 0.
[[nodiscard]] std::optional<std::size_t> bestLanguage(
    std::span<const AudioTrack> tracks, int defaultAudio,
    std::span<const std::string> preferredLanguages);

}  // namespace reelvane
