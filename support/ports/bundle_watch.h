#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>

namespace reelvane {

/// The flags of an event that says the watched folder itself was moved or renamed.
inline constexpr std::uint32_t kRootChangedFlags = 32;

/// Watches the program's own folder. Main thread only.
class BundleWatch {
public:
    using Callback = std::function<void(std::uint32_t flags)>;
    virtual ~BundleWatch() = default;
    /// Starts watching; events come on the main thread, some seconds late. There is no stop.
    virtual void start(const std::filesystem::path& bundle, Callback callback) = 0;
    /// Where the watched folder is now, even after a move.
    [[nodiscard]] virtual std::filesystem::path currentPath() const = 0;
};

}  // namespace reelvane
