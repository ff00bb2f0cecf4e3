#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>
#include <utility>

#include "support/file_descriptor.h"

namespace reelvane {

class Vantor;

/// The seconds that the first "out_time_ms=" line of the text gives (the file counts in
/// millionths); absent when there is none or its value is not above 0.
[[nodiscard]] std::optional<double> earliestOutTime(std::string_view text);

/// The share of the running time that is written, in per cent, at most 100; absent when the running
/// time is not known.
[[nodiscard]] std::optional<double> progressPercent(double outTime,
                                                    std::optional<int> runtimeSeconds);

/// Whether the process that made a progress file still follows its run. Processes that cannot see
/// each other learn of each other by this, as long as they share a kernel.
enum class ProgressLock {
    Held,    ///< it does, or the file cannot be opened to ask
    Free,    ///< it does not
    Unknown  ///< there is no such file, or its file system knows no locks
};
[[nodiscard]] ProgressLock progressLockOf(const std::filesystem::path& path);

/// The file into which the converter writes its progress. Only what was added since the last look
/// is read, so that a look costs the same however long the conversion is.
class ProgressFile {
public:
    ProgressFile() = default;
    explicit ProgressFile(std::filesystem::path path) : path_(std::move(path)) {}

    /// The path that `create` would take now. Makes nothing.
    [[nodiscard]] static std::filesystem::path freePath(const std::filesystem::path& folder,
                                                        std::string_view movieName);
    /// Makes an empty file, named after the movie, under a name that nobody has: two programs that
    /// share the folder never get the same one. Its lock is held until it is removed or the process
    /// is gone. Absent where none can be made.
    [[nodiscard]] static std::optional<ProgressFile> create(const std::filesystem::path& folder,
                                                            std::string_view movieName);
    /// The same in the documents folder or, where that cannot be written, in a temporary folder,
    /// which goes with the file.
    [[nodiscard]] static std::optional<ProgressFile> create(const Vantor& vantor,
                                                            std::string_view movieName);

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    /// The earliest position that was added since the last call, in seconds of output.
    [[nodiscard]] std::optional<double> readOutTime();
    /// Deletes the file, if there is one, and forgets it.
    void remove();

private:
    std::filesystem::path path_;       ///< empty: there is none
    std::filesystem::path ownFolder_;  ///< made for the file alone; empty: there is none
    FileDescriptor lock_;              ///< open as long as the run lasts
    std::uintmax_t lastFileSize_ = 0;
};

}  // namespace reelvane
