#include "conversion/stream_plan.h"

#include <algorithm>

#include "media/languages.h"
#include "support/make_string.h"
#include "support/paths.h"
#include "support/ports/translations.h"
#include "support/strings.h"

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

PlannedAudio mainAudio(const AudioTrack& source, std::size_t entry, AudioMethod method,
                       const ConversionSettings& settings) {
    auto audio = plannedAudio(entry, method, settings);
    if (method == AudioMethodCopy) return audio;
    if (source.hz > kHighestSamplingRate) audio.samplingRate = kHighestSamplingRate;
    if (!leavesVolume(settings.audioVolume)) {
        audio.volume = static_cast<double>(settings.audioVolume) / 100;
    }
    return audio;
}

int customMethod(std::string_view codec, bool audioIsSurround, const AudioSettings& settings) {
    if (codec == "ac3") {
        return audioIsSurround ? settings.customAC351Handling : settings.customAC3Handling;
    }
    if (codec == "dts") {
        return audioIsSurround ? settings.customDTS51Handling : settings.customDTSHandling;
    }
    if (codec == "mp3" && !audioIsSurround) return settings.customMP3Handling;
    if (codec == "vorbis" && !audioIsSurround) return settings.customVorbisHandling;
    return settings.customUnknownHandling;
}

AudioMethod fastMethod(std::string_view codec, bool audioIsSurround,
                       const AudioSettings& settings) {
    if (codec == "ac3") {
        return audioIsSurround && settings.ac3Downmix ? AudioMethodAC3Stereo : AudioMethodCopy;
    }
    if (codec == "dts" && audioIsSurround && !settings.dtsDownmix) return AudioMethodAC3Surround;
    return AudioMethodAC3Stereo;
}

bool isAudioMethod(int value) {
    return value >= AudioMethodAAC && value <= AudioMethodCopy;
}

bool isSurroundOf(const AudioTrack& track, std::string_view codec) {
    return track.surround && track.codec == codec;
}

std::optional<std::size_t> surroundSource(std::span<const AudioTrack> tracks,
                                          std::size_t selected) {
    const auto& chosen = tracks[selected];
    if (isSurroundOf(chosen, "ac3") || isSurroundOf(chosen, "dts")) return selected;
    const auto language = bibliographicCode(chosen.language);
    for (const std::string_view codec : {"ac3", "dts"}) {
        const auto found = std::ranges::find_if(tracks, [&](const AudioTrack& track) {
            return isSurroundOf(track, codec) && bibliographicCode(track.language) == language;
        });
        if (found != tracks.end()) return static_cast<std::size_t>(found - tracks.begin());
    }
    return {};
}

std::string titleOf(const MKVFileInfo& file, int stream) {
    const auto found = file.trackTitles.find(stream);
    return found == file.trackTitles.end() ? std::string() : found->second;
}

OutputTrack audioTrack(const MKVFileInfo& file, const PlannedAudio& audio) {
    const auto& source = file.audioTrackInformation[audio.entry];
    return {.kind = OutputTrack::Kind::Audio,
            .stream = source.stream,
            .language = std::string(namedLanguage(source.language)),
            .title = titleOf(file, source.stream)};
}

OutputTrack subtitleTrack(const MKVFileInfo& file, int stream) {
    const auto& streams = file.subtitleTrackIDs;
    const auto place =
        static_cast<std::size_t>(std::ranges::find(streams, stream) - streams.begin());
    const auto& languages = file.subtitleLanguages;
    return {.kind = OutputTrack::Kind::Subtitle,
            .stream = stream,
            .language = std::string(
                namedLanguage(place < languages.size() ? languages[place] : std::string())),
            .title = titleOf(file, stream),
            .forced = std::ranges::count(file.forcedSubtitleTrackIDs, stream) > 0};
}

constexpr int kFirstEncoding = 2;

/// Empty when the preference leaves it to the file.
std::string preferredEncoding(int index) {
    if (index < kFirstEncoding || !isSubtitleEncoding(static_cast<std::size_t>(index))) return {};
    const auto name = kSubtitleEncodings[static_cast<std::size_t>(index)];
    // The converter reads UTF-16 by its byte order mark and hands UTF-8 on; naming UTF-16 here
    // would decode the text twice.
    return Fennimar::replaced(name, "UTF-16", "UTF-8");
}

}  // namespace

StreamPlan planStreams(const MKVFileInfo& file, std::size_t audioTrackIndex,
                       const ConversionSettings& settings) {
    StreamPlan plan{.video = file.videoTrackID.value_or(0)};
    const auto& tracks = file.audioTrackInformation;
    const auto method = mainAudioMethod(file, audioTrackIndex, settings.audio);
    if (!method) return plan;
    plan.mainAudio = mainAudio(tracks[audioTrackIndex], audioTrackIndex, *method, settings);
    if (const auto second = additionalSurroundTrack(tracks, audioTrackIndex, settings)) {
        plan.surround = plannedAudio(
            second->entry, second->transcode ? AudioMethodAC3Surround : AudioMethodCopy, settings);
    }
    if (mapsEmbeddedSubtitles(file, settings)) plan.subtitles = file.subtitleTrackIDs;
    plan.externalSubtitle = file.subtitleFileURL.has_value();
    return plan;
}

std::vector<OutputTrack> outputTracks(const StreamPlan& plan, const MKVFileInfo& file) {
    std::vector<OutputTrack> tracks{{.stream = plan.video, .title = titleOf(file, plan.video)}};
    for (const auto& audio : {plan.mainAudio, plan.surround}) {
        if (audio) tracks.push_back(audioTrack(file, *audio));
    }
    if (plan.externalSubtitle) {
        const auto name = file.subtitleFileURL->stem();
        tracks.push_back({.kind = OutputTrack::Kind::Subtitle,
                          .forced = Fennimar::lowercasedExtension(name) == "forced"});
    }
    std::for_each(plan.subtitles.rbegin(), plan.subtitles.rend(),
                  [&](int stream) { tracks.push_back(subtitleTrack(file, stream)); });
    return tracks;
}

AudioMethod calculateConversionMethod(std::string_view codec, bool audioIsSurround,
                                      const AudioSettings& settings) {
    if (codec == "aac") return AudioMethodCopy;
    if (settings.conversionPreset == ConversionPreset::Compatible) return AudioMethodAAC;
    if (settings.conversionPreset == ConversionPreset::Custom) {
        // The stored number may be none of the four; the enumeration's fixed type holds it.
        return static_cast<AudioMethod>(customMethod(codec, audioIsSurround, settings));
    }
    return fastMethod(codec, audioIsSurround, settings);
}

std::optional<AudioMethod> mainAudioMethod(const MKVFileInfo& file, std::size_t audioTrackIndex,
                                           const AudioSettings& settings) {
    if (file.audioTrackInformation.empty()) return {};
    const auto& track = file.audioTrackInformation.at(audioTrackIndex);
    if (!track.isKnown()) return {};
    return calculateConversionMethod(track.codec, track.surround, settings);
}

std::string audioMethodProblem(const Translations& translations, const MKVFileInfo& file,
                               std::size_t audioTrackIndex, const AudioSettings& settings) {
    const auto method = mainAudioMethod(file, audioTrackIndex, settings);
    if (!method || isAudioMethod(*method)) return {};
    return makeString(translations.localized("The audio handling chosen for %@ audio is not valid "
                                             "(%i). Please choose another one in the preferences."),
                      file.audioTrackInformation[audioTrackIndex].codec, int{*method});
}

std::optional<SurroundTrack> additionalSurroundTrack(std::span<const AudioTrack> tracks,
                                                     std::size_t selected,
                                                     const ConversionSettings& settings) {
    if (settings.audio.conversionPreset != ConversionPreset::Compatible ||
        !settings.includeSurroundTrack) {
        return {};
    }
    const auto source = surroundSource(tracks, selected);
    if (!source) return {};
    return SurroundTrack{
        .entry = *source,
        .transcode = tracks[*source].codec == "dts" && settings.includeSurroundTrackTranscoded};
}

bool findsSubtitleEncoding(const ConversionSettings& settings) {
    return preferredEncoding(settings.externalSubtitleEncoding).empty();
}

std::string subtitleEncoding(const SubtitleFormat& format, const ConversionSettings& settings) {
    if (format.encodingIsChosen) return format.encoding.name;
    auto preferred = preferredEncoding(settings.externalSubtitleEncoding);
    if (preferred.empty()) return format.encoding.name;
    // For the same reason a mark overrules a preference that was made for other files.
    if (format.hasByteOrderMark && preferred != "UTF-8") return {};
    return preferred;
}

bool mapsEmbeddedSubtitles(const MKVFileInfo& file, const ConversionSettings& settings) {
    return !settings.disableBuiltinSubtitles && !file.subtitleTrackIDs.empty();
}

ConversionSettings withWholeSubtitles(const MKVFileInfo& file, ConversionSettings settings) {
    const bool packetsCarryDurations =
        file.demuxer == "matroska,webm" || file.demuxer.starts_with("mov,mp4");
    if (packetsCarryDurations && mapsEmbeddedSubtitles(file, settings)) {
        settings.fixSubtitleDuration = false;
    }
    return settings;
}

}  // namespace reelvane
