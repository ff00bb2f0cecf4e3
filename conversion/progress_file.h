#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>
#include <utility>

namespace reelvane {

/// The seconds that the first "out_time_ms=" line of the text gives (the file counts in
/// millionths); absent when there is none or its value is not above 0.
[[nodiscard]] std::optional<double> earliestOutTime(std::string_view text);

/// The share of the running time that is written, in per cent, at most 100; absent when the running
/// time is not known.
[[nodiscard]] std::optional<double> progressPercent(double outTime,
                                                    std::optional<int> runtimeSeconds);

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
    /// share the folder never get the same one. Where none can be made the path is answered all
    /// the same, and the converter says why it cannot write there.
    [[nodiscard]] static ProgressFile create(const std::filesystem::path& folder,
                                             std::string_view movieName);

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    /// The earliest position that was added since the last call, in seconds of output.
    [[nodiscard]] std::optional<double> readOutTime();
    /// Deletes the file, if there is one, and forgets it.
    void remove();

private:
    std::filesystem::path path_;  ///< empty: there is none
    std::uintmax_t lastFileSize_ = 0;
};

}  // namespace reelvane
