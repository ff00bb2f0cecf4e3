#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace Fennimar {

/// The bytes in Base64 (RFC 4648, section 4), padded, without line breaks. Any thread.
[[nodiscard]] std::string base64(std::string_view bytes);

}  // namespace Fennimar

namespace reelvane {

/// The preferences file as problem reports carry it: read whole, in Base64; empty when it cannot be
/// read. Any thread.
[[nodiscard]] std::string preferencesAttachment(const std::filesystem::path& preferencesFile);

}  // namespace reelvane
