#pragma once

#include <cstdint>
#include <filesystem>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "media/mkv_file_info.h"
#include "media/probe_report.h"
#include "media/vetting.h"
#include "support/localization.h"

namespace reelvane {

class MainBundle;
class ProcessLauncher;

/// What a probe needs; given by value so that it can run in the background.
struct ProbeTools {
    ProcessLauncher* launcher = nullptr;
    std::filesystem::path ffmpeg{};
    std::string appName{};
    bool sandboxed = false;  ///< a sandbox limits access, so links are refused
    const Translations* translations = &kUntranslated;  ///< of what the user is told
    std::stop_token stop{};  ///< a request ends ffmpeg: nobody waits for the answer any more
};

/// Why the tool itself, not the file, kept a probe from an answer.
enum class ProbeToolProblem {
    None,
    Missing,     ///< the executable is not there
    Broken,      ///< it is there but does not run as ffmpeg
    NoResources  ///< the system could not start a process
};

/// The outcome of inspecting one file.
struct Inspection {
    std::optional<MKVFileInfo> record{};  ///< absent: refused, and the alerts say why
    std::vector<VettingAlert> alerts{};   ///< to be raised in this order
    ProbeToolProblem toolProblem = ProbeToolProblem::None;
};

/// Probes and vets one file. Blocks for the length of the probe; any thread. Shows nothing: the
/// caller raises the alerts. Throws nothing: a file that cannot be inspected is refused.
[[nodiscard]] Inspection initWithURL(const std::filesystem::path& url, const ProbeOptions& options,
                                     const ProbeTools& tools);

/// The play time in whole seconds, or -1. Blocks; any thread.
[[nodiscard]] std::int32_t durationOfFile(const std::filesystem::path& url,
                                          const ProbeTools& tools);

/// Two sentences on a missing or broken ffmpeg: which one, and what to do about it.
[[nodiscard]] std::string toolProblemText(const Translations& translations,
                                          ProbeToolProblem problem, const MainBundle& mainBundle);

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
