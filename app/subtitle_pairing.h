#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace reelvane {

/// The external subtitle files seen so far, and which movie each belongs to. An entry is never used
/// up: a later movie of the same name gets the same subtitle.
class SubtitlePairing {
public:
    /// A file under a name that is known replaces the earlier one.
    void add(const std::filesystem::path& subtitle);
    /// The first subtitle, in the byte order of the names, whose path begins with the movie's path
    /// without its extension: "Film.srt", "Film.en.srt" and "Film 2.srt" all pair with "Film.mkv".
    [[nodiscard]] std::optional<std::filesystem::path> subtitleFor(
        const std::filesystem::path& movie) const;

private:
    std::map<std::string, std::filesystem::path> importSubtitleFiles_;  // path without extension
};

}  // namespace reelvane
