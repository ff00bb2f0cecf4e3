#include "conversion/conversion_job.h"

#include <utility>

#include "conversion/status_line.h"
#include "conversion/stream_plan.h"
#include "support/make_string.h"
#include "support/vantor.h"

namespace reelvane {

ConversionJob::ConversionJob(Vantor& vantor, Controller& controller, MKVFileInfo fileInfo,
                             std::size_t audioTrackIndex)
    : vantor_(vantor),
      controller_(controller),
      fileInfo_(std::move(fileInfo)),
      audioTrackIndex_(audioTrackIndex),
      errands_(vantor.ports().dispatcher) {}

ConversionJob::~ConversionJob() {
    leaving_.request_stop();
}

std::string ConversionJob::stateInfoString() const {
    return statusLine(vantor_.ports().translations, {.state = state_,
                                                     .audio = fileInfo_.audioTrackInformation,
                                                     .audioTrackIndex = audioTrackIndex_,
                                                     .remainingSeconds = remainingSeconds(),
                                                     .conversionSeconds = conversionSeconds()});
}

double ConversionJob::remainingSeconds() const {
    return remainingTime(progress_, elapsedSeconds());
}

std::optional<double> ConversionJob::timeLeft() const {
    if (state_ != ConversionJobState::Converting || isBeingChecked()) return std::nullopt;
    return reelvane::timeLeft(progress_, elapsedSeconds());
}

double ConversionJob::conversionSeconds() const {
    if (state_ != ConversionJobState::Finished && state_ != ConversionJobState::Failed) return 0;
    if (!startDate_) return 0;
    return stopDate_ ? Fennimar::secondsBetween(*startDate_, *stopDate_) : elapsedSeconds();
}

double ConversionJob::elapsedSeconds() const {
    return startDate_ ? Fennimar::secondsBetween(*startDate_, vantor_.ports().dispatcher.now()) : 0;
}

Subscription ConversionJob::observe(std::function<void()> changed) {
    return observers_.add(std::move(changed));
}

void ConversionJob::setState(ConversionJobState state) {
    const bool ends = state == ConversionJobState::Finished || state == ConversionJobState::Failed;
    if (ends && fileInfo_.destinationURL) {
        // What lies there is the user's, who may choose that place for another movie.
        controller_.outputs()->release(*fileInfo_.destinationURL);
    }
    state_ = state;
    observers_.notify();
}

void ConversionJob::setProgress(double percent) {
    progress_ = percent;
    observers_.notify();
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
