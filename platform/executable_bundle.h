#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "platform/glib_dispatcher.h"
#include "support/ports/bundle_watch.h"
#include "support/ports/main_bundle.h"
#include "support/posix_io.h"

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

/// Notices by inotify that the bundle, or a folder above it, was moved or renamed. It tells once
/// the latency is over, and only if the bundle is elsewhere by then. Folders that may not be read
/// are not watched, nor are links on the way to the bundle.
class InotifyBundleWatch final : public BundleWatch {
public:
    explicit InotifyBundleWatch(std::chrono::milliseconds latency = std::chrono::seconds(3));

    void start(const std::filesystem::path& bundle, Callback callback) override;
    [[nodiscard]] std::filesystem::path currentPath() const override;

private:
    void watchPath(std::filesystem::path path);
    void eventsArrived();
    void latencyOver();

    std::chrono::milliseconds latency_;
    Callback callback_;
    std::filesystem::path path_;  ///< where the bundle was when the watches were set
    FileDescriptor bundle_;       ///< stays with the folder wherever it goes
    FileDescriptor inotify_;
    bool due_ = false;
    GlibSource readable_;
    GlibSource timer_;
};

}  // namespace reelvane
