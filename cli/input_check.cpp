#include "cli/input_check.h"

#include <algorithm>
#include <system_error>

#include "app/file_sorting.h"
#include "app/subtitle_pairing.h"
#include "support/make_string.h"
#include "support/paths.h"
#include "support/strings.h"

namespace reelvane {
namespace {

bool hasExtensionOf(const std::filesystem::path& path, std::span<const std::string_view> types) {
    const auto extension = Fennimar::lowercasedExtension(path);
    return std::ranges::find(types, extension) != types.end();
}

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
    const bool known =
        hasExtensionOf(file.path, kMovieFileTypes) || hasExtensionOf(file.path, kSubtitleFileTypes);
    if (known) return {};
    return makeString(
        "'%@' has none of the extensions of a movie (mkv, mp4, mov, ogm, wmv, mpg, flv, webm, ts) "
        "or of a subtitle file (srt, ass, ssa, smi, sub).",
        name);
}

bool belongsToOne(const std::filesystem::path& subtitle, const std::vector<InputFile>& files) {
    SubtitlePairing pairing;
    pairing.add(subtitle);
    return std::ranges::any_of(files, [&](const InputFile& file) {
        return hasExtensionOf(file.path, kMovieFileTypes) && pairing.subtitleFor(file.path);
    });
}

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
    if (!hasExtensionOf(file.path, kSubtitleFileTypes)) return std::nullopt;
    return makeString("'%@' is a subtitle file. Please name the movie that it belongs to.",
                      Fennimar::validUtf8(file.given));
}

CheckedInputs checkInputs(const std::vector<std::string>& given, std::string_view appName) {
    CheckedInputs checked;
    std::vector<InputFile> candidates;
    for (const auto& name : given) {
        InputFile file{.given = name, .path = absolutePath(name)};
        if (auto problem = fileProblem(file); !problem.empty()) {
            checked.refused.push_back(
                {.given = name, .alert = refusal(appName, std::move(problem))});
        } else {
            candidates.push_back(std::move(file));
        }
    }
    for (const auto& file : candidates) {
        const bool alone =
            hasExtensionOf(file.path, kSubtitleFileTypes) && !belongsToOne(file.path, candidates);
        if (!alone) {
            checked.files.push_back(file);
            continue;
        }
        auto message = makeString(
            "The subtitle file '%@' belongs to none of the movies: its name has to begin with the "
            "name of one. To add it to another movie use --subtitle.",
            Fennimar::validUtf8(file.given));
        checked.refused.push_back(
            {.given = file.given, .alert = refusal(appName, std::move(message))});
    }
    return checked;
}

}  // namespace reelvane
