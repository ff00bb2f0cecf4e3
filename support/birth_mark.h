#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace reelvane {

/// Tells a file from every other that has ever had its name: its number on the volume and the
/// moment of its making. Writing, cutting and renaming keep it, and so does a restart of the
/// system; the number alone is given to the next file as soon as a file is deleted. Absent for
/// links and folders, and where the file system remembers no such moment. Any thread.
[[nodiscard]] std::optional<std::string> birthMarkOf(const std::filesystem::path& path);

}  // namespace reelvane
