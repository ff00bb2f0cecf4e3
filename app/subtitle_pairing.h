#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <vector>

namespace reelvane {

/// The movies and the external subtitle files that were seen so far, and which belong together by
/// their names. A movie that comes again gets its file again; two movies never share one.
class SubtitlePairing {
public:
    /// All movies of a batch are known before the first one is paired, so that none takes what is
    /// closer to another.
    void addMovie(const std::filesystem::path& movie);
    void addSubtitle(const std::filesystem::path& subtitle);

    /// The files that may go with the movie, the closest name first: the same name, else the name
    /// and a point, else a name that goes on at a word's end; of several the shortest, and of
    /// equals the one that was given last. Without those that are closer to another movie or
    /// paired with one.
    [[nodiscard]] std::vector<std::filesystem::path> subtitlesFor(
        const std::filesystem::path& movie) const;

    [[nodiscard]] bool mayGoWith(const std::filesystem::path& subtitle,
                                 const std::filesystem::path& movie) const;

    /// The movie whose name is closest to the file's; absent when it has nothing of one.
    [[nodiscard]] std::optional<std::filesystem::path> movieNamedLike(
        const std::filesystem::path& subtitle) const;
    [[nodiscard]] bool isPaired(const std::filesystem::path& subtitle) const {
        return owners_.contains(subtitle);
    }
    /// The file that the movie is paired with.
    [[nodiscard]] std::optional<std::filesystem::path> subtitleOf(
        const std::filesystem::path& movie) const;

    /// The movie has this file, and no other one any more, and no other movie gets it.
    void pair(const std::filesystem::path& movie, const std::filesystem::path& subtitle);

private:
    [[nodiscard]] bool isForAnother(const std::filesystem::path& subtitle,
                                    const std::filesystem::path& movie) const;

    std::set<std::filesystem::path> movies_;
    std::vector<std::filesystem::path> subtitles_;                   // in the order given
    std::map<std::filesystem::path, std::filesystem::path> owners_;  // subtitle -> movie
};

}  // namespace reelvane
