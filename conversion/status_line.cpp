#include "conversion/status_line.h"

#include <algorithm>
#include <string_view>

#include "support/make_string.h"
#include "support/ports/translations.h"
#include "support/strings.h"

namespace reelvane {

namespace {

constexpr double kLongestShown = 18000;

/// What stands after the stream's number, with its leading space: " eng (ac3) [5.1]".
std::string trackText(const AudioTrack& track) {
    return std::string(Fennimar::partAfter(text(track), ":").value_or(""));
}

std::string withAudio(const Translations& translations, std::string line,
                      const StatusFacts& facts) {
    if (facts.audioTrackIndex >= facts.audio.size()) return line;
    line = makeString(translations.localized("%@   Audio: %@"), line,
                      trackText(facts.audio[facts.audioTrackIndex]));
    if (facts.audio.size() < 2) return line;
    // Only the last of the other tracks is named: the line has little room.
    const auto last = facts.audio.size() - 1;
    const auto named = facts.audioTrackIndex == last ? last - 1 : last;
    return makeString(translations.localized("%@ (Discarded: %@)"), line,
                      trackText(facts.audio[named]));
}

}  // namespace

double remainingTime(double progress, double elapsed) {
    const double remaining = (100 / progress) * elapsed - elapsed;
    if (remaining > kLongestShown) return kLongestShown;
    if (remaining < 0) return 0;
    return remaining;
}

std::optional<double> timeLeft(double progress, double elapsed) {
    if (progress <= 0) return std::nullopt;
    return std::max(elapsed / progress * (100 - progress), 0.0);
}

std::string statusLine(const Translations& translations, const StatusFacts& facts) {
    const auto word = kConversionJobStateWords[static_cast<std::size_t>(facts.state)];
    auto base = makeString(translations.localized("Status: %@"), translations.localized(word));
    switch (facts.state) {
        case ConversionJobState::Failed:
            return makeString(translations.localized(
                                  "%@   Click the arrow at the right to get more information."),
                              base);
        case ConversionJobState::Finished:
            return makeString(translations.localized("%@ [Conversion took: %@]"), base,
                              formattedTimeFromTimeInterval(facts.conversionSeconds));
        case ConversionJobState::Converting:
            return makeString(translations.localized("%@   ETA: %@"),
                              withAudio(translations, base, facts),
                              formattedTimeFromTimeInterval(facts.remainingSeconds));
        case ConversionJobState::Queued:
        case ConversionJobState::Paused:
            break;
    }
    return base;
}

}  // namespace reelvane
