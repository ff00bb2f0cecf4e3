#include "conversion/job_notes.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <span>
#include <utility>

#include "support/localization.h"
#include "support/make_string.h"
#include "support/ports/translations.h"
#include "support/strings.h"

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

/// A stream of one of the converter's inputs.
struct InputStream {
    int input = 0;
    int index = 0;
};

/// The "0:2" that a text begins with.
std::optional<InputStream> streamAtBegin(std::string_view text) {
    InputStream stream;
    const auto* const end = text.data() + text.size();
    const auto input = std::from_chars(text.data(), end, stream.input);
    if (input.ec != std::errc{} || input.ptr == end || *input.ptr != ':') return std::nullopt;
    const auto index = std::from_chars(input.ptr + 1, end, stream.index);
    return index.ec == std::errc{} ? std::optional(stream) : std::nullopt;
}

bool isSubtitle(const MKVFileInfo& record, const InputStream& stream) {
    return stream.input != 0 || std::ranges::count(record.subtitleTrackIDs, stream.index) > 0;
}

/// Takes the messages on subtitles that could not be decoded out of a log, whose lines may follow
/// each other without an end, and answers which subtitles these are.
std::vector<InputStream> takeFaultySubtitles(const MKVFileInfo& record, std::string& log) {
    // Of ffmpeg 5.1 and of 7; other streams than subtitles have other words in place of the second.
    constexpr auto kBegins =
        std::to_array<std::string_view>({"Error while decoding stream #", "[sist#"});
    constexpr std::string_view kEnd = "Invalid data found when processing input";
    constexpr std::size_t kLongest = 300;
    std::vector<InputStream> faulty;
    for (const auto begin : kBegins) {
        std::size_t at = 0;
        while ((at = log.find(begin, at)) != std::string::npos) {
            const auto message = std::string_view(log).substr(at, kLongest);
            const auto stream = streamAtBegin(message.substr(begin.size()));
            const auto end = message.find(kEnd);
            if (!stream || !isSubtitle(record, *stream) || end == std::string_view::npos) {
                at += begin.size();
                continue;
            }
            faulty.push_back(*stream);
            log.erase(at, end + kEnd.size());
        }
    }
    return faulty;
}

std::string faultySubtitleText(const Translations& translations, const MKVFileInfo& record,
                               const InputStream& stream) {
    if (stream.input != 0 && record.subtitleFileURL) {
        const auto file = record.subtitleFileURL->filename().native();
        return makeString(translations.localized("Parts of the subtitle file %@ could not be read, "
                                                 "so some of its lines may be missing."),
                          Fennimar::validUtf8(file));
    }
    return makeString(translations.localized("Parts of the subtitle track #%i of %@ could not be "
                                             "read, so some of its lines may be missing."),
                      stream.index, Fennimar::validUtf8(record.fileName));
}

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

JobNotes doubtsOfLog(const Translations& translations, const MKVFileInfo& record,
                     std::string_view jobOutput) {
    JobNotes doubts;
    std::string log(jobOutput);
    for (const auto& stream : takeFaultySubtitles(record, log)) {
        addNotes(doubts, {{.text = faultySubtitleText(translations, record, stream)}});
    }
    const auto name = Fennimar::validUtf8(record.fileName);
    for (const auto& row : kLogRows) {
        if (!Fennimar::containsAny(log, row.words)) continue;
        doubts.push_back({.text = makeString(translations.localized(row.sentence), name)});
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
    if (proof.missedPicture > 0) {
        tell(localizable("The picture of %@ ends after %@, but should last %@. Please watch the "
                         "result."),
             formattedTimeFromTimeInterval(proof.pictureSeconds),
             formattedTimeFromTimeInterval(proof.missedPicture));
    }
    if (proof.lostPictures > 0) {
        const auto format = localizedForCount(
            translations, "%@ lost %lu of its pictures: the source may be damaged.",
            proof.lostPictures);
        doubts.push_back({.text = makeString(format, fileName, proof.lostPictures)});
    }
    return doubts;
}

JobNotes doubtsOfSound(const Translations& translations, std::string_view fileName,
                       std::span<const AudioTrack> tracks) {
    const auto unknown =
        std::ranges::count_if(tracks, [](const AudioTrack& track) { return !track.isKnown(); });
    if (unknown == 0) return {};
    if (unknown < std::ssize(tracks)) {
        const auto format = translations.localized(
            "%i of the audio tracks of %@ cannot be taken, because ffmpeg does not know the "
            "format.");
        return {{.kind = JobNote::Kind::Remark,
                 .text = makeString(format, static_cast<int>(unknown), fileName)}};
    }
    const auto format = translations.localized(
        "The sound of %@ was left out, because ffmpeg does not know its format.");
    return {{.text = makeString(format, fileName)}};
}

}  // namespace reelvane
