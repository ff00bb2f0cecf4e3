#include "app/file_sorting.h"

#include <algorithm>
#include <bit>
#include <iterator>

#include "support/paths.h"

namespace reelvane {
namespace {

/// The bytes 00 00 01 BA, which begin an MPEG program stream and so a "sub" file of pictures, as an
/// integer in host byte order.
constexpr std::uint32_t kPackHeader =
    std::endian::native == std::endian::little ? 0xBA010000U : 0x000001BAU;
constexpr std::string_view kPossiblyPictures = "sub";

bool isMovie(const std::filesystem::path& path) {
    return std::ranges::find(kMovieFileTypes, Fennimar::lowercasedExtension(path)) !=
           kMovieFileTypes.end();
}

bool isTextSubtitle(const std::filesystem::path& path) {
    return isSubtitleFile(path) && Fennimar::lowercasedExtension(path) != kPossiblyPictures;
}

}  // namespace

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
    std::copy_if(paths.rbegin(), paths.rend(), std::back_inserter(sorted.movies), isMovie);
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

}  // namespace reelvane
