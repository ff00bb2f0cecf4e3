#pragma once

#include <cstddef>
#include <filesystem>
#include <stop_token>
#include <string>
#include <vector>

#include "app/file_sorting.h"
#include "app/refused_files.h"

namespace reelvane {

class Translations;

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

/// True when all these are movies by their names: then nothing needs to be looked at.
[[nodiscard]] bool areMovies(const std::vector<std::filesystem::path>& paths);

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

}  // namespace reelvane
