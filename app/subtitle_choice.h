#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "media/mkv_file_info.h"
#include "media/subtitle_file.h"

namespace reelvane {

class Translations;

/// A movie's subtitle file, looked into.
struct ChosenSubtitle {
    std::filesystem::path file{};
    SubtitleFormat format{};
};

/// Which of the files that may go with a movie does, and what there is to say of the others.
struct SubtitleChoice {
    std::optional<ChosenSubtitle> subtitle{};
    std::vector<std::string> leftOut{};  ///< one sentence each, in the user's language
};

/// What follows where a file does not tell its encoding.
enum class UnknownEncoding {
    IsAskedFor,
    LeavesOut,     ///< nobody can be asked
    IsPreferences  ///< the preferences name one for all files
};

/// Looks into the files, best first, until one is subtitles; one that is gone is passed over.
/// Blocks; any thread.
[[nodiscard]] SubtitleChoice chooseSubtitle(const Translations& translations,
                                            const std::vector<std::filesystem::path>& candidates,
                                            UnknownEncoding unknownEncoding);

/// The record with this subtitle file, or with none.
void setSubtitle(MKVFileInfo& record, const std::optional<ChosenSubtitle>& subtitle);

/// True while the user has to say how the movie's subtitle file is encoded.
[[nodiscard]] bool asksForEncoding(const MKVFileInfo& record);

/// Says that a movie without sound goes over without its subtitle file; empty where it does not.
[[nodiscard]] std::string silentMovieText(const Translations& translations,
                                          const MKVFileInfo& record);

}  // namespace reelvane
