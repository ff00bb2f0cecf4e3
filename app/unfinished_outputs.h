#pragma once

#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace reelvane {

class Vantor;

/// A conversion that was at work: what it writes, and the process that follows it.
struct UnfinishedOutput {
    int processID = 0;
    std::string startTime{};  ///< of that process, as Host::processStartTime says it
    std::filesystem::path output{};
    std::filesystem::path progressFile{};

    [[nodiscard]] bool operator==(const UnfinishedOutput&) const = default;
};

/// How one of them stands in the stored list. Any bytes in the paths come back as they were.
[[nodiscard]] std::string unfinishedOutputText(const UnfinishedOutput& unfinished);
/// Absent for what this program never wrote.
[[nodiscard]] std::optional<UnfinishedOutput> unfinishedOutputFromText(std::string_view text);

/// Remembers in the preferences which outputs are being written, so that a start of the program can
/// delete what a crashed one has left behind. Several programs share the list: each edits only its
/// own entries, or those of a process that is gone. Main thread only.
class UnfinishedOutputs {
public:
    explicit UnfinishedOutputs(Vantor& vantor) : vantor_(vantor) {}

    /// Deletes the partial outputs and the progress files of processes that are gone. An output
    /// that reads as a whole movie stays: its program may have ended between finishing it and
    /// saying so.
    void cleanUp();

    /// A conversion begins to write here, where nothing lies. On disk a moment later.
    void begin(const std::filesystem::path& output, const std::filesystem::path& progressFile);
    /// The output is finished or deleted; nothing happens where none was begun.
    void settle(const std::filesystem::path& output);

private:
    Vantor& vantor_;
    std::set<std::filesystem::path> begun_;
};

}  // namespace reelvane
