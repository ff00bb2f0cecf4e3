#pragma once

#include <cstdint>
#include <string_view>

namespace reelvane {

/// Names one held assertion; 0 is none.
using PowerAssertionID = std::uint32_t;
inline constexpr PowerAssertionID kNoPowerAssertion = 0;

/// Keeps the machine from going to sleep while it is idle. Main thread only; nothing here waits.
/// Where the desktop offers no such service an identifier is given all the same.
class PowerAssertions {
public:
    virtual ~PowerAssertions() = default;
    /// Takes an assertion; `name` tells the user why.
    [[nodiscard]] virtual PowerAssertionID create(std::string_view name) = 0;
    /// Gives it back. Unknown or already released identifiers are ignored.
    virtual void release(PowerAssertionID assertion) = 0;
};

}  // namespace reelvane
