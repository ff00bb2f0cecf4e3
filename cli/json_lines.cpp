#include "cli/json_lines.h"

#include <array>
#include <cmath>
#include <nlohmann/json.hpp>

namespace reelvane {
namespace {

using Json = nlohmann::ordered_json;

std::string line(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

template <typename T>
Json orNull(const std::optional<T>& value) {
    return value ? Json(*value) : Json(nullptr);
}

Json orNull(const std::string& text) {
    return text.empty() ? Json(nullptr) : Json(text);
}

/// More digits say nothing.
double toThousandths(double seconds) {
    constexpr double kSteps = 1000;
    return std::round(seconds * kSteps) / kSteps;
}

Json alertList(std::span<const VettingAlert> alerts) {
    auto list = Json::array();
    for (const auto& alert : alerts) {
        list.push_back(
            {{"key", orNull(alert.key)}, {"title", alert.title}, {"message", alert.message}});
    }
    return list;
}

Json audioList(const MKVFileInfo& record) {
    auto list = Json::array();
    for (const auto& entry : record.audioTrackInformation) {
        list.push_back({{"text", entry.text}, {"HZ", entry.hz > 0 ? Json(entry.hz) : Json()}});
    }
    return list;
}

Json event(std::string_view name, const EventSubject& subject) {
    return {{"event", name}, {"file", subject.file}};
}

}  // namespace

std::string acceptedLine(const InspectionFacts& facts) {
    const auto& record = facts.record;
    const auto best = facts.bestAudio ? Json(record.audioTrackInformation.at(*facts.bestAudio).text)
                                      : Json(nullptr);
    Json json = {{"file", facts.file}, {"accepted", true}};
    json["fileName"] = record.fileName;
    json["fileSize"] = record.fileSize;
    json["runtimeSeconds"] = orNull(record.runtimeSeconds);
    json["videoTrackID"] = orNull(record.videoTrackID);
    json["videoCodec"] = orNull(record.videoCodec);
    json["resolution"] = orNull(record.resolution);
    json["referenceFrames"] = orNull(record.referenceFrames);
    json["audioTrackInformation"] = audioList(record);
    json["subtitleTrackIDs"] = record.subtitleTrackIDs;
    json["subtitleCount"] = record.subtitleCount;
    json["informationString"] = record.informationString;
    json["bestLanguage"] = best;
    json["alerts"] = alertList(facts.alerts);
    return line(json);
}

std::string refusedLine(std::string_view file, std::span<const VettingAlert> alerts) {
    return line({{"file", file}, {"accepted", false}, {"alerts", alertList(alerts)}});
}

std::string verifiedLine(std::string_view file, const Mp4Reading& reading, std::uint64_t bytes) {
    static constexpr auto kKinds =
        std::to_array<std::string_view>({"video", "audio", "text", "other"});
    if (!reading.movie) {
        const auto whole = reading.uncheckable ? Json(nullptr) : Json(false);
        return line({{"file", file}, {"whole", whole}, {"problem", reading.problem}});
    }
    auto tracks = Json::array();
    for (const auto& track : reading.movie->tracks) {
        tracks.push_back({{"id", track.trackID},
                          {"kind", kKinds.at(static_cast<std::size_t>(track.kind))},
                          {"codec", track.codec},
                          {"language", track.language},
                          {"seconds", toThousandths(track.seconds)},
                          {"enabled", track.enabled},
                          {"group", track.alternateGroup}});
    }
    return line({{"file", file},
                 {"whole", true},
                 {"seconds", toThousandths(reading.movie->seconds)},
                 {"bytes", bytes},
                 {"tracks", tracks}});
}

std::string argumentsLine(std::span<const std::string> arguments) {
    return line(Json(std::vector<std::string>(arguments.begin(), arguments.end())));
}

std::string queuedEvent(const EventSubject& subject) {
    auto json = event("queued", subject);
    json["output"] = subject.output.native();
    return line(json);
}

std::string startedEvent(const EventSubject& subject, std::span<const std::string> arguments) {
    auto json = event("started", subject);
    json["output"] = subject.output.native();
    json["arguments"] = std::vector<std::string>(arguments.begin(), arguments.end());
    return line(json);
}

std::string progressEvent(const EventSubject& subject, double percent,
                          std::optional<double> remaining, std::string_view status) {
    constexpr double kSteps = 100;  // more digits say nothing
    auto json = event("progress", subject);
    json["percent"] = std::round(percent * kSteps) / kSteps;
    json["remaining"] = remaining ? Json(std::round(*remaining)) : Json(nullptr);
    json["status"] = status;
    return line(json);
}

std::string finishedEvent(const EventSubject& subject, double seconds, std::uint64_t bytes) {
    auto json = event("finished", subject);
    json["output"] = subject.output.native();
    json["seconds"] = toThousandths(seconds);
    json["bytes"] = bytes;
    return line(json);
}

std::string failedEvent(const EventSubject& subject, std::string_view title,
                        std::string_view message, std::string_view log) {
    auto json = event("failed", subject);
    json["title"] = title;
    json["message"] = message;
    json["log"] = log;
    return line(json);
}

std::string refusedEvent(std::string_view file, std::span<const VettingAlert> alerts) {
    return line({{"event", "refused"}, {"file", file}, {"alerts", alertList(alerts)}});
}

std::string alertEvent(std::string_view title, std::string_view message) {
    return line({{"event", "alert"}, {"title", title}, {"message", message}});
}

std::string preferenceLine(const PreferenceRow& row) {
    return line({{"key", row.key},
                 {"value", row.value},
                 {"default", row.defaultValue},
                 {"type", row.type},
                 {"meaning", row.meaning}});
}

std::string destinationLine(std::string_view name,
                            const std::optional<std::filesystem::path>& folder) {
    return line({{"name", name}, {"folder", folder ? Json(folder->native()) : Json(nullptr)}});
}

}  // namespace reelvane
