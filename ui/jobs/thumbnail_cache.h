#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

#include <QByteArray>
#include <QImage>

namespace reelvane {

/// Keys and values, both ASCII.
using PngTexts = std::vector<std::pair<std::string, std::string>>;

/// The PNG file with these texts in plain "tEXt" chunks in front of the picture. Qt writes longer
/// ones compressed, which other readers of thumbnails do not understand. Any thread.
[[nodiscard]] QByteArray withTexts(const QByteArray& png, const PngTexts& texts);

/// A file as a thumbnail names it: by its canonical URI, escaped exactly as GLib does it, so that
/// other programs look for the same thumbnail.
[[nodiscard]] std::string thumbnailUri(const std::filesystem::path& file);

/// A file that a thumbnail is of, as it is now.
struct ThumbnailOriginal {
    std::string uri{};
    std::int64_t modificationTime = 0;  ///< in seconds, as the thumbnail says it
    std::uint64_t size = 0;

    [[nodiscard]] bool operator==(const ThumbnailOriginal&) const = default;
};

/// The thumbnails that the user's programs share, by the freedesktop Thumbnail Managing Standard,
/// version 0.9. Any thread; every call may wait for the disk. Nothing is told when writing fails:
/// the next one makes the thumbnail again.
class ThumbnailCache {
public:
    /// The longest side of what is made here: the standard's "large".
    static constexpr int kSide = 256;

    /// Failures are kept under the program's name and version.
    ThumbnailCache(const std::filesystem::path& cacheFolder, std::string program,
                   const std::string& version);

    /// Absent where no thumbnail may be read or made: what is no file, cannot be read, or is a
    /// thumbnail itself.
    [[nodiscard]] std::optional<ThumbnailOriginal> originalOf(
        const std::filesystem::path& file) const;
    /// The thumbnail of at least our size, whoever made it; a null image when there is none or the
    /// file has changed since.
    [[nodiscard]] QImage find(const ThumbnailOriginal& original) const;
    /// Whether this version of this program has failed on the file as it is.
    [[nodiscard]] bool hasFailed(const ThumbnailOriginal& original) const;

    void store(const QImage& thumbnail, const ThumbnailOriginal& original,
               PngTexts furtherTexts = {}) const;
    void storeFailure(const ThumbnailOriginal& original) const;

private:
    void write(const std::filesystem::path& folder, const QImage& image,
               const ThumbnailOriginal& original, PngTexts furtherTexts) const;

    std::filesystem::path root_;
    std::filesystem::path failures_;
    std::string program_;
};

}  // namespace reelvane
