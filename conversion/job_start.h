#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "conversion/output_lease.h"
#include "media/mkv_file_info.h"
#include "support/localization.h"

namespace reelvane {

/// What a volume says of itself, in bytes.
struct VolumeFacts {
    std::uint64_t freeSize = 0;                      ///< for this user
    std::optional<std::uint64_t> maximumFileSize{};  ///< absent: none reported
};

/// What a user is told when a volume takes no file of the needed size.
inline constexpr std::string_view kNoLargeFiles =
    localizable("Your target disk doesn't support large files.");

/// Absent when the folder's file system cannot be asked.
[[nodiscard]] std::optional<VolumeFacts> volumeFacts(const std::filesystem::path& folder);

/// Why a file of this size should not be written there; empty when it may. Pure.
[[nodiscard]] std::string_view spaceProblem(std::uint64_t needed, const VolumeFacts& volume);

class ConverterVersion;
class Vantor;

/// What a start asks the disks, by value: it is asked in the background.
struct StartQuestion {
    MKVFileInfo record{};
    std::shared_ptr<OutputLease::Keeper> outputs{};
    std::vector<std::filesystem::path> progressFolders{};  ///< the first that can be written serves
    std::optional<int> copiedAAC{};                        ///< the stream of a copied AAC track
    std::shared_ptr<ConverterVersion> version{};
    std::stop_token unwanted{};  ///< the job has left the list
};

/// What the disks say of a job that is to start, and what was made there for it.
struct StartFacts {
    bool inputPresent = false;
    bool writesOverInput = false;         ///< the destination names the input itself
    std::optional<VolumeFacts> volume{};  ///< of the output; absent: it could not be asked
    OutputLease::Taken output{};          ///< asked for only where the input is there to be read
    bool needsFixup = false;              ///< of the copied AAC track
};

/// Takes the output's place, where the input is there and is not that very place. Nothing that lies
/// at a path is touched. A disk that does not answer holds this up, so it runs in the background.
[[nodiscard]] StartFacts prepareStart(Vantor& vantor, const StartQuestion& question);

class ConverterVersion;
class Vantor;

/// True for converters that insert the "aac_adtstoasc" filter by themselves: all since 4.0, and
/// those whose version names no release, since they are newer still.
[[nodiscard]] bool insertsFilters(std::string_view version);

/// The arguments of a one-second trial conversion that copies this AAC track.
[[nodiscard]] std::vector<std::string> fixupTrialArguments(const MKVFileInfo& file,
                                                           int audioStreamIndex,
                                                           const std::filesystem::path& output);

/// True when the converter asks for that filter to copy this AAC track into an MP4. Where its
/// version does not tell, one second of the movie is converted on trial, into a file without a
/// name, and for ten seconds at most. Blocks that long: in the background.
[[nodiscard]] bool needFixup(Vantor& vantor, ConverterVersion& version, const MKVFileInfo& file,
                             int audioStreamIndex);

}  // namespace reelvane
