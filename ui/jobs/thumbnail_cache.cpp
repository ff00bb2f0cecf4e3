#include "ui/jobs/thumbnail_cache.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include <QBuffer>
#include <QCryptographicHash>
#include <QFile>
#include <QtEndian>

#include "support/paths.h"
#include "support/posix_io.h"

namespace reelvane {
namespace {

// The signature and the header chunk, which every PNG file begins with (ISO/IEC 15948, 5.2 and
// 11.2.2).
constexpr qsizetype kHeaderSize = 8 + 25;
constexpr const char* kUriKey = "Thumb::URI";
constexpr const char* kTimeKey = "Thumb::MTime";
constexpr const char* kSizeKey = "Thumb::Size";
constexpr const char* kOwnSize = "large";
// A larger one that another program has made serves as well.
constexpr std::array<const char*, 3> kGoodSizes = {kOwnSize, "x-large", "xx-large"};

/// The checksum of a chunk (ISO/IEC 15948, annex D).
std::uint32_t crcOf(const QByteArray& bytes) {
    constexpr std::uint32_t kPolynomial = 0xEDB88320;
    std::uint32_t crc = ~0U;
    for (const char byte : bytes) {
        crc ^= static_cast<std::uint8_t>(byte);
        for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1U) ^ ((crc & 1U) != 0 ? kPolynomial : 0);
    }
    return ~crc;
}

QByteArray bigEndian(std::uint32_t number) {
    QByteArray bytes(sizeof number, Qt::Uninitialized);
    qToBigEndian(number, bytes.data());
    return bytes;
}

QByteArray textChunk(const std::string& key, const std::string& value) {
    QByteArray content("tEXt");
    content += key;
    content += '\0';
    content += value;
    const auto length = static_cast<std::uint32_t>(content.size() - 4);  // without the type
    return bigEndian(length) + content + bigEndian(crcOf(content));
}

using std::filesystem::path;

path canonicalPath(const path& file) {
    return Fennimar::absolutePath(file).lexically_normal();
}

path nameOf(const ThumbnailOriginal& original) {
    const auto hash =
        QCryptographicHash::hash(QByteArray::fromStdString(original.uri), QCryptographicHash::Md5);
    return hash.toHex().toStdString() + ".png";
}

bool isOf(const QImage& thumbnail, const ThumbnailOriginal& original) {
    const auto size = thumbnail.text(kSizeKey);
    return thumbnail.text(kUriKey) == QString::fromStdString(original.uri) &&
           thumbnail.text(kTimeKey) == QString::number(original.modificationTime) &&
           (size.isEmpty() || size == QString::number(original.size));
}

/// The image, if it is there and of the file as it is now.
QImage validImage(const path& file, const ThumbnailOriginal& original) {
    // By descriptor, because Qt knows no path that is not UTF-8.
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) return {};
    QFile opened;
    if (!opened.open(descriptor, QIODevice::ReadOnly, QFile::AutoCloseHandle)) {
        ::close(descriptor);
        return {};
    }
    auto image = QImage::fromData(opened.readAll(), "PNG");
    return isOf(image, original) ? image : QImage();
}

QImage fitted(const QImage& image) {
    const auto fits =
        image.width() <= ThumbnailCache::kSide && image.height() <= ThumbnailCache::kSide;
    if (image.isNull() || fits) return image;
    return image.scaled(ThumbnailCache::kSide, ThumbnailCache::kSide, Qt::KeepAspectRatio,
                        Qt::SmoothTransformation);
}

QByteArray asPng(const QImage& image) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    // The standard asks for transparency, even where there is none.
    auto plain = image.convertToFormat(QImage::Format_ARGB32);
    for (const auto& key : plain.textKeys()) plain.setText(key, {});
    return plain.save(&buffer, "PNG") ? buffer.data() : QByteArray();
}

void replaceFile(const path& file, const QByteArray& content) {
    auto pattern = (file.parent_path() / ".reelvane-XXXXXX").native();
    const FileDescriptor opened(::mkostemp(pattern.data(), O_CLOEXEC));  // for the owner alone
    if (!opened.isOpen()) return;
    // What is lost is made again, so nothing waits for the device.
    static_cast<void>(takePlace(
        opened, pattern, {content.data(), static_cast<std::size_t>(content.size())}, file, false));
}

}  // namespace

QByteArray withTexts(const QByteArray& png, const PngTexts& texts) {
    auto result = png.first(kHeaderSize);
    for (const auto& [key, value] : texts) result += textChunk(key, value);
    return result + png.sliced(kHeaderSize);
}

std::string thumbnailUri(const path& file) {
    const auto bytes = QByteArray::fromStdString(canonicalPath(file).native());
    return "file://" + bytes.toPercentEncoding("!$&'()*+,/:=@").toStdString();
}

ThumbnailCache::ThumbnailCache(const path& cacheFolder, std::string program,
                               const std::string& version)
    : root_(cacheFolder / "thumbnails"),
      failures_(root_ / "fail" / (program + "-" + version)),
      program_(std::move(program)) {}

std::optional<ThumbnailOriginal> ThumbnailCache::originalOf(const path& file) const {
    const auto inside = canonicalPath(file).lexically_relative(canonicalPath(root_));
    if (!inside.empty() && *inside.begin() != "..") return std::nullopt;
    struct stat status {};
    if (::stat(file.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    if (::access(file.c_str(), R_OK) != 0) return std::nullopt;
    return ThumbnailOriginal{.uri = thumbnailUri(file),
                             .modificationTime = status.st_mtime,
                             .size = static_cast<std::uint64_t>(status.st_size)};
}

QImage ThumbnailCache::find(const ThumbnailOriginal& original) const {
    for (const auto* const size : kGoodSizes) {
        const auto image = validImage(root_ / size / nameOf(original), original);
        if (!image.isNull()) return fitted(image);
    }
    return {};
}

bool ThumbnailCache::hasFailed(const ThumbnailOriginal& original) const {
    return !validImage(failures_ / nameOf(original), original).isNull();
}

void ThumbnailCache::store(const QImage& thumbnail, const ThumbnailOriginal& original,
                           PngTexts furtherTexts) const {
    write(root_ / kOwnSize, thumbnail, original, std::move(furtherTexts));
}

void ThumbnailCache::storeFailure(const ThumbnailOriginal& original) const {
    QImage empty(1, 1, QImage::Format_ARGB32);
    empty.fill(Qt::transparent);
    write(failures_, empty, original, {});
}

void ThumbnailCache::write(const path& folder, const QImage& image,
                           const ThumbnailOriginal& original, PngTexts furtherTexts) const {
    const auto png = asPng(image);
    if (png.isEmpty() || !makePrivateFolder(folder)) return;
    PngTexts texts = {{kUriKey, original.uri},
                      {kTimeKey, std::to_string(original.modificationTime)},
                      {kSizeKey, std::to_string(original.size)},
                      {"Software", program_}};
    for (auto& text : furtherTexts) texts.push_back(std::move(text));
    replaceFile(folder / nameOf(original), withTexts(png, texts));
}

}  // namespace reelvane
