#include "conversion/output_check.h"

#include <algorithm>

#include "conversion/cue_count.h"
#include "conversion/output_tracks.h"
#include "conversion/source_removal.h"
#include "conversion/stream_plan.h"
#include "mp4/mp4_reader.h"
#include "support/localization.h"
#include "support/logging.h"
#include "support/make_string.h"
#include "support/paths.h"
#include "support/ports/translations.h"
#include "support/strings.h"

namespace reelvane {
namespace {

constexpr std::string_view kExternalSubtitle = "1:0";

/// The source's own index of its picture: only MP4 and QuickTime have one that counts pictures.
std::optional<Mp4Track> indexedPicture(const MKVFileInfo& record) {
    if (!readsEdits(record.demuxer) || !record.videoTrackID) return std::nullopt;
    const auto reading = readMp4(record.fileURL);
    const auto index = static_cast<std::size_t>(*record.videoTrackID);
    if (!reading.movie || index >= reading.movie->tracks.size()) return std::nullopt;
    const auto& track = reading.movie->tracks[index];
    return track.kind == Mp4TrackKind::Video ? std::optional(track) : std::nullopt;
}

bool isForcedByName(const std::filesystem::path& subtitle) {
    return Fennimar::lowercasedExtension(subtitle.stem()) == "forced";
}

/// Sets flags, languages and the length of a trimmed picture, and reads the file back once more, so
/// that what was proven stays proven.
Mp4Reading withTrackFields(const std::filesystem::path& output,
                           const std::filesystem::path& heldPath, Mp4Reading reading,
                           const std::set<std::size_t>& forced,
                           const std::vector<std::string>& languages,
                           const std::optional<Mp4Track>& sourcePicture) {
    auto patches = trackFlagPatches(*reading.movie, forced);
    const auto languageFields = languagePatches(*reading.movie, languages);
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

std::set<std::size_t> forcedSubtitles(const MKVFileInfo& record,
                                      const std::vector<std::string>& mapped) {
    std::set<std::size_t> forced;
    std::size_t subtitle = 0;
    for (const auto& stream : mapped) {
        const bool external = record.subtitleFileURL && stream == kExternalSubtitle;
        const auto number = Fennimar::partAfter(stream, "0:");
        const int index = number ? Fennimar::leadingInteger(*number) : -1;
        if (!external && std::ranges::count(record.subtitleTrackIDs, index) == 0) continue;
        if (external ? isForcedByName(*record.subtitleFileURL)
                     : std::ranges::count(record.forcedSubtitleTrackIDs, index) > 0) {
            forced.insert(subtitle);
        }
        ++subtitle;
    }
    return forced;
}

OutputCheck checkOutput(const Translations& translations, const MKVFileInfo& record,
                        const std::vector<std::string>& arguments, std::string_view jobOutput,
                        const std::filesystem::path& heldPath) {
    if (!record.destinationURL) return {.proof = {.problem = "has no destination"}};
    if (outputAdmitsFailure(jobOutput)) return {.proof = {.problem = "was not written to its end"}};
    const auto& output = *record.destinationURL;
    const auto mapped = mappedStreams(arguments);
    const OutputExpectation expectation{.mappedStreams = mapped.size(),
                                        .runtimeSeconds = record.runtimeSeconds,
                                        .sourcePicture = indexedPicture(record),
                                        .promisedPictures = record.promisedPictures,
                                        .promisedSeconds = record.promisedSeconds};
    auto reading = readMp4(heldPath);
    OutputCheck check{.proof = proveOutput(reading, expectation)};
    if (!check.proof.problem.empty()) return check;
    const auto languages = sourceLanguages(record, arguments);
    reading = withTrackFields(output, heldPath, std::move(reading), forcedSubtitles(record, mapped),
                              languages, expectation.sourcePicture);
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
    for (const auto& warning : record.warnings) {
        addNotes(check.notes, {{.kind = JobNote::Kind::Remark, .text = warning}});
    }
    const auto remarkOnLost = [&](const std::vector<std::string>& lost, std::string_view format) {
        if (lost.empty()) return;
        auto text = makeString(translations.localized(format), Fennimar::joined(lost, ", "));
        vn_log_level(LogNotice, "Info: %@ (%@)", text, output);
        addNotes(check.notes, {{.kind = JobNote::Kind::Remark, .text = std::move(text)}});
    };
    remarkOnLost(lostTitles(record, arguments, *reading.movie),
                 localizable("The titles of its tracks are not in the result: %@. Movies with the "
                             "extension mp4 carry them."));
    remarkOnLost(lostLanguages(languages),
                 localizable("The languages of some tracks are not in the result, because MP4 "
                             "files cannot name them: %@."));
    return check;
}

}  // namespace reelvane
