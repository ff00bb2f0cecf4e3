#include "support/size_text.h"

#include <array>
#include <cstddef>
#include <string_view>

#include "support/make_string.h"

namespace reelvane {

std::string fileSizeText(std::uint64_t bytes) {
    static constexpr auto kUnits = std::to_array<std::string_view>({"kB", "MB", "GB", "TB", "PB"});
    if (bytes < 1000) return makeString("%lu %@", bytes, bytes == 1 ? "byte" : "bytes");
    auto value = static_cast<double>(bytes) / 1000;
    std::size_t unit = 0;
    // 999.5 would be rounded up to a fourth digit.
    while (value >= 999.5 && unit + 1 < kUnits.size()) {
        value /= 1000;
        ++unit;
    }
    const std::string_view format = value < 9.995   ? "%.2f %@"
                                    : value < 99.95 ? "%.1f %@"
                                                    : "%.0f %@";
    return makeString(format, value, kUnits.at(unit));
}

}  // namespace reelvane
