#include "conversion/conversion_job.h"

#include <string_view>
#include <system_error>

#include "conversion/audio_method.h"
#include "conversion/command_builder.h"
#include "conversion/fixup_trial.h"
#include "conversion/free_space.h"
#include "conversion/status_line.h"
#include "conversion/subtitle_arguments.h"
#include "support/alerts.h"
#include "support/bundle.h"
#include "support/logging.h"
#include "support/make_string.h"
#include "support/ports/main_bundle.h"
#include "support/strings.h"
#include "support/time_text.h"
#include "support/vantor.h"

namespace reelvane {

namespace {

bool isPresentFile(const std::filesystem::path& path) {
    std::error_code ignored;
    const auto status = std::filesystem::status(path, ignored);  // of what a link leads to
    return std::filesystem::exists(status) && !std::filesystem::is_directory(status);
}

}  // namespace

ConversionJob::ConversionJob(Vantor& vantor, Controller& controller, MKVFileInfo fileInfo,
                             std::size_t audioTrackIndex)
    : vantor_(vantor),
      controller_(controller),
      fileInfo_(std::move(fileInfo)),
      audioTrackIndex_(audioTrackIndex) {}

ConversionJob::~ConversionJob() = default;

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

void ConversionJob::start() {
    takeSleepAssertion();
    audioFile_.clear();
    aacFile_.clear();
    jobOutput_.clear();
    startProblem_.clear();
    outputCheck_ = {};
    if (!checkInput()) return;
    if (!makeFiles()) return;
    const auto settings = withWholeSubtitles(fileInfo_, controller_.conversionSettings());
    const auto method = mainAudioMethod(fileInfo_, audioTrackIndex_, settings.audio);
    if (method) {
        setSpeedInfoFromMethod(*method);
        if (!checkAudio(settings.audio) || !checkFreeSpace()) return;
    }
    if (const auto& subtitle = fileInfo_.subtitleFileURL) {
        vn_log_level(LogNotice, "Info: adding subtitles from file %@", *subtitle);
    }
    arguments_ = buildArguments({.file = fileInfo_,
                                 .audioTrackIndex = audioTrackIndex_,
                                 .settings = settings,
                                 .progressFile = progressFile_.path(),
                                 .needsFixup = needsFixup(method)});
    arguments_.shrink_to_fit();  // they are kept as long as the job is listed
    runSettings_ = settings;
    launch();
}

bool ConversionJob::checkInput() {
    if (!isPresentFile(fileInfo_.fileURL)) {
        // The state first: an alert's own loop may let others look at this job, or take it away.
        jobOutput_ = "USER_REMOVED";
        finishedError_ = true;
        deleteReservation();
        const auto name = Fennimar::validUtf8(fileInfo_.fileURL.filename().native());
        auto& vantor = vantor_;
        setState(ConversionJobState::Failed);
        alert_apptitled(vantor,
                        makeString(localized(vantor,
                                             "It seems you've removed the file %@ or unmounted "
                                             "it's volume so conversion can't proceed."),
                                   name),
                        "OK");
        return false;
    }
    if (writesOverInput()) {
        refuseStart(makeString(localized(vantor_,
                                         "The movie %@ can't be replaced by its own conversion. "
                                         "Please choose another destination."),
                               Fennimar::validUtf8(fileInfo_.fileName)));
        return false;
    }
    return true;
}

bool ConversionJob::checkAudio(const AudioSettings& settings) {
    const auto problem =
        audioMethodProblem(vantor_.ports().translations, fileInfo_, audioTrackIndex_, settings);
    if (!problem.empty()) refuseStart(problem);
    return problem.empty();
}

bool ConversionJob::checkFreeSpace() {
    if (!fileInfo_.destinationURL) return true;
    const auto volume = volumeFacts(fileInfo_.destinationURL->parent_path());
    // What cannot be asked is left to the converter, which says what is wrong there.
    if (!volume) return true;
    const auto problem = spaceProblem(fileInfo_.fileSize, *volume);
    if (problem.empty()) return true;
    progressFile_.remove();
    deleteReservation();
    settleOutput();
    alert_apptitled(vantor_, problem, "OK");
    return false;
}

bool ConversionJob::needsFixup(std::optional<AudioMethod> method) const {
    if (method != AudioMethodCopy) return false;
    const auto& entry = fileInfo_.audioTrackInformation.at(audioTrackIndex_).text;
    if (codecOf(entry) != "aac") return false;
    return needFixup(vantor_.ports().processLauncher,
                     vantor_.ports().mainBundle.pathForResource("ffmpeg"), fileInfo_,
                     streamIndexOf(entry));
}

}  // namespace reelvane
