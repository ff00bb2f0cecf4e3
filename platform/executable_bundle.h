#pragma once

#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "support/ports/main_bundle.h"

namespace reelvane {

/// The folder that the running executable lies in. Where it lies, and what REELVANE_FFMPEG names,
/// are settled when it is made; the information file is read when it is first asked for.
class ExecutableBundle final : public MainBundle {
public:
    ExecutableBundle();
    explicit ExecutableBundle(std::filesystem::path executable);

    [[nodiscard]] std::filesystem::path bundlePath() const override;
    [[nodiscard]] std::filesystem::path executablePath() const override;
    [[nodiscard]] std::filesystem::path resourcesPath() const override;
    [[nodiscard]] std::filesystem::path pathForResource(std::string_view name) const override;
    [[nodiscard]] std::string variableNaming(std::string_view name) const override;
    [[nodiscard]] std::optional<std::string> infoValue(std::string_view key) const override;

private:
    std::filesystem::path executable_;
    std::optional<std::filesystem::path> otherFFmpeg_;
    mutable std::once_flag infoRead_;
    mutable std::map<std::string, std::string, std::less<>> info_;
};

}  // namespace reelvane
