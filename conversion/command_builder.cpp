#include "conversion/command_builder.h"

#include <algorithm>
#include <optional>
#include <span>

#include "conversion/audio_method.h"
#include "conversion/container_arguments.h"
#include "conversion/subtitle_arguments.h"
#include "conversion/surround_track.h"
#include "support/make_string.h"

namespace reelvane {

namespace {

using Arguments = std::vector<std::string>;

constexpr int kHighestSamplingRate = 48000;

/// What is decided about the main audio track.
struct MainAudio {
    std::string_view codec{};
    int streamIndex = 0;
    int hz = 0;
    AudioMethod method = AudioMethodCopy;
};

void append(Arguments& list, const Arguments& more) {
    list.insert(list.end(), more.begin(), more.end());
}

std::string mapOf(int streamIndex) {
    return makeString("0:%i", streamIndex);
}

/// A preference that is no place in the list reads as its registered default.
std::string bitrate(std::span<const std::string_view> list, int index) {
    constexpr std::size_t kRegisteredDefault = 1;
    const bool valid = index >= 0 && static_cast<std::size_t>(index) < list.size();
    return std::string(list[valid ? static_cast<std::size_t>(index) : kRegisteredDefault]);
}

/// The filter's factor; absent when the volume stays as it is.
std::optional<double> volumeFactor(AudioMethod method, float audioVolume) {
    if (method == AudioMethodCopy || (audioVolume >= 99 && audioVolume <= 101)) return {};
    return static_cast<double>(audioVolume) / 100;
}

MainAudio mainAudioOf(const CommandInput& input) {
    const auto& entry = input.file.audioTrackInformation.at(input.audioTrackIndex);
    const auto codec = codecOf(entry.text);
    return {
        .codec = codec,
        .streamIndex = streamIndexOf(entry.text),
        .hz = entry.hz,
        .method = calculateConversionMethod(codec, isSurround(entry.text), input.settings.audio)};
}

Arguments channelArguments(AudioMethod method, const ConversionSettings& settings) {
    switch (method) {
        case AudioMethodAAC:
            return {"-ac", "2", "-b:a", bitrate(kAACBitrates, settings.aacBitrate)};
        case AudioMethodAC3Stereo:
            return {"-ac", "2", "-b:a", bitrate(kAC3StereoBitrates, settings.ac3StereoBitrate)};
        case AudioMethodAC3Surround:
            return {"-ac", "6", "-b:a", bitrate(kAC3SurroundBitrates, settings.ac3SurroundBitrate)};
        case AudioMethodCopy:
            break;
    }
    return {};
}

std::string codecArgument(AudioMethod method) {
    if (method == AudioMethodCopy) return "copy";
    return method == AudioMethodAAC ? "aac" : "ac3";
}

/// From "-acodec" to all that shapes the main track.
Arguments mainAudioArguments(const MainAudio& audio, const ConversionSettings& settings) {
    Arguments list{"-acodec", codecArgument(audio.method)};
    if (const auto factor = volumeFactor(audio.method, settings.audioVolume)) {
        append(list, {"-filter_complex",
                      makeString("[0:%i]volume=%.2f[out]", audio.streamIndex, *factor)});
    }
    if (audio.method != AudioMethodCopy && audio.hz > kHighestSamplingRate) {
        append(list, {"-ar", makeString("%i", kHighestSamplingRate)});
    }
    append(list, channelArguments(audio.method, settings));
    return list;
}

Arguments surroundArguments(const SurroundTrack& surround, const ConversionSettings& settings) {
    if (!surround.transcode) return {"-c:a:1", "copy"};
    // "-ac:2" names the third output stream, which is this track: video, main audio, this.
    return {"-c:a:1", "ac3",    "-ac:2",
            "6",      "-b:a:1", bitrate(kAC3SurroundBitrates, settings.ac3SurroundBitrate)};
}

/// From "-progress" to the output path.
Arguments outputArguments(const CommandInput& input,
                          std::span<const std::string_view> copiedAudioCodecs) {
    const auto output = input.file.destinationURL.value_or(std::filesystem::path());
    Arguments list{"-progress", input.progressFile.native(), "-loglevel", "warning", "-y"};
    append(list,
           containerArguments({.output = output,
                               .videoCodec = input.file.videoCodec,
                               .copiedAudioCodecs = copiedAudioCodecs,
                               .produceStreamableFile = input.settings.produceStreamableFiles}));
    list.push_back(output.native());
    return list;
}

Arguments withoutAudio(const CommandInput& input) {
    Arguments list{"-i",
                   input.file.fileURL.native(),
                   "-stats",
                   "-map",
                   mapOf(input.file.videoTrackID.value_or(0)),
                   "-scodec",
                   "mov_text",
                   "-vcodec",
                   "copy"};
    append(list, outputArguments(input, {}));
    return list;
}

}  // namespace

std::vector<std::string> buildArguments(const CommandInput& input) {
    const auto& file = input.file;
    const auto& settings = input.settings;
    if (file.audioTrackInformation.empty()) return withoutAudio(input);

    const auto audio = mainAudioOf(input);
    const auto surround =
        additionalSurroundTrack(file.audioTrackInformation, input.audioTrackIndex, settings);
    const bool filtered = volumeFactor(audio.method, settings.audioVolume).has_value();

    Arguments list;
    if (settings.fixSubtitleDuration) list.emplace_back("-fix_sub_duration");
    append(list, {"-i", file.fileURL.native()});
    append(list, subtitleInputArguments(file, settings));
    append(list, {"-stats", "-map", mapOf(file.videoTrackID.value_or(0))});
    append(list, {"-map", filtered ? "[out]" : mapOf(audio.streamIndex)});
    if (surround) append(list, {"-map", mapOf(surround->streamIndex)});
    append(list, subtitleMapArguments(file, settings));
    if (input.needsFixup) append(list, {"-absf", "aac_adtstoasc"});
    append(list, {"-scodec", "mov_text", "-vcodec", "copy"});
    append(list, mainAudioArguments(audio, settings));
    if (surround) append(list, surroundArguments(*surround, settings));

    std::vector<std::string_view> copied;
    if (audio.method == AudioMethodCopy) copied.push_back(audio.codec);
    if (surround && !surround->transcode) copied.push_back(surround->codec);
    append(list, outputArguments(input, copied));
    return list;
}

}  // namespace reelvane
