#include "conversion/output_check.h"

#include <algorithm>

#include "conversion/mapped_streams.h"
#include "conversion/mp4_movie.h"
#include "conversion/track_flags.h"
#include "conversion/track_languages.h"
#include "conversion/track_titles.h"
#include "support/logging.h"
#include "support/paths.h"
#include "support/strings.h"

namespace reelvane {
namespace {

constexpr std::string_view kExternalSubtitle = "1:0";

bool isForcedByName(const std::filesystem::path& subtitle) {
    return Fennimar::lowercasedExtension(subtitle.stem()) == "forced";
}

/// Sets flags and languages and reads the file back once more, so that what was proven stays
/// proven.
Mp4Reading withTrackFields(const std::filesystem::path& output, Mp4Reading reading,
                           const std::set<std::size_t>& forced,
                           const std::vector<std::string>& languages) {
    auto patches = trackFlagPatches(*reading.movie, forced);
    const auto languageFields = languagePatches(*reading.movie, languages);
    patches.insert(patches.end(), languageFields.begin(), languageFields.end());
    for (const auto& loss : lostLanguages(languages)) {
        vn_log_level(LogWarning, "Warning: %@ (%@)", loss, output);
    }
    if (patches.empty()) return reading;
    if (!applyPatches(output, patches)) {
        vn_log_level(LogError, "Error: the track flags of %@ could not be set", output);
    }
    return readMp4(output);
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
                        const std::vector<std::string>& arguments, std::string_view jobOutput) {
    if (!record.destinationURL) return {.proof = {.problem = "has no destination"}};
    if (outputAdmitsFailure(jobOutput)) return {.proof = {.problem = "was not written to its end"}};
    const auto& output = *record.destinationURL;
    const auto mapped = mappedStreams(arguments);
    const OutputExpectation expectation{.mappedStreams = mapped.size(),
                                        .runtimeSeconds = record.runtimeSeconds};
    auto reading = readMp4(output);
    OutputCheck check{.proof = proveOutput(reading, expectation)};
    if (!check.proof.problem.empty()) return check;
    reading = withTrackFields(output, std::move(reading), forcedSubtitles(record, mapped),
                              sourceLanguages(record, arguments));
    check.proof = proveOutput(reading, expectation);
    if (!check.proof.problem.empty()) return check;
    check.details = proofText(translations, check.proof, Fennimar::fileSize(output));
    const auto titles = lostTitles(record, arguments, *reading.movie);
    if (!titles.empty()) {
        vn_log_level(LogNotice, "Info: %@ does not carry the titles of its tracks: %@", output,
                     Fennimar::joined(titles, ", "));
    }
    return check;
}

}  // namespace reelvane
