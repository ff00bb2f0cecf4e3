#include "app/audio_choice.h"

#include <algorithm>

#include "support/make_string.h"

namespace reelvane {

std::optional<std::string> audioChoiceProblem(const MKVFileInfo& record,
                                              std::size_t audioTrackIndex) {
    const auto tracks = record.audioTrackInformation.size();
    const auto& entries = record.audioTrackInformation;
    if (audioTrackIndex < tracks) {
        const auto isUnknown = [](const AudioEntry& entry) { return hasUnknownCodec(entry.text); };
        if (!isUnknown(entries[audioTrackIndex]) || std::ranges::all_of(entries, isUnknown)) {
            return std::nullopt;
        }
        return makeString(
            "The audio track with the index %lu of the file '%@' has a format that ffmpeg does not "
            "know. Please choose another one.",
            audioTrackIndex, record.fileName);
    }
    if (tracks == 0) {
        return makeString(
            "The file '%@' has no audio track, so none can be chosen. Please convert it without "
            "choosing an audio track.",
            record.fileName);
    }
    if (tracks == 1) {
        return makeString(
            "The file '%@' has no audio track with the index %lu: the only audio track has the "
            "index 0.",
            record.fileName, audioTrackIndex);
    }
    return makeString(
        "The file '%@' has no audio track with the index %lu. Please choose an index from 0 to "
        "%lu.",
        record.fileName, audioTrackIndex, tracks - 1);
}

}  // namespace reelvane
