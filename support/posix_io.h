#pragma once

#include <string_view>

namespace reelvane {

/// Writes all bytes to an open file; false when that fails, with errno set. Any thread; may block.
bool writeAll(int file, std::string_view bytes);

}  // namespace reelvane
