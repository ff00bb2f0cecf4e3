#include "conversion/output_check.h"

#include <set>

#include "conversion/cue_count.h"
#include "conversion/output_tracks.h"
#include "conversion/source_removal.h"
#include "mp4/mp4_reader.h"
#include "support/localization.h"
#include "support/logging.h"
#include "support/make_string.h"
#include "support/paths.h"
#include "support/ports/translations.h"
#include "support/strings.h"

namespace reelvane {
namespace {

/// The source's own index of its picture: only MP4 and QuickTime have one that counts pictures.
std::optional<Mp4Track> indexedPicture(const MKVFileInfo& record) {
    if (!readsEdits(record.demuxer) || !record.videoTrackID) return std::nullopt;
    const auto reading = readMp4(record.fileURL);
    const auto index = static_cast<std::size_t>(*record.videoTrackID);
    if (!reading.movie || index >= reading.movie->tracks.size()) return std::nullopt;
    const auto& track = reading.movie->tracks[index];
    return track.kind == Mp4TrackKind::Video ? std::optional(track) : std::nullopt;
}

/// Which of the output's subtitle tracks, counted from 0, are forced.
std::set<std::size_t> forcedSubtitles(const std::vector<OutputTrack>& planned) {
    std::set<std::size_t> forced;
    std::size_t subtitle = 0;
    for (const auto& track : planned) {
        if (track.kind != OutputTrack::Kind::Subtitle) continue;
        if (track.forced) forced.insert(subtitle);
        ++subtitle;
    }
    return forced;
}

/// Sets flags, languages and the length of a trimmed picture, and reads the file back once more, so
/// that what was proven stays proven.
Mp4Reading withTrackFields(const std::filesystem::path& output,
                           const std::filesystem::path& heldPath, Mp4Reading reading,
                           const std::vector<OutputTrack>& planned,
                           const std::optional<Mp4Track>& sourcePicture) {
    auto patches = trackFlagPatches(*reading.movie, forcedSubtitles(planned));
    const auto languageFields = languagePatches(*reading.movie, planned);
    patches.insert(patches.end(), languageFields.begin(), languageFields.end());
    const auto trims =
        sourcePicture ? trimPatches(*reading.movie, *sourcePicture) : std::vector<FieldPatch>();
    patches.insert(patches.end(), trims.begin(), trims.end());
    if (patches.empty()) return reading;
    if (!applyPatches(heldPath, patches)) {
        vn_log_level(LogError, "Error: the track flags of %@ could not be set", output);
    }
    return readMp4(heldPath);
}

}  // namespace

OutputCheck checkOutput(const Translations& translations, const MKVFileInfo& record,
                        const std::vector<OutputTrack>& planned, std::string_view jobOutput,
                        const std::filesystem::path& heldPath) {
    if (!record.destinationURL) return {.proof = {.problem = "has no destination"}};
    if (outputAdmitsFailure(jobOutput)) return {.proof = {.problem = "was not written to its end"}};
    const auto& output = *record.destinationURL;
    const OutputExpectation expectation{.mappedStreams = planned.size(),
                                        .runtimeSeconds = record.runtimeSeconds,
                                        .sourcePicture = indexedPicture(record),
                                        .promisedPictures = record.promisedPictures,
                                        .promisedSeconds = record.promisedSeconds};
    auto reading = readMp4(heldPath);
    OutputCheck check{.proof = proveOutput(reading, expectation)};
    if (!check.proof.problem.empty()) return check;
    reading =
        withTrackFields(output, heldPath, std::move(reading), planned, expectation.sourcePicture);
    check.proof = proveOutput(reading, expectation);
    if (!check.proof.problem.empty()) return check;
    const auto name = Fennimar::validUtf8(record.fileName);
    check.notes = doubtsOfProof(translations, name, check.proof, record.runtimeSeconds);
    addNotes(check.notes, doubtsOfLog(translations, record, jobOutput));
    addNotes(check.notes, doubtsOfSound(translations, name, record.audioTrackInformation));
    check.textCounts = textCounts(*reading.movie);
    if (readsEdits(record.demuxer) && partsOfMp4(record.fileURL) > 1) {
        addNotes(check.notes, {doubtOfCut(translations, name)});
    }
    if (record.hasOtherPictures) {
        auto text = makeString(
            translations.localized("%@ holds another picture track, which is not in the result."),
            name);
        addNotes(check.notes, {{.kind = JobNote::Kind::Remark, .text = std::move(text)}});
    }
    for (const auto& warning : record.warnings) {
        addNotes(check.notes, {{.kind = JobNote::Kind::Remark, .text = warning}});
    }
    const auto remarkOnLost = [&](const std::vector<std::string>& lost, std::string_view format) {
        if (lost.empty()) return;
        auto text = makeString(translations.localized(format), Fennimar::joined(lost, ", "));
        vn_log_level(LogNotice, "Info: %@ (%@)", text, output);
        addNotes(check.notes, {{.kind = JobNote::Kind::Remark, .text = std::move(text)}});
    };
    remarkOnLost(lostTitles(planned, *reading.movie),
                 localizable("The titles of its tracks are not in the result: %@. Movies with the "
                             "extension mp4 carry them."));
    remarkOnLost(lostLanguages(planned),
                 localizable("The languages of some tracks are not in the result, because MP4 "
                             "files cannot name them: %@."));
    return check;
}

}  // namespace reelvane
