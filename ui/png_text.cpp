#include "ui/png_text.h"

#include <cstdint>

#include <QtEndian>

namespace reelvane {
namespace {

// The signature and the header chunk, which every PNG file begins with (ISO/IEC 15948, 5.2 and
// 11.2.2).
constexpr qsizetype kHeaderSize = 8 + 25;

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

}  // namespace

QByteArray withTexts(const QByteArray& png, const PngTexts& texts) {
    auto result = png.first(kHeaderSize);
    for (const auto& [key, value] : texts) result += textChunk(key, value);
    return result + png.sliced(kHeaderSize);
}

}  // namespace reelvane
