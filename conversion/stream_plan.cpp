#include "conversion/stream_plan.h"

#include <span>

#include "conversion/audio_method.h"
#include "conversion/subtitle_arguments.h"
#include "conversion/surround_track.h"

namespace reelvane {

namespace {

constexpr int kHighestSamplingRate = 48000;

/// A preference that is no place in the list reads as its registered default.
std::string_view bitrate(std::span<const std::string_view> list, int index) {
    constexpr std::size_t kRegisteredDefault = 1;
    const bool valid = index >= 0 && static_cast<std::size_t>(index) < list.size();
    return list[valid ? static_cast<std::size_t>(index) : kRegisteredDefault];
}

std::string_view bitrateFor(AudioMethod method, const ConversionSettings& settings) {
    switch (method) {
        case AudioMethodAAC:
            return bitrate(kAACBitrates, settings.aacBitrate);
        case AudioMethodAC3Stereo:
            return bitrate(kAC3StereoBitrates, settings.ac3StereoBitrate);
        case AudioMethodAC3Surround:
            return bitrate(kAC3SurroundBitrates, settings.ac3SurroundBitrate);
        case AudioMethodCopy:
            break;
    }
    return {};
}

PlannedAudio plannedAudio(std::size_t entry, AudioMethod method,
                          const ConversionSettings& settings) {
    return {.entry = entry, .method = method, .bitrate = bitrateFor(method, settings)};
}

PlannedAudio mainAudio(const AudioEntry& source, std::size_t entry, AudioMethod method,
                       const ConversionSettings& settings) {
    auto audio = plannedAudio(entry, method, settings);
    if (method == AudioMethodCopy) return audio;
    if (source.hz > kHighestSamplingRate) audio.samplingRate = kHighestSamplingRate;
    if (!leavesVolume(settings.audioVolume)) {
        audio.volume = static_cast<double>(settings.audioVolume) / 100;
    }
    return audio;
}

}  // namespace

StreamPlan planStreams(const MKVFileInfo& file, std::size_t audioTrackIndex,
                       const ConversionSettings& settings) {
    StreamPlan plan{.video = file.videoTrackID.value_or(0)};
    const auto& entries = file.audioTrackInformation;
    const auto method = mainAudioMethod(file, audioTrackIndex, settings.audio);
    if (!method) return plan;
    plan.mainAudio = mainAudio(entries[audioTrackIndex], audioTrackIndex, *method, settings);
    if (const auto second = additionalSurroundTrack(entries, audioTrackIndex, settings)) {
        plan.surround = plannedAudio(
            second->entry, second->transcode ? AudioMethodAC3Surround : AudioMethodCopy, settings);
    }
    if (mapsEmbeddedSubtitles(file, settings)) plan.subtitles = file.subtitleTrackIDs;
    plan.externalSubtitle = file.subtitleFileURL.has_value();
    return plan;
}

}  // namespace reelvane
