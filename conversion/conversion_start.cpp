// How a job starts: the disks are asked in the background, then the converter is launched.

#include <utility>

#include "conversion/audio_method.h"
#include "conversion/command_builder.h"
#include "conversion/conversion_job.h"
#include "conversion/fixup_trial.h"
#include "conversion/subtitle_arguments.h"
#include "support/alerts.h"
#include "support/bundle.h"
#include "support/dispatch.h"
#include "support/logging.h"
#include "support/make_string.h"
#include "support/ports/main_bundle.h"
#include "support/strings.h"
#include "support/vantor.h"

namespace reelvane {

void ConversionJob::start() {
    if (isStarting()) return;
    takeSleepAssertion();
    audioFile_.clear();
    aacFile_.clear();
    jobOutput_.clear();
    startProblem_.clear();
    outputCheck_ = {};
    startWanted_ = true;
    observers_.notify();
    if (!attempt_) askDisks();  // else the one that is under way is taken up
}

void ConversionJob::askDisks() {
    attempt_ = std::make_shared<StartAttempt>(fileInfo_, controller_.outputPlaces());
    dispatch_async_back(vantor_, [this, attempt = attempt_, &vantor = vantor_] {
        attempt->run();
        dispatch_async_main(vantor, [this, attempt] {
            if (attempt->isAbandoned()) return;
            if (!startWanted_) {
                undoAttempt();
            } else if (const auto facts = attempt->take()) {
                prepared(*facts);
            }
        });
    });
}

void ConversionJob::undoAttempt() {
    dispatch_async_back(vantor_, [this, attempt = attempt_, &vantor = vantor_] {
        attempt->undo();
        dispatch_async_main(vantor, [this, attempt] {
            if (attempt->isAbandoned()) return;
            attempt_.reset();
            if (startWanted_) askDisks();
        });
    });
}

void ConversionJob::leaveAttempt() {
    startWanted_ = false;
    const auto attempt = std::exchange(attempt_, {});
    const auto made = attempt ? attempt->abandon() : std::nullopt;
    if (!made || !made->destinationURL) return;
    if (made->outputClaim == OutputClaim::Reserved) {
        controller_.discardOutput(*made->destinationURL, fileInfo_.fileURL);
    }
    if (made->destinationURL != fileInfo_.destinationURL) {
        controller_.outputPlaces().release(*made->destinationURL);
    }
}

void ConversionJob::prepared(const StartFacts& facts) {
    attempt_.reset();
    startWanted_ = false;
    observers_.notify();
    if (!checkInput(facts)) return;
    takeOutput(facts);
    if (!makeProgressFile(facts)) return;
    const auto settings = withWholeSubtitles(fileInfo_, controller_.conversionSettings());
    const auto method = mainAudioMethod(fileInfo_, audioTrackIndex_, settings.audio);
    if (method) {
        setSpeedInfoFromMethod(*method);
        if (!checkAudio(settings.audio) || !checkFreeSpace(facts.volume)) return;
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

bool ConversionJob::checkInput(const StartFacts& facts) {
    if (!facts.inputPresent) {
        // The state first: an alert's own loop may let others look at this job, or take it away.
        jobOutput_ = "USER_REMOVED";
        finishedError_ = true;
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
    if (facts.writesOverInput) {
        refuseStart(makeString(localized(vantor_,
                                         "The movie %@ can't be replaced by its own conversion. "
                                         "Please choose another destination."),
                               Fennimar::validUtf8(fileInfo_.fileName)));
        return false;
    }
    return true;
}

void ConversionJob::takeOutput(const StartFacts& facts) {
    if (!facts.destinationURL) return;
    const auto before = std::exchange(fileInfo_.destinationURL, facts.destinationURL);
    if (before != facts.destinationURL) controller_.outputPlaces().release(*before);
    fileInfo_.outputClaim = facts.outputClaim;
    ownsOutput_ = facts.outputClaim == OutputClaim::Reserved;
}

bool ConversionJob::makeProgressFile(const StartFacts& facts) {
    auto made = ProgressFile::create(vantor_, fileInfo_.fileName);
    if (!made) {
        refuseStart(makeString(
            localized(vantor_,
                      "The conversion of %@ can't be started because neither your documents "
                      "folder nor a folder for temporary files can be written. Please check the "
                      "free space and the permissions there and try again."),
            Fennimar::validUtf8(fileInfo_.fileName)));
        return false;
    }
    progressFile_ = std::move(*made);
    if (fileInfo_.destinationURL) {
        controller_.outputBegun(*fileInfo_.destinationURL, facts.outputMark, progressFile_.path());
    }
    return true;
}

bool ConversionJob::checkAudio(const AudioSettings& settings) {
    const auto problem =
        audioMethodProblem(vantor_.ports().translations, fileInfo_, audioTrackIndex_, settings);
    if (!problem.empty()) refuseStart(problem);
    return problem.empty();
}

bool ConversionJob::checkFreeSpace(const std::optional<VolumeFacts>& volume) {
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

bool ConversionJob::needsFixup(std::optional<AudioMethod> method) {
    if (method != AudioMethodCopy) return false;
    const auto& entry = fileInfo_.audioTrackInformation.at(audioTrackIndex_).text;
    if (codecOf(entry) != "aac") return false;
    ownsOutput_ = true;  // the trial writes there
    return needFixup(vantor_.ports().processLauncher,
                     vantor_.ports().mainBundle.pathForResource("ffmpeg"), fileInfo_,
                     streamIndexOf(entry));
}

}  // namespace reelvane
