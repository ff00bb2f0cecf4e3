#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "conversion/job_notes.h"
#include "conversion/track_plan.h"
#include "media/mkv_file_info.h"
#include "media/vetting.h"
#include "mp4/mp4_reader.h"

namespace reelvane {

/// What the command line prints with --json: one object or array per line, without the newline, in
/// UTF-8. Bytes of a name that are not UTF-8 read as U+FFFD; absent values are null. Pure.

/// What `inspect` found in an accepted file. `file` is the name as given.
struct InspectionFacts {
    std::string_view file{};
    const MKVFileInfo& record;
    std::optional<std::size_t> bestAudio{};  ///< index of the audio entry that would be taken
    std::span<const VettingAlert> alerts{};
    std::string_view subtitlesLeftOut{};  ///< why those of the movie are not taken; empty: they are
};
[[nodiscard]] std::string acceptedLine(const InspectionFacts& facts);
[[nodiscard]] std::string refusedLine(std::string_view file, std::span<const VettingAlert> alerts);

/// What `verify` read of a file of so many bytes.
[[nodiscard]] std::string verifiedLine(std::string_view file, const Mp4Reading& reading,
                                       std::uint64_t bytes);

[[nodiscard]] std::string argumentsLine(std::span<const std::string> arguments);

/// One conversion, as its events name it.
struct EventSubject {
    std::string file{};  ///< as given
    std::filesystem::path output{};
    std::filesystem::path subtitle{};  ///< its subtitle file; empty: none
    std::string subtitleEncoding{};    ///< as the converter is told; empty: it needs no word
};

/// What a conversion has made.
struct ConvertResult {
    double seconds = 0;                  ///< that it took
    std::uint64_t bytes = 0;             ///< of the output
    std::string details{};               ///< "12 s, 3 tracks, 1.43 GB, verified"
    std::vector<TrackOutcome> tracks{};  ///< what became of each
    JobNotes notes{};                    ///< what the user should know of it
};

[[nodiscard]] std::string queuedEvent(const EventSubject& subject);
[[nodiscard]] std::string startedEvent(const EventSubject& subject,
                                       std::span<const std::string> arguments);
/// `remaining` in seconds.
[[nodiscard]] std::string progressEvent(const EventSubject& subject, double percent,
                                        std::optional<double> remaining, std::string_view status);
[[nodiscard]] std::string finishedEvent(const EventSubject& subject, const ConvertResult& result);
[[nodiscard]] std::string failedEvent(const EventSubject& subject, std::string_view title,
                                      std::string_view message, std::string_view log);
[[nodiscard]] std::string interruptedEvent(const EventSubject& subject);
[[nodiscard]] std::string refusedEvent(std::string_view file, std::span<const VettingAlert> alerts);
[[nodiscard]] std::string alertEvent(std::string_view title, std::string_view message);

/// One row of the list of preferences.
struct PreferenceRow {
    std::string key{};
    std::string value{};
    std::string defaultValue{};
    std::string type{};
    std::string meaning{};
};
[[nodiscard]] std::string preferenceLine(const PreferenceRow& row);

/// A saved destination folder; the path is absent when it cannot be found any more.
[[nodiscard]] std::string destinationLine(std::string_view name,
                                          const std::optional<std::filesystem::path>& folder);

}  // namespace reelvane
