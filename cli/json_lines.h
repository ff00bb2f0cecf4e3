#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "conversion/mp4_movie.h"
#include "media/mkv_file_info.h"
#include "media/vetting.h"

namespace reelvane {

/// What the command line prints with --json: one object or array per line, without the newline, in
/// UTF-8. Bytes of a name that are not UTF-8 read as U+FFFD; absent values are null. Pure.

/// What `inspect` found in an accepted file. `file` is the name as given.
struct InspectionFacts {
    std::string_view file{};
    const MKVFileInfo& record;
    std::optional<std::size_t> bestAudio{};  ///< index of the audio entry that would be taken
    std::span<const VettingAlert> alerts{};
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
};

[[nodiscard]] std::string queuedEvent(const EventSubject& subject);
[[nodiscard]] std::string startedEvent(const EventSubject& subject,
                                       std::span<const std::string> arguments);
/// `remaining` in seconds.
[[nodiscard]] std::string progressEvent(const EventSubject& subject, double percent,
                                        std::optional<double> remaining, std::string_view status);
[[nodiscard]] std::string finishedEvent(const EventSubject& subject, double seconds,
                                        std::uint64_t bytes);
[[nodiscard]] std::string failedEvent(const EventSubject& subject, std::string_view title,
                                      std::string_view message, std::string_view log);
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
