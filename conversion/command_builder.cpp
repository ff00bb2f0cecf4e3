#include "conversion/command_builder.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <span>
#include <string_view>
#include <utility>

#include "conversion/progress_file.h"
#include "conversion/stream_plan.h"
#include "support/make_string.h"
#include "support/paths.h"

namespace reelvane {

namespace {

using Arguments = std::vector<std::string>;

void append(Arguments& list, const Arguments& more) {
    list.insert(list.end(), more.begin(), more.end());
}

std::string mapOf(int streamIndex) {
    return makeString("0:%i", streamIndex);
}

/// The stream that an audio track is made of.
int sourceOf(const CommandInput& input, const PlannedAudio& audio) {
    return input.file.audioTrackInformation[audio.entry].stream;
}

std::string codecArgument(AudioMethod method) {
    if (method == AudioMethodCopy) return "copy";
    return method == AudioMethodAAC ? "aac" : "ac3";
}

std::string channelsOf(AudioMethod method) {
    return method == AudioMethodAC3Surround ? "6" : "2";
}

/// From "-acodec" to all that shapes the main track.
Arguments mainAudioArguments(const PlannedAudio& audio, int streamIndex) {
    Arguments list{"-acodec", codecArgument(audio.method)};
    if (audio.volume) {
        append(list, {"-filter_complex",
                      makeString("[0:%i]volume=%.2f[out]", streamIndex, *audio.volume)});
    }
    if (audio.samplingRate) append(list, {"-ar", makeString("%i", *audio.samplingRate)});
    if (audio.method == AudioMethodCopy) return list;
    append(list, {"-ac", channelsOf(audio.method), "-b:a", std::string(audio.bitrate)});
    return list;
}

Arguments surroundArguments(const PlannedAudio& audio) {
    Arguments list{"-c:a:1", codecArgument(audio.method)};
    if (audio.method == AudioMethodCopy) return list;
    // "-ac:2" names the third output stream, which is this track: video, main audio, this.
    append(list, {"-ac:2", channelsOf(audio.method), "-b:a:1", std::string(audio.bitrate)});
    return list;
}

/// The codecs of the audio tracks that go over as they are.
std::vector<std::string_view> copiedAudioCodecs(const CommandInput& input, const StreamPlan& plan) {
    std::vector<std::string_view> codecs;
    for (const auto& audio : {plan.mainAudio, plan.surround}) {
        if (!audio || audio->method != AudioMethodCopy) continue;
        codecs.push_back(input.file.audioTrackInformation[audio->entry].codec);
    }
    return codecs;
}

/// From "-progress" to the output path.
Arguments outputArguments(const CommandInput& input, const StreamPlan& plan) {
    const auto output = input.file.destinationURL.value_or(std::filesystem::path());
    const auto copied = copiedAudioCodecs(input, plan);
    Arguments list{"-progress", input.progressFile.native(), "-loglevel", "warning", "-y"};
    append(list,
           containerArguments({.output = output,
                               .videoCodec = input.file.videoCodec,
                               .namesColour = input.file.namesColour,
                               .hasDolbyVision = input.file.dolbyVisionProfile.has_value(),
                               .copiedAudioCodecs = copied,
                               .produceStreamableFile = input.settings.produceStreamableFiles}));
    list.push_back(output.native());
    return list;
}

/// The second input, with its format where it is known and its encoding where it has to be told;
/// empty without an external file.
Arguments subtitleInputArguments(const MKVFileInfo& file, const ConversionSettings& settings) {
    if (!file.subtitleFileURL) return {};
    Arguments arguments;
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

/// The input files and the streams that are taken from them.
Arguments inputArguments(const CommandInput& input, const StreamPlan& plan) {
    Arguments list;
    if (plan.mainAudio && input.settings.fixSubtitleDuration) {
        list.emplace_back("-fix_sub_duration");
    }
    append(list, {"-i", input.file.fileURL.native()});
    if (plan.externalSubtitle) append(list, subtitleInputArguments(input.file, input.settings));
    list.emplace_back("-stats");
    bool isFiltered = plan.mainAudio && plan.mainAudio->volume;
    for (const auto& track : outputTracks(plan, input.file)) {
        const bool isAudio = track.kind == OutputTrack::Kind::Audio;
        const bool fromFilter = isAudio && std::exchange(isFiltered, false);
        append(list, {"-map", fromFilter ? "[out]" : track.stream ? mapOf(*track.stream) : "1:0"});
    }
    return list;
}

}  // namespace

std::vector<std::string> buildArguments(const CommandInput& input) {
    const auto plan = planStreams(input.file, input.audioTrackIndex, input.settings);
    auto list = inputArguments(input, plan);
    if (plan.mainAudio && input.needsFixup) append(list, {"-absf", "aac_adtstoasc"});
    append(list, {"-scodec", "mov_text", "-vcodec", "copy"});
    if (const auto& audio = plan.mainAudio) {
        append(list, mainAudioArguments(*audio, sourceOf(input, *audio)));
    }
    if (plan.surround) append(list, surroundArguments(*plan.surround));
    append(list, outputArguments(input, plan));
    return list;
}

namespace {

constexpr auto kM4VVideoCodecs = std::to_array<std::string_view>({"h264", "mpeg4"});
constexpr auto kM4VAudioCodecs = std::to_array<std::string_view>({"aac", "he-aac", "ac3", "alac"});

bool needsMP4Muxer(const ContainerFacts& facts) {
    if (Fennimar::lowercasedExtension(facts.output) != "m4v") return false;
    if (facts.namesColour || facts.hasDolbyVision) return true;
    if (std::ranges::find(kM4VVideoCodecs, facts.videoCodec) == kM4VVideoCodecs.end()) return true;
    return !std::ranges::all_of(facts.copiedAudioCodecs, [](std::string_view codec) {
        return std::ranges::find(kM4VAudioCodecs, codec) != kM4VAudioCodecs.end();
    });
}

}  // namespace

std::vector<std::string> containerArguments(const ContainerFacts& facts) {
    std::vector<std::string> arguments;
    if (facts.videoCodec == "hevc") arguments.insert(arguments.end(), {"-tag:v", "hvc1"});
    if (facts.hasDolbyVision) arguments.insert(arguments.end(), {"-strict", "unofficial"});
    if (needsMP4Muxer(facts)) arguments.insert(arguments.end(), {"-f", "mp4"});
    if (facts.produceStreamableFile) {
        arguments.insert(arguments.end(), {"-movflags", "faststart"});
    }
    return arguments;
}

PlannedCommand plannedCommand(const Translations& translations, const MKVFileInfo& file,
                              std::size_t audioTrackIndex, const ConversionSettings& preferences,
                              const std::filesystem::path& progressFolder) {
    auto problem = audioMethodProblem(translations, file, audioTrackIndex, preferences.audio);
    if (!problem.empty()) return {.problem = std::move(problem)};
    return {.arguments =
                buildArguments({.file = file,
                                .audioTrackIndex = audioTrackIndex,
                                .settings = withWholeSubtitles(file, preferences),
                                .progressFile = freeProgressPath(progressFolder, file.fileName)})};
}

}  // namespace reelvane
