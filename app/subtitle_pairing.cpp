#include "app/subtitle_pairing.h"

#include <algorithm>
#include <compare>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace reelvane {
namespace {

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
