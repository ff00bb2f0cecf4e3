#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "conversion/job_notes.h"
#include "conversion/stream_plan.h"
#include "media/mkv_file_info.h"

namespace reelvane {

class ProcessLauncher;
class Translations;
struct Mp4Movie;

/// One text track of an output, as its source has it.
struct SourceTrack {
    std::string stream{};  ///< "0:2" of the movie, "1:0": the subtitle file
    std::string codec{};   ///< "subrip"
    /// When each cue begins and ends, in seconds, in the order of the source.
    struct Cue {
        double begin = 0;
        double end = 0;
        std::size_t bytes = 0;
    };
    std::vector<Cue> cues{};
};

/// The streams that the output's text tracks are made of, "0:4" or "1:0", in their order.
[[nodiscard]] std::vector<std::string> textStreams(const std::vector<OutputTrack>& planned);

/// What the converter is run with to list the cues of these streams: of the movie all is read, but
/// nothing is decoded.
[[nodiscard]] std::vector<std::string> cueListArguments(const MKVFileInfo& record,
                                                        const std::vector<std::string>& streams);

/// Reads such a list; absent when it is none of so many tracks.
[[nodiscard]] std::optional<std::vector<SourceTrack>> parseCueList(
    std::string_view list, const std::vector<std::string>& streams);

/// True when a cue shows nothing: it has no text but marks of its format.
[[nodiscard]] bool isBlankCue(std::string_view codec, std::string_view cue);

/// What is run, and the request that ends it.
struct CueTools {
    ProcessLauncher* launcher = nullptr;
    std::filesystem::path ffmpeg{};
    std::stop_token stop{};
};

/// How many cues each text track of an output holds.
[[nodiscard]] std::vector<std::uint64_t> textCounts(const Mp4Movie& output);

/// Compares the text tracks of a finished output with their sources, and says what did not arrive:
/// cues that are missing, cues that another one hides, cues that end early because the next one
/// begins. `arrived` holds the counts of the output. Blocks for as long as the sources take to be
/// read; any thread.
[[nodiscard]] JobNotes cueNotes(const Translations& translations, const MKVFileInfo& record,
                                const std::vector<OutputTrack>& planned,
                                const std::vector<std::uint64_t>& arrived, const CueTools& tools);

}  // namespace reelvane
