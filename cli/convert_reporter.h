#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "cli/json_lines.h"
#include "media/vetting.h"

namespace reelvane {

class Console;

/// How far the running conversion has come.
struct ConvertProgress {
    double percent = 0;                 ///< 0 to 100
    std::optional<double> speed{};      ///< play time written per second; absent: not known yet
    std::optional<double> remaining{};  ///< seconds; absent: not known yet
    std::string status{};               ///< the job's status line
    double elapsed = 0;                 ///< seconds since the start
    std::size_t number = 1;             ///< of this file
    std::size_t files = 1;              ///< in this run
};

struct ConvertSummary {
    std::size_t finished = 0;
    std::size_t failed = 0;
    std::size_t refused = 0;
    double seconds = 0;          ///< of the whole run
    std::uint64_t bytes = 0;     ///< written
    bool leftSomething = false;  ///< something unfinished could not be deleted, as was told
};

/// Tells what happens in a run of `convert`, in one of several forms. Main thread only.
class ConvertReporter {
public:
    virtual ~ConvertReporter() = default;
    /// So many movies are being read, and this many are left.
    virtual void reading(std::size_t number, std::size_t files) = 0;
    virtual void queued(const EventSubject& subject) = 0;
    virtual void started(const EventSubject& subject, std::span<const std::string> arguments) = 0;
    virtual void progress(const EventSubject& subject, const ConvertProgress& progress) = 0;
    virtual void finished(const EventSubject& subject, const ConvertResult& result) = 0;
    virtual void failed(const EventSubject& subject, std::string_view title,
                        std::string_view message, std::string_view log) = 0;
    /// A conversion that had started was ended before its time, with the run.
    virtual void interrupted(const EventSubject& subject) = 0;
    virtual void refused(std::string_view file, std::span<const VettingAlert> alerts) = 0;
    /// Of a file that is no reason for the run to fail.
    virtual void warned(std::string_view file, std::string_view warning) = 0;
    virtual void alerted(std::string_view title, std::string_view message) = 0;
    /// The run is over; `interrupted`: before its time.
    virtual void ended(const ConvertSummary& summary, bool interrupted) = 0;
};

/// One JSON object per event and line.
[[nodiscard]] std::unique_ptr<ConvertReporter> makeJsonReporter(Console& console);
/// Lines for people: a live line where the console has one; with `quiet` errors only.
[[nodiscard]] std::unique_ptr<ConvertReporter> makeTextReporter(Console& console, bool quiet);

}  // namespace reelvane
