#include "conversion/job_notes.h"

#include <algorithm>
#include <array>
#include <span>

#include "support/bundle.h"
#include "support/make_string.h"
#include "support/ports/translations.h"
#include "support/strings.h"
#include "support/time_text.h"

namespace reelvane {
namespace {

// Words of ffmpeg 5.1 to 8: of its protocols and of the readers of the accepted containers.
constexpr auto kReadErrors = std::to_array<std::string_view>(
    {"Read error", "Input/output error", "Stale file handle", "Connection timed out",
     "File ended prematurely", "partial file", "Truncating packet"});
constexpr auto kDamage = std::to_array<std::string_view>(
    {"invalid as first byte of an EBML number", "exceeds containing master element",
     "could not find sync byte", "Packet corrupt", "corrupt input packet", "corrupt decoded frame",
     "PES packet size mismatch", "Invalid NAL unit size", "missing picture in access unit",
     "Error splitting the input into NAL units", "Error while decoding stream",
     "Error submitting packet to decoder", "Invalid data found when processing input"});
constexpr auto kAlteredTimes = std::to_array<std::string_view>(
    {"Non-monotonous DTS", "Non-monotonic DTS", "replacing by guess", "Timestamps are unset"});

struct LogRow {
    std::span<const std::string_view> words;
    std::string_view sentence;
};

constexpr auto kLogRows = std::to_array<LogRow>({
    {kReadErrors, localizable("%@ could not be read without errors, so parts of it may be missing. "
                              "Please check the disk that it lies on.")},
    {kDamage, localizable("%@ is damaged in places, so parts of it may be missing or faulty.")},
    {kAlteredTimes, localizable("Times in %@ are out of order and had to be altered, so picture "
                                "and sound may not fit together. Please watch the result.")},
});

}  // namespace

void addNotes(JobNotes& notes, JobNotes more) {
    for (auto& note : more) {
        if (std::ranges::find(notes, note.text, &JobNote::text) == notes.end()) {
            notes.push_back(std::move(note));
        }
    }
}

bool hasDoubt(const JobNotes& notes) {
    return std::ranges::find(notes, JobNote::Kind::Doubt, &JobNote::kind) != notes.end();
}

std::string warningText(const JobNotes& notes) {
    std::string text;
    for (const auto& note : notes) {
        if (note.kind == JobNote::Kind::Remark) continue;
        if (!text.empty()) text += ' ';
        text += note.text;
    }
    return text;
}

JobNotes doubtsOfLog(const Translations& translations, std::string_view fileName,
                     std::string_view jobOutput) {
    JobNotes doubts;
    for (const auto& row : kLogRows) {
        if (!Fennimar::containsAny(jobOutput, row.words)) continue;
        doubts.push_back({.text = makeString(translations.localized(row.sentence), fileName)});
    }
    return doubts;
}

bool blamesSource(const OutputProof& proof, std::string_view jobOutput) {
    if (outputAdmitsFailure(jobOutput)) return false;
    return proof.isCutShort || Fennimar::containsAny(jobOutput, kReadErrors) ||
           Fennimar::containsAny(jobOutput, kDamage);
}

JobNote doubtOfCut(const Translations& translations, std::string_view fileName) {
    return {.text = makeString(
                translations.localized("%@ was cut, and what was cut out may be seen again. Please "
                                       "export it first with the program that it was cut with."),
                fileName)};
}

JobNotes doubtsOfProof(const Translations& translations, std::string_view fileName,
                       const OutputProof& proof, std::optional<int> runtimeSeconds) {
    JobNotes doubts;
    const auto tell = [&](std::string_view format, auto... values) {
        doubts.push_back({.text = makeString(translations.localized(format), fileName, values...)});
    };
    if (proof.endsEarly) {
        tell(localizable("%@ ended after %@ of %@: the source may be damaged."),
             formattedTimeFromTimeInterval(proof.seconds),
             formattedTimeFromTimeInterval(runtimeSeconds.value_or(0)));
    }
    if (proof.endsLate) {
        tell(
            localizable("%@ became longer than it was, so parts of it may be seen twice or too "
                        "late. Please watch the result."));
    }
    if (proof.lostPictures > 0) {
        tell(localizable("%@ lost %lu of its pictures: the source may be damaged."),
             proof.lostPictures);
    }
    return doubts;
}

JobNotes doubtsOfSound(const Translations& translations, std::string_view fileName,
                       std::span<const AudioEntry> tracks) {
    const bool isUnknown = std::ranges::all_of(
        tracks, [](const AudioEntry& entry) { return hasUnknownCodec(entry.text); });
    if (tracks.empty() || !isUnknown) return {};
    const auto format = translations.localized(
        "The sound of %@ was left out, because ffmpeg does not know its format.");
    return {{.text = makeString(format, fileName)}};
}

}  // namespace reelvane
