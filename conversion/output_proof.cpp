#include "conversion/output_proof.h"

#include <algorithm>
#include <array>

#include "conversion/output_tracks.h"
#include "support/make_string.h"
#include "support/ports/translations.h"
#include "support/strings.h"

namespace reelvane {
namespace {

constexpr double kToleratedSeconds = 2;
constexpr double kToleratedShare = 0.01;
constexpr double kToleratedBesideIndex = 0.5;  // seconds
constexpr double kToleratedForRemoval = 0.5;   // seconds

/// How long picture and sound last. Chapters and subtitles span the whole source even where the
/// movie itself was cut short, so the movie's own duration counts only where no track has one.
double playTime(const Mp4Movie& movie) {
    double seconds = 0;
    for (const auto& track : movie.tracks) {
        if (track.kind == Mp4TrackKind::Video || track.kind == Mp4TrackKind::Audio) {
            seconds = std::max(seconds, track.seconds);
        }
    }
    return seconds > 0 ? seconds : movie.seconds;
}

const Mp4Track* pictureOf(const Mp4Movie& movie) {
    const auto picture = std::ranges::find(movie.tracks, Mp4TrackKind::Video, &Mp4Track::kind);
    return picture == movie.tracks.end() ? nullptr : &*picture;
}

double toleranceOf(double seconds) {
    return std::max(kToleratedSeconds, seconds * kToleratedShare);
}

void compareLength(double promised, OutputProof& proof) {
    if (promised <= 0) return;
    const double tolerated = toleranceOf(promised);
    proof.isShort = promised - proof.seconds > kToleratedForRemoval;
    proof.endsEarly = promised - proof.seconds > tolerated;
    proof.endsLate = proof.seconds - promised > tolerated;
    proof.isCutShort = proof.endsEarly && proof.seconds < promised / 2;
    if (proof.isCutShort) proof.problem = "ends before half of its source";
}

/// The source's index counts what it leaves out of what is played; then fewer pictures are none
/// lost.
void comparePicture(const Mp4Track& source, const Mp4Track& output, OutputProof& proof) {
    if (output.sampleCount < source.sampleCount && !isTrimmed(source)) {
        proof.lostPictures = source.sampleCount - output.sampleCount;
    }
    proof.endsLate =
        proof.endsLate || output.sampleCount > source.sampleCount ||
        (source.seconds > 0 && output.seconds - source.seconds > kToleratedBesideIndex);
}

/// A picture lasts as long as the movie, unless its source says that it never did.
void comparePictureLength(const Mp4Track& picture, const OutputExpectation& expectation,
                          OutputProof& proof) {
    proof.pictureSeconds = picture.seconds;
    double promised = proof.seconds;
    if (expectation.sourcePicture && expectation.sourcePicture->seconds > 0) {
        promised = expectation.sourcePicture->seconds;
    } else if (expectation.promisedSeconds) {
        promised = std::min(promised, double(*expectation.promisedSeconds));
    }
    const bool endsEarly =
        picture.seconds > 0 && promised - picture.seconds > toleranceOf(promised);
    if (endsEarly) proof.missedPicture = promised;
}

}  // namespace

bool outputAdmitsFailure(std::string_view jobOutput) {
    static constexpr auto kAdmissions = std::to_array<std::string_view>(
        {"Error writing trailer", "Error closing file", "No space left on device"});
    return Fennimar::containsAny(jobOutput, kAdmissions);
}

OutputProof proveOutput(const Mp4Reading& reading, const OutputExpectation& expectation) {
    if (!reading.movie) return {.problem = reading.problem};
    OutputProof proof{.seconds = playTime(*reading.movie), .tracks = reading.movie->tracks.size()};
    const auto streams =
        static_cast<std::size_t>(std::ranges::count_if(reading.movie->tracks, holdsStream));
    if (streams < expectation.mappedStreams) {
        proof.problem = makeString("has %lu of %lu tracks", streams, expectation.mappedStreams);
        return proof;
    }
    compareLength(expectation.runtimeSeconds.value_or(0), proof);
    const auto* const picture = pictureOf(*reading.movie);
    if (picture == nullptr) return proof;
    if (expectation.sourcePicture) {
        comparePicture(*expectation.sourcePicture, *picture, proof);
    } else if (picture->sampleCount < expectation.promisedPictures.value_or(0)) {
        proof.lostPictures = *expectation.promisedPictures - picture->sampleCount;
    }
    comparePictureLength(*picture, expectation, proof);
    return proof;
}

std::string contentText(const Translations& translations, double seconds, std::size_t tracks,
                        std::uint64_t fileSize) {
    constexpr double kMinute = 60;
    const auto time =
        seconds < kMinute ? makeString("%.0f s", seconds) : formattedTimeFromTimeInterval(seconds);
    const auto format = translations.localized("%@, %lu track, %@", "%@, %lu tracks, %@", tracks);
    return makeString(format, time, tracks, fileSizeText(fileSize));
}

std::string proofText(const Translations& translations, const OutputProof& proof,
                      std::uint64_t fileSize) {
    return makeString(translations.localized("%@, verified"),
                      contentText(translations, proof.seconds, proof.tracks, fileSize));
}

}  // namespace reelvane
