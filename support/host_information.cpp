#include "support/host_information.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <sstream>
#include <system_error>

#include "support/ports/host.h"
#include "support/strings.h"
#include "support/vantor.h"

namespace reelvane {
namespace fs = std::filesystem;

namespace {

constexpr std::size_t kLongestModel = 255;

// The plain letters of U+00C0 to U+017F; a blank where there is none.
constexpr std::string_view kPlainLetters =
    "aaaaaa ceeeeiiii nooooo ouuuuy  aaaaaa ceeeeiiii nooooo ouuuuy y"
    "aaaaaaccccccccddddeeeeeeeeeegggggggghhhhiiiiiiiiii  jjkkklllllll"
    "lllnnnnnnnnnoooooo  rrrrrrssssssssttttttuuuuuuuuuuuuwwyyyzzzzzzs";
constexpr char32_t kFirstLetter = 0xC0;
static_assert(kPlainLetters.size() == 0x180 - kFirstLetter);

/// Latin letters in lower case and without their marks; everything else as it is.
std::string folded(std::string_view text) {
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        const auto character = decodeUtf8(text.substr(at));
        const auto bytes = text.substr(at, character.length);
        at += character.length;
        if (character.valid && character.value >= 0x300 && character.value <= 0x36F) continue;
        const bool known = character.valid && character.value >= kFirstLetter &&
                           character.value < kFirstLetter + kPlainLetters.size();
        const char plain = known ? kPlainLetters[character.value - kFirstLetter] : ' ';
        if (plain != ' ') {
            result += plain;
        } else {
            result += Fennimar::lowercased(bytes);
        }
    }
    return result;
}

std::string base64(std::string_view bytes) {
    static constexpr std::string_view kDigits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string result;
    result.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        const auto group = bytes.substr(at, 3);
        std::uint32_t bits = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            bits <<= 8U;
            if (i < group.size()) bits |= static_cast<unsigned char>(group[i]);
        }
        for (std::size_t i = 0; i < 4; ++i) {
            result += i <= group.size() ? kDigits[(bits >> (18 - 6 * i)) & 0x3FU] : '=';
        }
    }
    return result;
}

}  // namespace

std::string machineType(const Vantor& vantor) {
    return vantor.ports().host.machineModel().substr(0, kLongestModel);
}

bool isUserAdmin(const Vantor& vantor) {
    const auto admins = vantor.ports().host.administrators();
    return std::find(admins.begin(), admins.end(), vantor.ports().host.loginName()) != admins.end();
}

std::vector<std::string> crashLogsIn(const std::vector<fs::path>& folders,
                                     std::string_view appName) {
    const auto prefix = folded(appName);
    std::vector<std::string> names;
    for (const auto& folder : folders) {
        std::error_code error;
        for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
             entry.increment(error)) {
            auto name = entry->path().filename().native();
            if (folded(name).starts_with(prefix)) names.push_back(std::move(name));
        }
    }
    return names;
}

std::vector<std::string> crashLogs(const Vantor& vantor) {
    return crashLogsIn({vantor.suppDir() / "DiagnosticReports", "/var/crash"}, vantor.appName());
}

int diskNumberOf(std::string_view device) {
    static constexpr std::string_view kPrefix = "/dev/disk";
    if (!device.starts_with(kPrefix)) return -1;
    return Fennimar::leadingInteger(Fennimar::partBefore(device.substr(kPrefix.size()), "s"));
}

int bootDiskBSDNum() {
    std::ifstream mounts("/proc/self/mounts");
    for (std::string line; std::getline(mounts, line);) {
        const auto words = Fennimar::split(line, " ");
        if (words.size() > 1 && words[1] == "/") return diskNumberOf(words[0]);
    }
    return -1;
}

std::string base64OfFile(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) return {};
    const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    return stream.bad() ? std::string() : base64(bytes);
}

}  // namespace reelvane
