#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "app/intake_messages.h"

namespace reelvane {

class Translations;

/// The extensions of the movies that are taken, in lower case.
inline constexpr auto kMovieFileTypes = std::to_array<std::string_view>(
    {"mkv", "mp4", "mov", "ogm", "wmv", "mpg", "flv", "webm", "ts"});
/// The extensions of external subtitle files, in lower case.
inline constexpr auto kSubtitleFileTypes =
    std::to_array<std::string_view>({"srt", "ass", "ssa", "smi", "sub"});

/// Opened files, told apart by their extensions.
struct SortedFiles {
    std::vector<std::filesystem::path> movies{};     ///< last given first, to be taken from the end
    std::vector<std::filesystem::path> subtitles{};  ///< in the order in which they count
};

/// Reads the first four bytes of a file as an integer in host byte order.
using FirstBytesReader = std::function<std::optional<std::uint32_t>(const std::filesystem::path&)>;

/// Sorts the paths; what is neither movie nor subtitle is left out, and so is a "sub" file that
/// holds pictures. Reads nothing but the first bytes of "sub" files.
[[nodiscard]] SortedFiles sortFiles(std::span<const std::filesystem::path> paths,
                                    const FirstBytesReader& firstBytes);

/// By the extension alone.
[[nodiscard]] bool isMovieFile(const std::filesystem::path& path);
[[nodiscard]] bool isSubtitleFile(const std::filesystem::path& path);

/// True when a drag with these is welcome: a movie, a folder that may hold some, or what is told
/// to be neither. Subtitle files alone are of no use. Looks at the names alone.
[[nodiscard]] bool acceptsDrag(std::span<const std::filesystem::path> paths);

/// What the open panel lets the user choose: the movies' extensions, then the subtitles'.
[[nodiscard]] std::vector<std::string> openableFileTypes();

/// How far a folder is searched: a whole disk that was dropped by mistake is not read to its end.
struct FolderSearchBounds {
    int depth = 12;
    std::size_t entries = 50'000;
};

/// The movies and subtitle files in a folder and the folders in it, as a person would order them.
struct FolderSearch {
    std::vector<std::filesystem::path> files{};
    std::string problem{};  ///< why it could not be read; empty: it could
    bool isWhole = true;    ///< false: a bound was met
};

/// Hidden entries and links to folders are passed over. Asks the disk; any thread.
[[nodiscard]] FolderSearch searchFolder(const std::filesystem::path& folder,
                                        const std::stop_token& stop,
                                        const FolderSearchBounds& bounds = {});

/// "Episode 2" comes before "Episode 10", and "a" beside "A".
[[nodiscard]] bool naturallyBefore(const std::filesystem::path& one,
                                   const std::filesystem::path& other);

/// What was opened, after a look at it.
struct OpenedFiles {
    SortedFiles sorted{};
    std::vector<RefusedFile> leftOut{};  ///< what is neither taken nor looked for
};

/// What a search has put into the place of a folder.
struct FolderContent {
    std::vector<std::filesystem::path> files{};
    std::string problem{};  ///< one sentence in the user's language on what is missing; or empty
};

/// Without the files that were `given` by themselves, which are taken in their own places. Asks the
/// disk; any thread.
[[nodiscard]] FolderContent openFolder(const std::filesystem::path& folder,
                                       const std::vector<std::filesystem::path>& given,
                                       const Translations& translations,
                                       const std::stop_token& stop);

/// Puts into the place of each folder what is in it, sorts all, and says of each other thing why it
/// is left out, in the user's language. Asks the disk; any thread.
[[nodiscard]] OpenedFiles lookInto(const std::vector<std::filesystem::path>& paths,
                                   const Translations& translations, const std::stop_token& stop);

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
