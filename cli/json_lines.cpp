#include "cli/json_lines.h"

#include <array>
#include <cmath>
#include <nlohmann/json.hpp>

#include "support/make_string.h"
#include "support/strings.h"

namespace reelvane {
namespace {

using Json = nlohmann::ordered_json;

/// What would steer a terminal can stand within texts only, and means the same when it is escaped.
std::string line(const Json& json) {
    const auto dumped = json.dump(-1, ' ', false, Json::error_handler_t::replace);
    std::string result;
    result.reserve(dumped.size());
    for (std::string_view rest = dumped; !rest.empty();) {
        const auto character = decodeUtf8(rest);
        if (isSteering(character.value)) {
            result += makeString("\\u%04x", static_cast<unsigned>(character.value));
        } else {
            result += rest.substr(0, character.length);
        }
        rest.remove_prefix(character.length);
    }
    return result;
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
    for (const auto& track : record.audioTrackInformation) {
        list.push_back({{"text", text(track)}, {"HZ", track.hz > 0 ? Json(track.hz) : Json()}});
    }
    return list;
}

Json event(std::string_view name, const EventSubject& subject) {
    return {{"event", name}, {"file", subject.file}};
}

}  // namespace

std::string acceptedLine(const InspectionFacts& facts) {
    const auto& record = facts.record;
    const auto best = facts.bestAudio
                          ? Json(text(record.audioTrackInformation.at(*facts.bestAudio)))
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
    if (!subject.subtitle.empty()) json["subtitle"] = subject.subtitle.native();
    if (!subject.subtitleEncoding.empty()) json["subtitleEncoding"] = subject.subtitleEncoding;
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

std::string finishedEvent(const EventSubject& subject, const ConvertResult& result) {
    static constexpr auto kTrackKinds =
        std::to_array<std::string_view>({"video", "audio", "subtitle"});
    static constexpr auto kNoteKinds =
        std::to_array<std::string_view>({"doubt", "sourceKept", "remark"});
    auto json = event("finished", subject);
    json["output"] = subject.output.native();
    json["seconds"] = toThousandths(result.seconds);
    json["bytes"] = result.bytes;
    auto leftOut = Json::array();
    for (const auto& track : result.tracks) {
        if (track.fate != TrackOutcome::Fate::LeftOut) continue;
        leftOut.push_back({{"kind", kTrackKinds.at(static_cast<std::size_t>(track.kind))},
                           {"count", track.count},
                           {"track", track.track},
                           {"why", track.outcome}});
    }
    json["leftOut"] = leftOut;
    auto notes = Json::array();
    for (const auto& note : result.notes) {
        notes.push_back(
            {{"kind", kNoteKinds.at(static_cast<std::size_t>(note.kind))}, {"text", note.text}});
    }
    json["notes"] = notes;
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

std::string interruptedEvent(const EventSubject& subject) {
    auto json = event("interrupted", subject);
    json["output"] = subject.output.native();
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
