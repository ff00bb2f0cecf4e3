#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>
#include <sys/types.h>

namespace reelvane {

/// The seconds that the first "out_time_ms=" line of the text gives (the file counts in
/// millionths); absent when there is none or its value is not above 0.
[[nodiscard]] std::optional<double> earliestOutTime(std::string_view text);

/// How far the converter says that it has come.
struct ProgressReport {
    std::optional<double> outTime{};       ///< see earliestOutTime
    std::optional<std::uint64_t> bytes{};  ///< written, by the last "total_size=" line
};
/// Reads what was added to a progress file. ffmpeg 7 and 8 print N/A for the time until every track
/// has had a packet, which a late subtitle can hold back for the whole run; the size is always
/// there.
[[nodiscard]] ProgressReport readProgress(std::string_view text);

/// The share that is done, in per cent, at most 100: by the running time or, where the converter
/// reports no time or the running time is not known, by the bytes that are written against those of
/// the input. Absent when neither says anything.
[[nodiscard]] std::optional<double> progressPercent(const ProgressReport& report,
                                                    std::optional<int> runtimeSeconds,
                                                    std::uint64_t inputBytes);

/// Whether the process that made a progress file still follows its run. Processes that cannot see
/// each other learn of each other by this, as long as they share a kernel.
enum class ProgressLock {
    Held,    ///< it does, or the file cannot be opened to ask
    Free,    ///< it does not
    Unknown  ///< there is no such file, or its file system knows no locks
};
[[nodiscard]] ProgressLock progressLockOf(const std::filesystem::path& path);

/// Holds that lock from now on, until the descriptor is closed; not every file system can.
void lockProgress(int descriptor);

/// A free path for the progress file of a movie.
[[nodiscard]] std::filesystem::path freeProgressPath(const std::filesystem::path& folder,
                                                     std::string_view movieName);

/// Reads the file into which the converter writes its progress. Only what was added since the last
/// look is read, so that a look costs the same however long the conversion is.
class ProgressReader {
public:
    /// What was added since the last call.
    [[nodiscard]] ProgressReport readNew(int descriptor);

private:
    off_t read_ = 0;  ///< so many bytes
};

}  // namespace reelvane
