#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "conversion/output_proof.h"
#include "media/mkv_file_info.h"

namespace reelvane {

class Translations;

/// One thing that the user should know of a Finished job: a whole sentence in his language.
struct JobNote {
    enum class Kind {
        Doubt,       ///< the output may not be all that its source is: amber, and the source stays
        SourceKept,  ///< why a source is still there that was to be removed: amber
        Remark       ///< nothing is wrong: what was left out as planned, where the result lies
    };
    Kind kind = Kind::Doubt;
    std::string text{};
};

/// In the order in which they are told; every sentence once.
using JobNotes = std::vector<JobNote>;

/// Appends what is not there yet.
void addNotes(JobNotes& notes, JobNotes more);

[[nodiscard]] bool hasDoubt(const JobNotes& notes);

/// What is told in amber, in one text: all but the remarks. Empty: nothing is.
[[nodiscard]] std::string warningText(const JobNotes& notes);

/// What the converter's log of a run that ended with status 0 says against its output: errors of
/// reading, damage of the source or of its subtitles alone, times that were altered.
[[nodiscard]] JobNotes doubtsOfLog(const Translations& translations, const MKVFileInfo& record,
                                   std::string_view jobOutput);

/// Whether a run that left no whole output failed because of what it read.
[[nodiscard]] bool blamesSource(const OutputProof& proof, std::string_view jobOutput);

/// A source that was cut: "this movie was cut; export it first".
[[nodiscard]] JobNote doubtOfCut(const Translations& translations, std::string_view fileName);

/// What reading the output back says against it.
[[nodiscard]] JobNotes doubtsOfProof(const Translations& translations, std::string_view fileName,
                                     const OutputProof& proof, std::optional<int> runtimeSeconds);

/// That the source has sound and the output none, because ffmpeg knows no track's format; of some
/// tracks only it is a remark.
[[nodiscard]] JobNotes doubtsOfSound(const Translations& translations, std::string_view fileName,
                                     std::span<const AudioTrack> tracks);

}  // namespace reelvane
