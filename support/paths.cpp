#include "support/paths.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "support/held_file.h"
#include "support/posix_io.h"
#include "support/strings.h"

namespace Fennimar {
namespace fs = std::filesystem;

namespace {

constexpr std::size_t kLongestName = 255;  // in bytes, on every usual file system

/// The character that crosses the limit goes whole.
std::string_view cutAtCharacter(std::string_view text, std::size_t maximumBytes) {
    if (text.size() <= maximumBytes) return text;
    std::size_t end = 0;
    while (true) {
        const auto next = end + reelvane::decodeUtf8(text.substr(end)).length;
        if (next > maximumBytes) return text.substr(0, end);
        end = next;
    }
}

}  // namespace

bool isOccupied(const fs::path& path) {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0;
}

bool fileExists(const fs::path& path) {
    std::error_code error;
    return fs::exists(path, error);
}

std::uint64_t fileSize(const fs::path& path) {
    std::error_code error;
    const auto size = fs::file_size(path, error);
    return error ? 0 : size;
}

bool isSameFile(const fs::path& left, const fs::path& right) {
    std::error_code error;
    return left == right || fs::equivalent(left, right, error);
}

bool fileIsAlias(const fs::path& path) {
    std::error_code error;
    return fs::is_symlink(path, error);
}

bool isWriteablePath(const fs::path& path) {
    if (isOccupied(path)) return false;
    // Without a name where that can be had: should the program be killed here, nothing stays.
    auto file = reelvane::HeldFile::unnamed(path.parent_path(), 0600);
    if (file.descriptor() < 0 && file.nameAs(path) != reelvane::Naming::Made) return false;
    const bool written = reelvane::writeAll(file.descriptor(), "TEST");
    return file.remove() && written;
}

fs::path uniqueFile(const fs::path& path, const std::function<bool(const fs::path&)>& isTaken,
                    std::uint64_t* number) {
    const auto taken = [&isTaken](const fs::path& candidate) {
        return isOccupied(candidate) || (isTaken && isTaken(candidate));
    };
    if (auto fitting = withNameCut(path); !taken(fitting)) return fitting;
    auto dotted = path;
    if (!path.has_extension()) dotted += ".";
    for (std::uint64_t tried = number != nullptr ? *number : 0;; ++tried) {
        const auto suffix = "-" + std::to_string(tried);
        const auto fitting = withNameCut(dotted, kLongestName, suffix.size());
        const auto name = fitting.stem().native() + suffix + fitting.extension().native();
        auto candidate = path.parent_path() / name;
        if (taken(candidate)) continue;
        if (number != nullptr) *number = tried;
        return candidate;
    }
}

fs::path withNameCut(const fs::path& path, std::size_t maximumBytes, std::size_t reserved) {
    const auto name = path.filename().native();
    const auto room = maximumBytes > reserved ? maximumBytes - reserved : 0;
    if (name.size() <= room) return path;
    const auto extension = path.extension().native();
    const auto cut =
        extension.size() < room
            ? std::string(cutAtCharacter(path.stem().native(), room - extension.size())) + extension
            : std::string(cutAtCharacter(name, room));
    return path.parent_path() / cut;
}

fs::path expanded(const fs::path& path, const fs::path& home) {
    const std::string_view text = path.native();
    if (text == "~") return home;
    if (!text.starts_with("~/")) return path;
    return home / text.substr(2);
}

fs::path absolutePath(const fs::path& path) {
    std::error_code failed;
    auto absolute = fs::absolute(path, failed);
    return failed ? path : absolute;
}

std::string lowercasedExtension(const fs::path& path) {
    const auto extension = path.extension().native();
    return extension.empty() ? extension : lowercased(extension.substr(1));
}

std::optional<std::uint32_t> readInt(const fs::path& file) {
    // Opened without waiting: a pipe that nobody writes into would block for ever.
    const reelvane::FileDescriptor descriptor(
        ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status = {};
    if (!descriptor.isOpen() || ::fstat(descriptor.get(), &status) != 0) return std::nullopt;
    if (!S_ISREG(status.st_mode)) return std::nullopt;
    std::array<char, sizeof(std::uint32_t)> bytes{};
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        const auto got = ::read(descriptor.get(), bytes.data() + filled, bytes.size() - filled);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) break;
        filled += static_cast<std::size_t>(got);
    }
    if (filled < bytes.size()) return std::nullopt;
    std::uint32_t value = 0;
    std::memcpy(&value, bytes.data(), sizeof value);
    return value;
}

void removeFile(const fs::path& path) {
    ::unlink(path.c_str());
}

}  // namespace Fennimar
