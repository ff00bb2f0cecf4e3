#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "conversion/conversion_settings.h"
#include "media/mkv_file_info.h"

namespace reelvane {

struct StreamPlan;

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

/// The second input, with its format where it is known and its encoding where
/// it has to be told; empty without an external file.
[[nodiscard]] std::vector<std::string> subtitleInputArguments(const MKVFileInfo& file,
                                                              const ConversionSettings& settings);

/// The maps of all text tracks: the external file's, then the embedded ones, last track first.
[[nodiscard]] std::vector<std::string> subtitleMapArguments(const StreamPlan& plan);

/// True when text tracks of the input itself go into the output.
[[nodiscard]] bool mapsEmbeddedSubtitles(const MKVFileInfo& file,
                                         const ConversionSettings& settings);

/// The settings as this input needs them. Correcting the cues' durations makes the converter drop
/// the last cue of every embedded text track, so it is left out where the input's packets carry
/// durations already.
[[nodiscard]] ConversionSettings withWholeSubtitles(const MKVFileInfo& file,
                                                    ConversionSettings settings);

}  // namespace reelvane
