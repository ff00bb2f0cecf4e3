#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

/// Facts about the machine and its user that a problem report carries. Any thread; none throws but
/// for want of memory.
namespace reelvane {

class Vantor;

/// At most 255 bytes; empty when unknown.
[[nodiscard]] std::string machineType(const Vantor& vantor);
/// Whether the user is listed among the administrators; the primary group does not count.
[[nodiscard]] bool isUserAdmin(const Vantor& vantor);

/// The names in these folders, folder by folder, that begin with the program's name; case and
/// diacritics do not count. A missing folder contributes nothing.
[[nodiscard]] std::vector<std::string> crashLogsIn(
    const std::vector<std::filesystem::path>& folders, std::string_view appName);
/// The same in this user's and in the system's folder.
[[nodiscard]] std::vector<std::string> crashLogs(const Vantor& vantor);

/// 1 for "/dev/disk1s2"; -1 for a device of another name.
[[nodiscard]] int diskNumberOf(std::string_view device);
/// The same for the device that "/" is mounted from.
[[nodiscard]] int bootDiskBSDNum();

/// A file's bytes in Base64 (RFC 4648, section 4) without line breaks; empty when it cannot be
/// read.
[[nodiscard]] std::string base64OfFile(const std::filesystem::path& file);

}  // namespace reelvane
