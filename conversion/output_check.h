#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "conversion/job_notes.h"
#include "conversion/output_lease.h"
#include "conversion/output_proof.h"
#include "conversion/stream_plan.h"
#include "media/mkv_file_info.h"
#include "support/held_file.h"

namespace reelvane {

class Translations;

/// What reading a finished output back has shown.
struct OutputCheck {
    bool isGone = false;  ///< deleted, or another file was put in its place; nothing else is set
    OutputProof proof{};
    /// "12 s, 3 tracks, 1.43 GB, verified", translated; without the last word where there is a
    /// doubt. Set when all notes are there.
    std::string details{};
    JobNotes notes{};  ///< of a whole output: doubts first, remarks last
    /// Cues of each text track, in the order of the tracks.
    std::vector<std::uint64_t> textCounts{};
    std::optional<FileVersion> identity{};  ///< of the output as it was proven; or not asked for
    bool onDisk = false;  ///< the device has it for sure; not asked unless it matters
};

/// Reads the output of a run back that ended with status 0 and, when it is whole, sets its track
/// flags in place. `heldPath` opens the very file that was made (see RunFiles). Some milliseconds,
/// whatever the size of the file.
[[nodiscard]] OutputCheck checkOutput(const Translations& translations, const MKVFileInfo& record,
                                      const std::vector<OutputTrack>& planned,
                                      std::string_view jobOutput,
                                      const std::filesystem::path& heldPath);

}  // namespace reelvane
