#include "app/subtitle_pairing.h"

namespace reelvane {
namespace {

std::string withoutExtension(std::filesystem::path path) {
    return path.replace_extension().native();
}

}  // namespace

void SubtitlePairing::add(const std::filesystem::path& subtitle) {
    importSubtitleFiles_[withoutExtension(subtitle)] = subtitle;
}

std::optional<std::filesystem::path> SubtitlePairing::subtitleFor(
    const std::filesystem::path& movie) const {
    const auto prefix = withoutExtension(movie);
    // Every key that begins with the prefix follows it in order, and the smallest of them at once.
    const auto found = importSubtitleFiles_.lower_bound(prefix);
    if (found == importSubtitleFiles_.end() || !found->first.starts_with(prefix)) {
        return std::nullopt;
    }
    return found->second;
}

}  // namespace reelvane
