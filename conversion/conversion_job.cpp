#include "conversion/conversion_job.h"

#include <utility>

#include "conversion/status_line.h"
#include "conversion/stream_plan.h"
#include "support/make_string.h"
#include "support/vantor.h"

namespace reelvane {

void NextStep::take(std::function<void()> step) {
    if (held_) {
        waiting_ = std::move(step);
    } else {
        step();
    }
}

void NextStep::release() {
    held_ = false;
    if (const auto step = std::exchange(waiting_, {})) step();
}

ConversionJob::ConversionJob(Vantor& vantor, Controller& controller, MKVFileInfo fileInfo,
                             std::size_t audioTrackIndex)
    : vantor_(vantor),
      controller_(controller),
      fileInfo_(std::move(fileInfo)),
      audioTrackIndex_(audioTrackIndex) {}

std::string ConversionJob::stateInfoString() const {
    return statusLine(vantor_.ports().translations, {.state = state(),
                                                     .audio = fileInfo_.audioTrackInformation,
                                                     .audioTrackIndex = audioTrackIndex_,
                                                     .remainingSeconds = remainingSeconds(),
                                                     .conversionSeconds = conversionSeconds()});
}

double ConversionJob::remainingSeconds() const {
    return remainingTime(run_.progress, elapsedSeconds());
}

std::optional<double> ConversionJob::timeLeft() const {
    if (state() != ConversionJobState::Converting || isBeingChecked()) return std::nullopt;
    return reelvane::timeLeft(run_.progress, elapsedSeconds());
}

double ConversionJob::conversionSeconds() const {
    return run_.started && run_.ended ? Fennimar::secondsBetween(*run_.started, *run_.ended) : 0;
}

double ConversionJob::elapsedSeconds() const {
    if (!run_.started) return 0;
    return Fennimar::secondsBetween(*run_.started, vantor_.ports().dispatcher.now());
}

Subscription ConversionJob::observe(std::function<void()> changed) {
    return observers_.add(std::move(changed));
}

void ConversionJob::phaseEntered() {
    if ((finishedOK() || finishedError()) && fileInfo_.destinationURL) {
        // What lies there is the user's, who may choose that place for another movie.
        controller_.outputs()->release(*fileInfo_.destinationURL);
    }
    observers_.notify();
}

void ConversionJob::tell(JobEvent::Kind kind, std::string_view title, std::string_view text) {
    controller_.jobEvent({.kind = kind, .title = std::string(title), .text = std::string(text)});
}

void ConversionJob::setSpeedInfoFromMethod(AudioMethod method) {
    fastmode_ = method == AudioMethodCopy;
}

void ConversionJob::presetSpeedInfo() {
    if (audioTrackIndex_ >= fileInfo_.audioTrackInformation.size()) return;
    const auto settings = controller_.conversionSettings();
    if (const auto method = mainAudioMethod(fileInfo_, audioTrackIndex_, settings.audio)) {
        setSpeedInfoFromMethod(*method);
    }
}

}  // namespace reelvane
