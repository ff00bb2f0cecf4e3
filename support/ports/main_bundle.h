#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace reelvane {

/// The program's own folder: its executables, its resources and what it says of itself. Any thread.
class MainBundle {
public:
    virtual ~MainBundle() = default;
    /// The folder that holds the executables and `resources/`.
    [[nodiscard]] virtual std::filesystem::path bundlePath() const = 0;
    [[nodiscard]] virtual std::filesystem::path executablePath() const = 0;
    [[nodiscard]] virtual std::filesystem::path resourcesPath() const = 0;
    /// The path of a resource. "ffmpeg" may be replaced from the environment (REELVANE_FFMPEG).
    /// The path is given whether or not something is there.
    [[nodiscard]] virtual std::filesystem::path pathForResource(std::string_view name) const = 0;
    /// The environment variable that names this resource in place of the bundle's own; empty: none.
    [[nodiscard]] virtual std::string variableNaming(std::string_view /*name*/) const { return {}; }
    /// An entry of the information file (`Name`, `ShortVersion`, `Version`, `Identifier`,
    /// `FeedbackEmail`, `VendorProductPage`, `StoreProductPage`, `MacupdateProductPage`); absent
    /// when missing or empty.
    [[nodiscard]] virtual std::optional<std::string> infoValue(std::string_view key) const = 0;
};

}  // namespace reelvane
