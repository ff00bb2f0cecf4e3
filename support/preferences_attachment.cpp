#include "support/preferences_attachment.h"

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>

namespace Fennimar {

std::string base64(std::string_view bytes) {
    constexpr std::string_view kDigits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        const auto group = bytes.substr(at, 3);
        std::uint32_t bits = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            bits = bits << 8U | (i < group.size() ? static_cast<unsigned char>(group[i]) : 0U);
        }
        for (std::size_t digit = 0; digit < 4; ++digit) {
            const auto shift = 18U - 6U * static_cast<std::uint32_t>(digit);
            text.push_back(digit <= group.size() ? kDigits[bits >> shift & 63U] : '=');
        }
    }
    return text;
}

}  // namespace Fennimar

namespace reelvane {

std::string preferencesAttachment(const std::filesystem::path& preferencesFile) {
    std::ifstream file(preferencesFile, std::ios::binary);
    return Fennimar::base64(std::string(std::istreambuf_iterator<char>(file), {}));
}

}  // namespace reelvane
