#pragma once

#include <filesystem>
#include <string_view>
#include <sys/types.h>

#include "support/file_descriptor.h"

namespace reelvane {

/// Writes all bytes to an open file; false when that fails, with errno set. Any thread; may block.
bool writeAll(int file, std::string_view bytes);

/// Makes a file where nothing lies, not even a dead link, and opens it: of several
/// programs that try at once one succeeds. Closed when that fails, with errno set. Any thread.
[[nodiscard]] FileDescriptor createFile(const std::filesystem::path& path, mode_t mode);

/// Makes the folder, and those above it that are missing, for this user alone whatever the umask
/// says. False: there is none, with errno set. Any thread.
bool makePrivateFolder(const std::filesystem::path& folder);

}  // namespace reelvane
