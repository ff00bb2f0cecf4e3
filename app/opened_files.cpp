#include "app/opened_files.h"

#include <algorithm>
#include <bit>
#include <compare>
#include <cstddef>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "media/subtitle_file.h"
#include "support/localization.h"
#include "support/make_string.h"
#include "support/paths.h"
#include "support/ports/translations.h"
#include "support/strings.h"

namespace reelvane {
namespace {

/// The bytes 00 00 01 BA, which begin an MPEG program stream and so a "sub" file of pictures, as an
/// integer in host byte order.
constexpr std::uint32_t kPackHeader =
    std::endian::native == std::endian::little ? 0xBA010000U : 0x000001BAU;
constexpr std::string_view kPossiblyPictures = "sub";

bool isTextSubtitle(const std::filesystem::path& path) {
    return isSubtitleFile(path) && Fennimar::lowercasedExtension(path) != kPossiblyPictures;
}

using Path = std::filesystem::path;

bool isDigit(char letter) {
    return letter >= '0' && letter <= '9';
}

char folded(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

/// Takes the digits off the front, without leading zeros.
std::string_view takeNumber(std::string_view& text) {
    const auto end = std::min(text.size(), text.find_first_not_of("0123456789"));
    auto digits = text.substr(0, end);
    text.remove_prefix(end);
    digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
    return digits;
}

/// Below, above or at zero, as the first text comes before the second or after it.
int compareNaturally(std::string_view one, std::string_view other) {
    while (!one.empty() && !other.empty()) {
        if (isDigit(one.front()) && isDigit(other.front())) {
            const auto number = takeNumber(one);
            const auto second = takeNumber(other);
            if (number.size() != second.size()) return number.size() < second.size() ? -1 : 1;
            if (const int order = number.compare(second); order != 0) return order;
            continue;
        }
        const auto letter = static_cast<unsigned char>(folded(one.front()));
        const auto second = static_cast<unsigned char>(folded(other.front()));
        if (letter != second) return letter < second ? -1 : 1;
        one.remove_prefix(1);
        other.remove_prefix(1);
    }
    return static_cast<int>(!one.empty()) - static_cast<int>(!other.empty());
}

bool isHidden(const Path& path) {
    return path.filename().native().starts_with('.');
}

bool isTaken(const Path& path) {
    return isMovieFile(path) || isSubtitleFile(path);
}

std::string named(const Translations& translations, std::string_view sentence, const Path& path) {
    const auto name = path.has_filename() ? path.filename() : path;
    return makeString(translations.localized(sentence), Fennimar::validUtf8(name.native()));
}

/// Why a subtitle file is left out that is no file, or whose subtitles are pictures; else empty.
std::string problemOfSubtitle(const Path& path, const SortedFiles& sorted,
                              const Translations& translations) {
    std::error_code ignored;
    if (std::filesystem::is_other(std::filesystem::status(path, ignored))) {
        return subtitleProblemText(translations, path, SubtitleProblem::NoFile);
    }
    if (std::ranges::find(sorted.subtitles, path) != sorted.subtitles.end()) return {};
    return subtitleProblemText(translations, path, SubtitleProblem::Pictures);
}

std::string withoutExtension(std::filesystem::path path) {
    return path.replace_extension().native();
}

/// How far a subtitle file's name is from a movie's; less is closer.
struct Distance {
    enum class Kind { SameName, Point, WordEnd };
    Kind kind = Kind::SameName;
    std::size_t excess = 0;  // bytes that the subtitle's name is longer

    // NOLINTNEXTLINE(modernize-use-nullptr): the compiler's own comparison with 0
    friend auto operator<=>(const Distance&, const Distance&) = default;
};

/// Bytes outside ASCII are taken for letters.
bool endsWord(char next) {
    const bool letter = (next >= 'a' && next <= 'z') || (next >= 'A' && next <= 'Z');
    const bool digit = next >= '0' && next <= '9';
    return !letter && !digit && static_cast<unsigned char>(next) < 0x80;
}

/// Absent: they do not belong together, as "Film 1" and "Film 10".
std::optional<Distance> distance(const std::filesystem::path& movie,
                                 const std::filesystem::path& subtitle) {
    const auto name = withoutExtension(movie);
    const auto longer = withoutExtension(subtitle);
    if (!longer.starts_with(name)) return std::nullopt;
    const auto rest = std::string_view(longer).substr(name.size());
    if (rest.empty()) return Distance{};
    if (rest.starts_with('.')) return Distance{Distance::Kind::Point, rest.size()};
    if (!endsWord(rest.front())) return std::nullopt;
    return Distance{Distance::Kind::WordEnd, rest.size()};
}

}  // namespace

bool isMovieFile(const Path& path) {
    return std::ranges::find(kMovieFileTypes, Fennimar::lowercasedExtension(path)) !=
           kMovieFileTypes.end();
}

bool isSubtitleFile(const std::filesystem::path& path) {
    return std::ranges::find(kSubtitleFileTypes, Fennimar::lowercasedExtension(path)) !=
           kSubtitleFileTypes.end();
}

SortedFiles sortFiles(std::span<const std::filesystem::path> paths,
                      const FirstBytesReader& firstBytes) {
    SortedFiles sorted;
    for (const auto& path : paths) {
        if (isTextSubtitle(path)) sorted.subtitles.push_back(path);
    }
    for (const auto& path : paths) {
        if (Fennimar::lowercasedExtension(path) == kPossiblyPictures &&
            firstBytes(path) != kPackHeader) {
            sorted.subtitles.push_back(path);
        }
    }
    std::copy_if(paths.rbegin(), paths.rend(), std::back_inserter(sorted.movies), isMovieFile);
    return sorted;
}

bool acceptsDrag(std::span<const std::filesystem::path> paths) {
    return !std::ranges::all_of(paths, isSubtitleFile);
}

std::vector<std::string> openableFileTypes() {
    std::vector<std::string> types(kMovieFileTypes.begin(), kMovieFileTypes.end());
    types.insert(types.end(), kSubtitleFileTypes.begin(), kSubtitleFileTypes.end());
    return types;
}

bool naturallyBefore(const Path& one, const Path& other) {
    auto part = one.begin();
    auto second = other.begin();
    for (; part != one.end() && second != other.end(); ++part, ++second) {
        const int order = compareNaturally(part->native(), second->native());
        if (order != 0) return order < 0;
    }
    if (part != one.end() || second != other.end()) return part == one.end();
    return one.native() < other.native();  // "1" and "01"
}

FolderSearch searchFolder(const Path& folder, const std::stop_token& stop,
                          const FolderSearchBounds& bounds) {
    namespace fs = std::filesystem;
    FolderSearch search;
    std::error_code error;
    auto entry = fs::recursive_directory_iterator(
        folder, fs::directory_options::skip_permission_denied, error);
    if (!error) fs::directory_iterator(folder, error);  // which passes over no lack of permission
    if (error) return {.problem = error.message()};
    std::size_t seen = 0;
    for (; entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        if (error || stop.stop_requested()) break;
        if (++seen > bounds.entries) {
            search.isWhole = false;
            break;
        }
        std::error_code ignored;
        if (isHidden(entry->path())) {
            entry.disable_recursion_pending();
        } else if (entry->is_directory(ignored)) {
            if (entry.depth() + 1 < bounds.depth) continue;
            entry.disable_recursion_pending();
            search.isWhole = false;
        } else if (isTaken(entry->path()) && entry->is_regular_file(ignored)) {
            search.files.push_back(entry->path());
        }
    }
    if (error) search.problem = error.message();
    std::ranges::sort(search.files, naturallyBefore);
    return search;
}

FolderContent openFolder(const Path& folder, const std::vector<Path>& given,
                         const Translations& translations, const std::stop_token& stop) {
    auto found = searchFolder(folder, stop);
    const bool holdsMovie = std::ranges::any_of(found.files, isMovieFile);
    FolderContent opened;
    if (!found.problem.empty()) {
        opened.problem = makeString(translations.localized("The folder '%@' can't be read: %@."),
                                    Fennimar::validUtf8(folder.filename().native()), found.problem);
    } else if (!found.isWhole) {
        opened.problem =
            named(translations,
                  localizable("The folder '%@' holds too much to be searched to its end. "
                              "Please open the folders in it one by one."),
                  folder);
    } else if (!holdsMovie) {
        opened.problem =
            named(translations, localizable("There is no movie in the folder '%@'."), folder);
    }
    std::erase_if(found.files, [&given](const Path& file) {
        return std::ranges::find(given, file) != given.end();
    });
    opened.files = std::move(found.files);
    return opened;
}

OpenedFiles lookInto(const std::vector<Path>& paths, const Translations& translations,
                     const std::stop_token& stop) {
    OpenedFiles opened;
    std::vector<Path> files;
    for (const auto& path : paths) {
        std::error_code error;
        const auto type = std::filesystem::status(path, error).type();
        if (type == std::filesystem::file_type::directory) {
            auto folder = openFolder(path, paths, translations, stop);
            std::ranges::move(folder.files, std::back_inserter(files));
            if (!folder.problem.empty()) {
                opened.leftOut.push_back({.file = path, .reason = std::move(folder.problem)});
            }
        } else if (isTaken(path)) {
            files.push_back(path);
        } else {
            const auto sentence =
                type == std::filesystem::file_type::not_found
                    ? localizable("There is no file '%@'.")
                    : localizable(
                          "The file '%@' is left out, because by its name it is neither a "
                          "movie nor a subtitle file.");
            opened.leftOut.push_back({.file = path, .reason = named(translations, sentence, path)});
        }
    }
    opened.sorted = sortFiles(files, Fennimar::readInt);
    for (const auto& path : files) {
        if (!isSubtitleFile(path)) continue;
        auto problem = problemOfSubtitle(path, opened.sorted, translations);
        if (problem.empty()) continue;
        std::erase(opened.sorted.subtitles, path);
        opened.leftOut.push_back({.file = path, .reason = std::move(problem)});
    }
    return opened;
}

void SubtitlePairing::addMovie(const std::filesystem::path& movie) {
    movies_.insert(movie);
}

void SubtitlePairing::addSubtitle(const std::filesystem::path& subtitle) {
    std::erase(subtitles_, subtitle);
    subtitles_.push_back(subtitle);
}

std::vector<std::filesystem::path> SubtitlePairing::subtitlesFor(
    const std::filesystem::path& movie) const {
    struct Candidate {
        Distance distance;
        std::filesystem::path subtitle;
    };
    std::vector<Candidate> candidates;
    std::for_each(subtitles_.rbegin(), subtitles_.rend(), [&](const auto& subtitle) {
        const auto found = distance(movie, subtitle);
        if (found && !isForAnother(subtitle, movie)) candidates.push_back({*found, subtitle});
    });
    std::ranges::stable_sort(candidates, {}, &Candidate::distance);
    std::vector<std::filesystem::path> subtitles;
    subtitles.reserve(candidates.size());
    for (auto& candidate : candidates) subtitles.push_back(std::move(candidate.subtitle));
    return subtitles;
}

bool SubtitlePairing::mayGoWith(const std::filesystem::path& subtitle,
                                const std::filesystem::path& movie) const {
    return distance(movie, subtitle) && !isForAnother(subtitle, movie);
}

bool SubtitlePairing::isForAnother(const std::filesystem::path& subtitle,
                                   const std::filesystem::path& movie) const {
    const auto owner = owners_.find(subtitle);
    if (owner != owners_.end()) return owner->second != movie;
    const auto own = distance(movie, subtitle);
    if (!own) return false;
    return std::ranges::any_of(movies_, [&](const auto& other) {
        const auto theirs = distance(other, subtitle);
        return theirs && theirs->excess < own->excess;
    });
}

std::optional<std::filesystem::path> SubtitlePairing::movieNamedLike(
    const std::filesystem::path& subtitle) const {
    std::optional<std::filesystem::path> closest;
    std::size_t least = 0;
    for (const auto& movie : movies_) {
        const auto found = distance(movie, subtitle);
        if (!found || (closest && found->excess >= least)) continue;
        closest = movie;
        least = found->excess;
    }
    return closest;
}

std::optional<std::filesystem::path> SubtitlePairing::subtitleOf(
    const std::filesystem::path& movie) const {
    const auto found =
        std::ranges::find_if(owners_, [&](const auto& owner) { return owner.second == movie; });
    if (found == owners_.end()) return std::nullopt;
    return found->first;
}

void SubtitlePairing::pair(const std::filesystem::path& movie,
                           const std::filesystem::path& subtitle) {
    std::erase_if(owners_, [&](const auto& pair) { return pair.second == movie; });
    owners_[subtitle] = movie;
}

}  // namespace reelvane
