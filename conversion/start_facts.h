#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

#include "conversion/free_space.h"
#include "conversion/output_lease.h"
#include "media/mkv_file_info.h"

namespace reelvane {

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

}  // namespace reelvane
