#include "app/audio_choice.h"

#include "support/make_string.h"

namespace reelvane {

std::optional<std::string> audioChoiceProblem(const MKVFileInfo& record,
                                              std::size_t audioTrackIndex) {
    const auto tracks = record.audioTrackInformation.size();
    if (audioTrackIndex < tracks) return std::nullopt;
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
