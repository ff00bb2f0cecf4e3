#include "conversion/stream_plan.h"

#include <algorithm>
#include <span>
#include <string_view>

#include "media/languages.h"
#include "support/make_string.h"
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

namespace {

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

}  // namespace

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
    const auto& entry = file.audioTrackInformation.at(audioTrackIndex).text;
    if (hasUnknownCodec(entry)) return {};
    return calculateConversionMethod(codecOf(entry), isSurround(entry), settings);
}

std::string audioMethodProblem(const Translations& translations, const MKVFileInfo& file,
                               std::size_t audioTrackIndex, const AudioSettings& settings) {
    const auto method = mainAudioMethod(file, audioTrackIndex, settings);
    if (!method || isAudioMethod(*method)) return {};
    return makeString(translations.localized("The audio handling chosen for %@ audio is not valid "
                                             "(%i). Please choose another one in the preferences."),
                      codecOf(file.audioTrackInformation[audioTrackIndex].text), int{*method});
}

bool isSurround(std::string_view audioEntry) {
    return Fennimar::contains(audioEntry, "5.1");
}

namespace {

constexpr std::string_view kSurroundMark = "[5.1]";

std::optional<std::size_t> surroundSource(std::span<const AudioEntry> entries,
                                          std::size_t selected) {
    const auto& text = entries[selected].text;
    if (Fennimar::contains(text, kSurroundMark) &&
        (Fennimar::contains(text, "(ac3)") || Fennimar::contains(text, "(dts)"))) {
        return selected;
    }
    const auto language = bibliographicCode(languageOf(text));
    for (const std::string_view codec : {"ac3", "dts"}) {
        const auto found = std::ranges::find_if(entries, [&](const AudioEntry& entry) {
            return Fennimar::contains(entry.text, kSurroundMark) &&
                   bibliographicCode(languageOf(entry.text)) == language &&
                   codecOf(entry.text) == codec;
        });
        if (found != entries.end()) return static_cast<std::size_t>(found - entries.begin());
    }
    return {};
}

}  // namespace

std::optional<SurroundTrack> additionalSurroundTrack(std::span<const AudioEntry> entries,
                                                     std::size_t selected,
                                                     const ConversionSettings& settings) {
    if (settings.audio.conversionPreset != ConversionPreset::Compatible ||
        !settings.includeSurroundTrack) {
        return {};
    }
    const auto source = surroundSource(entries, selected);
    if (!source) return {};
    const bool isDTS = codecOf(entries[*source].text) == "dts";
    return SurroundTrack{.entry = *source,
                         .transcode = isDTS && settings.includeSurroundTrackTranscoded};
}

namespace {

/// "0:1" out of "[0:1]volume=1.50[out]", which makes the stream "[out]"; empty without a filter.
std::string_view filteredStream(const std::vector<std::string>& arguments) {
    const auto option = std::ranges::find(arguments, "-filter_complex");
    if (option == arguments.end() || std::next(option) == arguments.end()) return {};
    const auto begin = Fennimar::partAfter(*std::next(option), "[");
    return begin ? Fennimar::partBefore(*begin, "]") : std::string_view();
}

}  // namespace

std::vector<std::string> mappedStreams(const std::vector<std::string>& arguments) {
    std::vector<std::string> mapped;
    for (std::size_t i = 0; i + 1 < arguments.size(); ++i) {
        if (arguments[i] == "-map") mapped.push_back(arguments[i + 1]);
    }
    return mapped;
}

std::vector<std::optional<int>> sourceStreams(const std::vector<std::string>& arguments) {
    std::vector<std::optional<int>> sources;
    for (const auto& stream : mappedStreams(arguments)) {
        const std::string_view source =
            stream.starts_with('[') ? filteredStream(arguments) : std::string_view(stream);
        auto& index = sources.emplace_back();
        if (source.starts_with("0:")) index = Fennimar::leadingInteger(source.substr(2));
    }
    return sources;
}

namespace {

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

std::vector<std::string> subtitleInputArguments(const MKVFileInfo& file,
                                                const ConversionSettings& settings) {
    if (!file.subtitleFileURL) return {};
    std::vector<std::string> arguments;
    // Left to itself the converter would follow a list of other files in place of subtitles.
    if (const auto& demuxer = file.subtitleFormat.demuxer; !demuxer.empty()) {
        arguments = {"-f", demuxer};
    }
    if (auto encoding = subtitleEncoding(file.subtitleFormat, settings); !encoding.empty()) {
        arguments.insert(arguments.end(), {"-sub_charenc", std::move(encoding)});
    }
    arguments.insert(arguments.end(), {"-i", file.subtitleFileURL->native()});
    return arguments;
}

std::vector<std::string> subtitleMapArguments(const StreamPlan& plan) {
    std::vector<std::string> arguments;
    if (plan.externalSubtitle) arguments = {"-map", "1:0"};
    std::for_each(plan.subtitles.rbegin(), plan.subtitles.rend(), [&](int track) {
        arguments.insert(arguments.end(), {"-map", makeString("0:%i", track)});
    });
    return arguments;
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
