#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "media/vetting.h"

namespace reelvane {

/// One name from the command line.
struct InputFile {
    std::string given{};           ///< as the user wrote it
    std::filesystem::path path{};  ///< absolute
    bool isFound = false;          ///< in a folder that was named
};

/// A name that leads to no conversion, and why.
struct RefusedInput {
    std::string given{};
    VettingAlert alert{};
    bool isFound = false;  ///< in a folder: the user did not ask for this very file
};

struct CheckedInputs {
    std::vector<InputFile> files{};  ///< movies and subtitle files to open, in the order given
    std::vector<RefusedInput> refused{};
};

/// The absolute path, its bytes kept and no link resolved. A relative one hangs on the folder in
/// which the program was started. Without "." as a part, so that "./Film.mkv" and "Film.srt" are
/// seen to belong together.
[[nodiscard]] std::filesystem::path absolutePath(const std::string& given);

/// Why the file is no movie to be read, by its kind and its extension; absent when it may be one.
[[nodiscard]] std::optional<std::string> movieProblem(const InputFile& file);

/// Why the file cannot be a movie's subtitles, by what is in it; empty when it can be.
/// `findsEncoding`: no preference names the encoding of all files.
[[nodiscard]] std::string subtitleProblem(const InputFile& file, bool findsEncoding);

/// Searches folders as an open request does, and sorts out what that would pass over: names without
/// a file, unknown extensions, and subtitle files that go with none of the movies.
[[nodiscard]] CheckedInputs checkInputs(const std::vector<std::string>& given,
                                        std::string_view appName, bool findsEncoding);

}  // namespace reelvane
