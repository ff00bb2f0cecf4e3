#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>

#include "conversion/packet_comparison.h"
#include "support/dispatch.h"
#include "support/errands.h"
#include "support/held_file.h"
#include "support/observable.h"

namespace reelvane {

class Translations;
class Vantor;

/// A converted source that is to go, and what was made of it.
struct SourceRemoval {
    PictureFile source{};
    std::optional<FileVersion> sourceIdentity{};  ///< as it was when it was looked into
    PictureFile output{};
    std::optional<FileVersion> outputIdentity{};  ///< as it was proven
    bool toTrash = true;                          ///< else it is deleted for good
};

/// What has become of a source.
struct SourceFate {
    enum class Kind {
        Removed,
        Doubtful,    ///< kept: something speaks against the output, and the notes say what
        NoLength,    ///< kept: how long it is nobody knows, so nobody knows whether it is all there
        Short,       ///< kept: it says that it is longer, so it may have been cut
        NotOnDisk,   ///< kept: the output's disk does not confirm that it has the output
        Changed,     ///< kept: it is not the file any more that was looked into
        OutputGone,  ///< kept: the output is not the file any more that was proven
        NotCompared,  ///< kept: one of them could not be read to its end
        Different,    ///< kept: the packets of the picture are not the same
        NotRemoved    ///< it could not be removed, and `problem` says why
    };
    Kind kind = Kind::Removed;
    std::string problem{};
};

/// One sentence in the user's language; empty for a source that was removed.
[[nodiscard]] std::string sourceFateText(const Translations& translations,
                                         std::string_view fileName, const SourceFate& fate,
                                         bool toTrash);

/// Compares the picture in both files and removes the source when it is the same. Owned by the job,
/// and its end before the answer leaves the source where it is. Main thread only; the files are
/// read in the background, one comparison of the program at a time.
class SourceRemover {
public:
    /// `then` is told what has become of the source, and may end this object.
    SourceRemover(Vantor& vantor, Turns& turns, SourceRemoval removal,
                  std::function<void(const SourceFate&)> then);
    SourceRemover(const SourceRemover&) = delete;
    SourceRemover& operator=(const SourceRemover&) = delete;
    SourceRemover(SourceRemover&&) = delete;
    SourceRemover& operator=(SourceRemover&&) = delete;
    ~SourceRemover() { stop_.request_stop(); }

private:
    void begin();

    Vantor& vantor_;
    SourceRemoval removal_;
    std::function<void(const SourceFate&)> then_;
    std::stop_source stop_;
    Errands errands_;
    Subscription turn_;
};

}  // namespace reelvane
