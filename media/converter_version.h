#pragma once

#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace reelvane {

class ProcessLauncher;

/// "5.1.9-0+deb12u1" out of what "ffmpeg -version" printed; empty when that is not ffmpeg's.
[[nodiscard]] std::string versionInOutput(std::string_view output);
/// 5 out of "5.1.9-0+deb12u1" and out of "n5.1"; absent for what is no release: "N-109542-g7c..."
[[nodiscard]] std::optional<int> majorVersion(std::string_view version);

/// The converter's version, asked when it is first needed and never again. Any thread.
class ConverterVersion {
public:
    ConverterVersion(ProcessLauncher& launcher, std::filesystem::path ffmpeg);

    /// Empty when it could not be had. Blocks for the length of "ffmpeg -version" the first time.
    [[nodiscard]] const std::string& get();

private:
    ProcessLauncher& launcher_;
    std::filesystem::path ffmpeg_;
    std::once_flag asked_;
    std::string version_;
};

}  // namespace reelvane
