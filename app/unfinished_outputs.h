#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>

#include "app/unfinished_output.h"

namespace reelvane {

class Vantor;

/// Remembers in the preferences which outputs are being written, so that a start of the program can
/// delete what a crashed one has left behind. Several programs share the list: each edits only its
/// own entries, or those of a process that is gone. Main thread only.
class UnfinishedOutputs {
public:
    explicit UnfinishedOutputs(Vantor& vantor) : vantor_(vantor) {}

    /// Deletes the partial outputs and the progress files of processes that are gone for sure (see
    /// isGone), as far as they are the very files that those made: somebody may have put another
    /// file there meanwhile. An output that reads as a whole movie stays, too: its program may have
    /// ended between finishing it and saying so. What lies on a disk that does not answer is left
    /// for the next start.
    void cleanUp();

    /// A conversion begins to write these files, which it has made. On disk a moment later.
    /// `outputMark`: see birthMarkOf.
    void begin(const std::filesystem::path& output, const std::string& outputMark,
               const std::filesystem::path& progressFile);
    /// The output is finished or deleted; nothing happens where none was begun.
    void settle(const std::filesystem::path& output);
    /// Deletes what this process has begun, for it ends here and now. Files alone are touched.
    void abandon();

private:
    void cleanUpOf(const std::filesystem::path& output);

    Vantor& vantor_;
    std::map<std::filesystem::path, UnfinishedOutput> begun_;
    // Shared only so that an answer of the disks after this object's end can tell.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace reelvane
