#pragma once

#include <chrono>
#include <filesystem>

#include "platform/glib_source.h"
#include "support/file_descriptor.h"
#include "support/ports/bundle_watch.h"

namespace reelvane {

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
