#include "media/mkv_file_info.h"

#include <cstddef>

#include "support/localization.h"
#include "support/make_string.h"
#include "support/ports/translations.h"
#include "support/strings.h"

namespace reelvane {
namespace {

std::string listed(const std::vector<std::string>& values) {
    return "[" + Fennimar::joined(values, ", ") + "]";
}

}  // namespace

std::string informationText(const Translations& translations, const MKVFileInfo& info) {
    const std::string absent = "(null)";
    // The number in parentheses counts subtitle streams.
    auto text = makeString(
        translations.localized("Duration: %@  Bitrate: %@  Resolution: %@  Audiotracks: %i (%i)"),
        info.duration.value_or(absent), info.bitrate.value_or(absent),
        info.resolution.empty() ? absent : info.resolution, info.audioTrackInformation.size(),
        info.subtitleCount);
    return info.subtitleFileURL ? Fennimar::replaced(text, ")", "+1)") : text;
}

std::string description(const MKVFileInfo& info) {
    std::vector<std::string> audio;
    audio.reserve(info.audioTrackInformation.size());
    for (const auto& track : info.audioTrackInformation) audio.push_back(text(track));
    std::vector<std::string> subtitles;
    subtitles.reserve(info.subtitleTrackIDs.size());
    for (const auto id : info.subtitleTrackIDs) subtitles.push_back(std::to_string(id));

    std::optional<std::string> runtime;
    if (info.runtimeSeconds) runtime = std::to_string(*info.runtimeSeconds);
    return makeDescription({{"audioTrackInformation", listed(audio)},
                            {"informationString", info.informationString},
                            {"fileName", info.fileName},
                            {"runtimeSeconds", runtime},
                            {"fileSize", std::to_string(info.fileSize)},
                            {"subtitleTrackIDs", listed(subtitles)},
                            {"subtitleFileURL", info.subtitleFileURL}});
}

std::string text(const AudioTrack& track) {
    return makeString("#%i: %@ (%@)%@", track.stream, track.language, track.codec,
                      track.surround ? " [5.1]" : "");
}

std::string_view namedLanguage(std::string_view word) {
    return word == "unk" || word == "und" ? std::string_view{} : word;
}

}  // namespace reelvane
