#pragma once

#include <cstdint>
#include <string>

namespace reelvane {

/// "917 bytes", "1.43 GB": powers of ten, as file managers count, with three digits at the most.
[[nodiscard]] std::string fileSizeText(std::uint64_t bytes);

}  // namespace reelvane
