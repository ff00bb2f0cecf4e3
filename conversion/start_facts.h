#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "conversion/free_space.h"
#include "media/mkv_file_info.h"

namespace reelvane {

/// Who gets which output path. Any thread.
struct OutputPlaces {
    /// Makes the record's output path its own, or gives it another one beside it. Asks the disk.
    std::function<void(MKVFileInfo&)> claim{};
    /// Nobody else gets this path until it is released as often as it was held.
    std::function<void(const std::filesystem::path&)> hold{};
    std::function<void(const std::filesystem::path&)> release{};
};

/// What the disks say of a job that is to start, and what was made there for it.
struct StartFacts {
    bool inputPresent = false;
    bool writesOverInput = false;  ///< the destination names the input itself
    std::optional<std::filesystem::path> destinationURL{};  ///< as claimed
    OutputClaim outputClaim = OutputClaim::None;
    std::string outputMark{};             ///< see birthMarkOf; empty: none could be had
    std::optional<VolumeFacts> volume{};  ///< of the output; absent: it could not be asked
};

/// Takes the output's place, where the input is there and is not that very place: whatever lies at
/// a path that the user chose goes. A disk that does not answer holds this up, so it runs in the
/// background.
/// `isWanted` is asked before anything there is touched.
[[nodiscard]] StartFacts prepareStart(MKVFileInfo record,
                                      const std::function<void(MKVFileInfo&)>& claim,
                                      const std::function<bool()>& isWanted);

/// Deletes an output. The source is never touched, however the output came to name it.
void deleteUnlessSource(const std::filesystem::path& output, const std::filesystem::path& source);

}  // namespace reelvane
