#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "conversion/conversion_settings.h"
#include "media/mkv_file_info.h"

namespace reelvane {

class Translations;

/// What becomes of one audio stream of the input.
struct PlannedAudio {
    std::size_t entry = 0;  ///< index into the record's audioTrackInformation
    AudioMethod method = AudioMethodCopy;
    std::string_view bitrate{};         ///< "128k"; empty when it is copied
    std::optional<int> samplingRate{};  ///< to be brought down to; absent: as it is
    std::optional<double> volume{};     ///< factor; absent: as it is
};

/// Which streams of an input go into the output, and as what. Decided here alone: the argument list
/// says it to the converter, the track plan to the user, the output's tracks to what checks it.
struct StreamPlan {
    int video = 0;                            ///< always copied
    std::optional<PlannedAudio> mainAudio{};  ///< absent: a silent movie, which is picture alone
    std::optional<PlannedAudio> surround{};   ///< a second audio track, right after the main one
    std::vector<int> subtitles{};             ///< embedded text tracks, in report order
    bool externalSubtitle = false;            ///< the record's subtitle file is taken in
};

/// The plan for a record and the chosen audio track. Pure. The chosen audio method must be one of
/// the four: see audioMethodProblem.
[[nodiscard]] StreamPlan planStreams(const MKVFileInfo& file, std::size_t audioTrackIndex,
                                     const ConversionSettings& settings);

/// One track of an output, and what it is made of.
struct OutputTrack {
    enum class Kind { Video, Audio, Subtitle };
    Kind kind = Kind::Video;
    std::optional<int> stream{};  ///< of the input; absent: it comes from the subtitle file
    std::string language{};       ///< as the report has it; empty: it names none
    std::string title{};          ///< empty: it has none
    bool forced = false;          ///< of a subtitle: it shows where others are off

    [[nodiscard]] bool operator==(const OutputTrack&) const = default;
};

/// The tracks of the output that a plan makes, in its order: the picture, the sound, the subtitle
/// file, which is forced when its name ends in ".forced" before its extension, and the embedded
/// text tracks, the last one first.
[[nodiscard]] std::vector<OutputTrack> outputTracks(const StreamPlan& plan,
                                                    const MKVFileInfo& file);

/// How a track is treated. Codec names are compared exactly. A custom handling is returned as it is
/// stored and may lie outside the four methods: see audioMethodProblem.
[[nodiscard]] AudioMethod calculateConversionMethod(std::string_view codec, bool audioIsSurround,
                                                    const AudioSettings& settings);

/// The same for the chosen track of a movie; absent for a movie without sound, and for a track
/// whose codec ffmpeg does not know.
[[nodiscard]] std::optional<AudioMethod> mainAudioMethod(const MKVFileInfo& file,
                                                         std::size_t audioTrackIndex,
                                                         const AudioSettings& settings);

/// What a user is told whose preferences ask for a number that is none of the methods for this
/// track, in his language; empty when all is well.
[[nodiscard]] std::string audioMethodProblem(const Translations& translations,
                                             const MKVFileInfo& file, std::size_t audioTrackIndex,
                                             const AudioSettings& settings);

/// A second audio track that keeps the surround sound beside the converted main track.
struct SurroundTrack {
    std::size_t entry = 0;   ///< its source: index into the audio tracks
    bool transcode = false;  ///< to six-channel AC-3; otherwise it is copied
};

/// The second track of a conversion with the compatible preset: the selected track itself when it
/// is surround AC-3 or DTS, else the first such track of the same language, AC-3 before DTS. Absent
/// when there is none or the preferences ask for none.
[[nodiscard]] std::optional<SurroundTrack> additionalSurroundTrack(
    std::span<const AudioTrack> tracks, std::size_t selected, const ConversionSettings& settings);

/// The encodings of external subtitle files, in the order of the preference's menu. The first
/// stands for the encoding that is found in each file; the second is the menu's separator.
inline constexpr auto kSubtitleEncodings =
    std::to_array<std::string_view>({"None",        "",
                                     "UTF-8",       "UTF-16",
                                     "CP874",       "CP936",
                                     "CP1250",      "CP1251",
                                     "CP1252",      "CP1253",
                                     "CP1254",      "CP1255",
                                     "CP1256",      "CP1257",
                                     "CP1258",      "LATIN1",
                                     "LATIN2",      "LATIN3",
                                     "LATIN4",      "LATIN5",
                                     "LATIN6",      "LATIN7",
                                     "LATIN8",      "ISO-8859-1",
                                     "ISO-8859-2",  "ISO-8859-3",
                                     "ISO-8859-4",  "ISO-8859-5",
                                     "ISO-8859-6",  "ISO-8859-7",
                                     "ISO-8859-8",  "ISO-8859-9",
                                     "ISO-8859-10", "ISO-8859-11",
                                     "ISO-8859-12", "ISO-8859-13",
                                     "ISO-8859-14", "ISO-8859-15",
                                     "ISO-8859-16"});
static_assert(kSubtitleEncodings.size() == 39);

/// False for the separator and for ISO-8859-12, which never came into use: the number of neither is
/// given to another encoding.
[[nodiscard]] constexpr bool isSubtitleEncoding(std::size_t index) {
    return index < kSubtitleEncodings.size() && !kSubtitleEncodings[index].empty() &&
           kSubtitleEncodings[index] != "ISO-8859-12";
}

/// True when the preference leaves the encoding of a subtitle file to be found in the file.
[[nodiscard]] bool findsSubtitleEncoding(const ConversionSettings& settings);

/// The encoding that the converter is told of; empty: it needs no word.
[[nodiscard]] std::string subtitleEncoding(const SubtitleFormat& format,
                                           const ConversionSettings& settings);

/// True when text tracks of the input itself go into the output.
[[nodiscard]] bool mapsEmbeddedSubtitles(const MKVFileInfo& file,
                                         const ConversionSettings& settings);

/// The settings as this input needs them. Correcting the cues' durations makes the converter drop
/// the last cue of every embedded text track, so it is left out where the input's packets carry
/// durations already.
[[nodiscard]] ConversionSettings withWholeSubtitles(const MKVFileInfo& file,
                                                    ConversionSettings settings);

}  // namespace reelvane
