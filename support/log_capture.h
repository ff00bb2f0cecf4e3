#pragma once

#include <cstdint>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace reelvane {

/// The file that mirrors the log, or none. Any thread; logs nothing itself.
class LogCapture {
public:
    LogCapture() = default;
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;
    LogCapture(LogCapture&&) = delete;
    LogCapture& operator=(LogCapture&&) = delete;

    /// Makes the file when it is missing, cuts one larger than `maxSize` bytes (0: never) to its
    /// end, and appends to it from now on. False: it cannot be opened, and nothing is captured.
    bool open(const std::filesystem::path& file, std::uint64_t maxSize);

    /// Appends one line. Answers the line, its odd bytes replaced, when it is not UTF-8 and so was
    /// not written.
    std::optional<std::string> append(std::uint32_t level, std::string_view appName,
                                      std::string_view message);

private:
    std::mutex mutex_;
    int file_ = -1;
};

}  // namespace reelvane
