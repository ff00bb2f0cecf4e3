#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

/// Helpers on paths and files. Paths keep their bytes. All are safe from any thread; none throws.
namespace Fennimar {

/// Whether a name is in use, be it by a link that leads nowhere.
[[nodiscard]] bool isOccupied(const std::filesystem::path& path);
/// A link that leads nowhere does not exist.
[[nodiscard]] bool fileExists(const std::filesystem::path& path);
/// In bytes; 0 when it cannot be read.
[[nodiscard]] std::uint64_t fileSize(const std::filesystem::path& path);
/// The same path, or two names of one file.
[[nodiscard]] bool isSameFile(const std::filesystem::path& left,
                              const std::filesystem::path& right);
/// True for symbolic links.
[[nodiscard]] bool fileIsAlias(const std::filesystem::path& path);
/// True when a file can be made at the path, which is tried and leaves nothing. False when
/// something is there already: callers pass a fresh name.
[[nodiscard]] bool isWriteablePath(const std::filesystem::path& path);
/// The path itself when nothing is there, not even a dead link; else "name-0.ext", "name-1.ext" and
/// so on. A path without an extension gets a trailing full stop: "name-0.".
/// `isTaken`, when given, names further paths that count as taken. `number`, when given, is the
/// first number to try and then the one that was found: of many files with one name each begins
/// where the last one ended.
[[nodiscard]] std::filesystem::path uniqueFile(
    const std::filesystem::path& path,
    const std::function<bool(const std::filesystem::path&)>& isTaken = {},
    std::uint64_t* number = nullptr);
/// The file name cut so that it has at most `maximumBytes` bytes, on a character boundary, with its
/// extension kept and `reserved` bytes left free for a number.
[[nodiscard]] std::filesystem::path withNameCut(const std::filesystem::path& path,
                                                std::size_t maximumBytes = 255,
                                                std::size_t reserved = 0);
/// "~" and "~/..." expanded to the home folder.
[[nodiscard]] std::filesystem::path expanded(const std::filesystem::path& path,
                                             const std::filesystem::path& home);
/// From the root, so that no name is taken for an option or a protocol; as given where the current
/// folder is gone.
[[nodiscard]] std::filesystem::path absolutePath(const std::filesystem::path& path);
/// The extension without its dot, in lower case (ASCII); empty when there is none.
[[nodiscard]] std::string lowercasedExtension(const std::filesystem::path& path);
/// The first four bytes of a file as a 32-bit integer in host byte order; absent when there are
/// fewer or the file cannot be read.
[[nodiscard]] std::optional<std::uint32_t> readInt(const std::filesystem::path& file);
/// A link to nothing, or a file: deleted if it is there; errors are ignored.
void removeFile(const std::filesystem::path& path);

}  // namespace Fennimar
