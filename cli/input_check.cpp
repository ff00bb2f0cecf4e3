#include "cli/input_check.h"

#include <algorithm>
#include <functional>
#include <system_error>

#include "app/opened_files.h"
#include "media/subtitle_file.h"
#include "support/localization.h"
#include "support/make_string.h"
#include "support/paths.h"
#include "support/strings.h"

namespace reelvane {
namespace {

VettingAlert refusal(std::string_view appName, std::string message) {
    return {.title = std::string(appName), .message = std::move(message), .button = "OK"};
}

/// Why the file cannot be taken in, by its kind and extension; empty when it can be.
std::string fileProblem(const InputFile& file) {
    std::error_code error;
    const auto name = Fennimar::validUtf8(file.given);
    if (std::filesystem::symlink_status(file.path, error).type() ==
        std::filesystem::file_type::not_found) {
        return makeString("There is no file '%@'. Please check the name and the folder.", name);
    }
    const auto status = std::filesystem::status(file.path, error);
    // A link that leads nowhere is explained when it is probed.
    const bool dangling = status.type() == std::filesystem::file_type::not_found;
    if (error && !dangling) {
        return makeString("The file '%@' cannot be read: %@.", name, error.message());
    }
    if (std::filesystem::is_directory(status)) {
        return makeString("'%@' is a folder. Please name the movies in it.", name);
    }
    if (!dangling && !std::filesystem::is_regular_file(status)) {
        return makeString("'%@' is no regular file, so it is not read.", name);
    }
    if (isMovieFile(file.path) || isSubtitleFile(file.path)) return {};
    return makeString(
        "'%@' has none of the extensions of a movie (mkv, mp4, mov, ogm, wmv, mpg, flv, webm, ts) "
        "or of a subtitle file (srt, ass, ssa, smi, sub).",
        name);
}

/// What a user could know his text by, as it would read in the commonest encoding.
std::string sampleText(const std::vector<std::string>& lines) {
    std::string text;
    for (const auto& line : lines) {
        if (!text.empty()) text += " / ";
        text += decoded(line, "CP1252").value_or(Fennimar::validUtf8(line));
    }
    return text;
}

using Refuse = std::function<void(const InputFile&, std::string)>;

/// The files that were named, and in the place of each folder what is in it.
std::vector<InputFile> withFoldersOpened(const std::vector<std::string>& given,
                                         const Refuse& refuse) {
    std::vector<std::filesystem::path> paths;
    paths.reserve(given.size());
    for (const auto& name : given) paths.push_back(absolutePath(name));
    std::vector<InputFile> files;
    for (std::size_t i = 0; i < given.size(); ++i) {
        InputFile file{.given = given[i], .path = paths[i]};
        std::error_code ignored;
        if (!std::filesystem::is_directory(file.path, ignored)) {
            files.push_back(std::move(file));
            continue;
        }
        const auto folder = openFolder(file.path, paths, kUntranslated, {});
        for (const auto& found : folder.files) {
            const auto name =
                std::filesystem::path(file.given) / found.lexically_relative(file.path);
            files.push_back({.given = name, .path = found, .isFound = true});
        }
        if (!folder.problem.empty()) refuse(file, folder.problem);
    }
    return files;
}

/// The movies among the files with the subtitle files that they get, in the order in which the
/// movies are read.
class Pairs {
public:
    explicit Pairs(const std::vector<InputFile>& files) {
        for (const auto& file : files) {
            if (isSubtitleFile(file.path)) {
                pairing_.addSubtitle(file.path);
            } else {
                pairing_.addMovie(file.path);
            }
        }
        for (const auto& file : files) {
            if (isSubtitleFile(file.path)) continue;
            const auto subtitles = pairing_.subtitlesFor(file.path);
            if (!subtitles.empty()) pairing_.pair(file.path, subtitles.front());
        }
    }

    /// Why a subtitle file goes with none of them; empty when it does.
    [[nodiscard]] std::string problem(const InputFile& subtitle) const {
        if (pairing_.isPaired(subtitle.path)) return {};
        const auto name = Fennimar::validUtf8(subtitle.given);
        const auto movie = pairing_.movieNamedLike(subtitle.path);
        const auto taken = movie ? pairing_.subtitleOf(*movie) : std::nullopt;
        if (!taken) {
            return makeString(
                "The subtitle file '%@' belongs to none of the movies: its name has to begin with "
                "the name of one. To add it to another movie use --subtitle.",
                name);
        }
        return makeString(
            "The subtitle file '%@' is left out: '%@' goes with the movie '%@'. To add another one "
            "use --subtitle.",
            name, Fennimar::validUtf8(taken->filename().native()),
            Fennimar::validUtf8(movie->filename().native()));
    }

private:
    SubtitlePairing pairing_;
};

}  // namespace

std::filesystem::path absolutePath(const std::string& given) {
    std::filesystem::path path;
    for (const auto& part : Fennimar::absolutePath(given)) {
        if (part != ".") path /= part;
    }
    return path;
}

std::optional<std::string> movieProblem(const InputFile& file) {
    if (auto problem = fileProblem(file); !problem.empty()) return problem;
    if (!isSubtitleFile(file.path)) return std::nullopt;
    return makeString("'%@' is a subtitle file. Please name the movie that it belongs to.",
                      Fennimar::validUtf8(file.given));
}

std::string subtitleProblem(const InputFile& file, bool findsEncoding) {
    const auto look = lookIntoSubtitle(file.path);
    if (look.problem != SubtitleProblem::None) {
        return subtitleProblemText(kUntranslated, file.path, look.problem);
    }
    if (!findsEncoding || look.format.encoding.kind != FoundEncoding::Kind::Unknown) return {};
    return makeString(
        "The character encoding of the subtitle file '%@' can't be told from its text. Please name "
        "it, for example --set ExternalSubtitleEncoding=8 for CP1252; 'reelvane-cli preferences "
        "list' shows them all. Two of its lines, were it CP1252: %@",
        Fennimar::validUtf8(file.given), sampleText(look.format.samples));
}

CheckedInputs checkInputs(const std::vector<std::string>& given, std::string_view appName,
                          bool findsEncoding) {
    CheckedInputs checked;
    const auto refuse = [&](const InputFile& file, std::string problem) {
        checked.refused.push_back({.given = file.given,
                                   .alert = refusal(appName, std::move(problem)),
                                   .isFound = file.isFound});
    };
    std::vector<InputFile> candidates;
    for (auto& file : withFoldersOpened(given, refuse)) {
        auto problem = fileProblem(file);
        if (problem.empty() && isSubtitleFile(file.path)) {
            problem = subtitleProblem(file, findsEncoding);
        }
        if (problem.empty()) {
            candidates.push_back(std::move(file));
        } else {
            refuse(file, std::move(problem));
        }
    }
    const Pairs pairs(candidates);
    for (const auto& file : candidates) {
        auto problem = isSubtitleFile(file.path) ? pairs.problem(file) : std::string();
        if (problem.empty()) {
            checked.files.push_back(file);
        } else {
            refuse(file, std::move(problem));
        }
    }
    return checked;
}

}  // namespace reelvane
