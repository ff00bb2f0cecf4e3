#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "support/dispatch.h"
#include "support/errands.h"
#include "support/held_file.h"
#include "support/observable.h"

namespace reelvane {

class ProcessLauncher;

/// One movie's picture as it lies in a file.
struct PictureFile {
    std::filesystem::path path{};
    std::string stream{};   ///< as "-map" takes it: "0:1"
    std::string codec{};    ///< "h264", as a report names it
    bool hasEdits = false;  ///< MP4 and QuickTime can leave packets out of what is played
};

/// All of a picture's packets together.
struct PictureDigest {
    std::string hash{};
    std::size_t packets = 0;

    friend bool operator==(const PictureDigest&, const PictureDigest&) = default;
};

/// Whether the demuxer of a report, "mov,mp4,m4a,3gp,3g2,mj2", reads files with edit lists.
[[nodiscard]] bool readsEdits(std::string_view demuxer);

/// What makes the converter hash every packet of the picture, those that are never played included.
/// Transport streams and MP4 wrap the units of H.264 and HEVC differently, so these are unwrapped
/// first; the delimiters between pictures, which say nothing, are left out.
[[nodiscard]] std::vector<std::string> hashArguments(const PictureFile& picture);

/// Reads what such a run printed; absent when it is not all there.
[[nodiscard]] std::optional<PictureDigest> digestInOutput(std::string_view printed);

/// Reads a whole file at the lowest priority; absent when it could not be read without an error, or
/// when it was stopped. Blocks; any thread.
[[nodiscard]] std::optional<PictureDigest> digestOf(ProcessLauncher& launcher,
                                                    const std::filesystem::path& ffmpeg,
                                                    const PictureFile& picture,
                                                    const std::stop_token& stop);

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
        Doubtful,  ///< kept: something speaks against the output, and the notes say what
        NoLength,  ///< kept: how long it is nobody knows, so nobody knows whether it is all there
        Short,     ///< kept: it says that it is longer, so it may have been cut
        OtherPicture,  ///< kept: it holds another picture track, which no output takes
        NotOnDisk,     ///< kept: the output's disk does not confirm that it has the output
        Changed,       ///< kept: it is not the file any more that was looked into
        OutputGone,    ///< kept: the output is not the file any more that was proven
        NotCompared,   ///< kept: one of them could not be read to its end
        Different,     ///< kept: the packets of the picture are not the same
        NotRemoved     ///< it could not be removed, and `problem` says why
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
