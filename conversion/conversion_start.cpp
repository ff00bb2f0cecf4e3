// How a job starts: the disks are asked in the background, then the converter is launched.

#include <system_error>
#include <utility>

#include "conversion/command_builder.h"
#include "conversion/conversion_job.h"
#include "conversion/stream_plan.h"
#include "support/alerts.h"
#include "support/dispatch.h"
#include "support/localization.h"
#include "support/logging.h"
#include "support/make_string.h"
#include "support/strings.h"
#include "support/vantor.h"

namespace reelvane {

void ConversionJob::start() {
    if (isStarting()) return;
    takeSleepAssertion();
    audioFile_.clear();
    aacFile_.clear();
    log_ = {};
    problem_.clear();
    outputCheck_ = {};
    startWanted_ = true;
    observers_.notify();
    if (!asking_) askDisks();  // else what is under way is taken up
}

void ConversionJob::askDisks() {
    asking_ = true;
    std::error_code none;
    const StartQuestion question{
        .record = fileInfo_,
        .outputs = controller_.outputs(),
        .progressFolders = {vantor_.docDir(), std::filesystem::temp_directory_path(none)},
        .copiedAAC = copiedAAC(),
        .version = controller_.converterVersion(),
        .unwanted = leaving_.get_token()};
    errands_.run([question, &vantor = vantor_] { return prepareStart(vantor, question); },
                 [this](StartFacts facts) {
                     if (startWanted_) {
                         asking_ = false;
                         prepared(std::move(facts));
                     } else {
                         undoStart(std::move(facts.output.lease));
                     }
                 });
}

void ConversionJob::undoStart(OutputLease made) {
    // Shared, because work can be copied and a lease can not.
    const auto undone = std::make_shared<OutputLease>(std::move(made));
    errands_.run([undone] { undone->end(); },
                 [this] {
                     asking_ = false;
                     if (startWanted_) askDisks();
                 });
}

void ConversionJob::prepared(StartFacts facts) {
    startWanted_ = false;
    observers_.notify();
    if (!checkInput(facts) || !takeOutput(facts.output)) return;
    const auto settings = withWholeSubtitles(fileInfo_, controller_.conversionSettings());
    const auto method = mainAudioMethod(fileInfo_, audioTrackIndex_, settings.audio);
    if (method) {
        setSpeedInfoFromMethod(*method);
        if (!checkAudio(settings.audio) || !checkFreeSpace(facts.volume)) return;
    }
    // A movie without sound goes without it.
    if (const auto& subtitle = fileInfo_.subtitleFileURL; subtitle && method) {
        vn_log_level(LogNotice, "Info: adding subtitles from file %@", *subtitle);
    }
    auto written = fileInfo_;
    written.destinationURL = lease_.files()->workPath();
    arguments_ = buildArguments({.file = written,
                                 .audioTrackIndex = audioTrackIndex_,
                                 .settings = settings,
                                 .progressFile = lease_.files()->progressPath(),
                                 .needsFixup = facts.needsFixup && method == AudioMethodCopy});
    plan_ = planStreams(fileInfo_, audioTrackIndex_, settings);
    arguments_.shrink_to_fit();  // they are kept as long as the job is listed
    runSettings_ = settings;
    launch();
}

bool ConversionJob::checkInput(const StartFacts& facts) {
    if (!facts.inputPresent) {
        // The state first: an alert's own loop may let others look at this job, or take it away.
        log_.append("USER_REMOVED");
        finishedError_ = true;
        leaveSleepAssertion();
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

bool ConversionJob::takeOutput(OutputLease::Taken& taken) {
    if (taken.refusal != OutputLease::Refusal::None || !taken.lease.files()) {
        refuseStart(outputProblem(taken));
        return false;
    }
    lease_ = std::move(taken.lease);
    progressReader_ = {};
    moveDestination(lease_.files()->destination());
    return true;
}

void ConversionJob::moveDestination(const std::filesystem::path& destination) {
    if (fileInfo_.destinationURL == destination) return;
    const auto outputs = controller_.outputs();
    outputs->hold(destination);
    outputs->release(*std::exchange(fileInfo_.destinationURL, destination));
}

std::string ConversionJob::outputProblem(const OutputLease::Taken& taken) const {
    if (taken.refusal == OutputLease::Refusal::NoProgressFile) {
        return makeString(
            localized(vantor_,
                      "The conversion of %@ can't be started because neither your documents "
                      "folder nor a folder for temporary files can be written. Please check the "
                      "free space and the permissions there and try again."),
            Fennimar::validUtf8(fileInfo_.fileName));
    }
    const auto output = fileInfo_.destinationURL.value_or(std::filesystem::path());
    return makeString(
        localized(vantor_,
                  "The file %@ can't be made in the folder %@ (%@). Please check that the folder "
                  "is there and can be written, or choose another destination."),
        Fennimar::validUtf8(output.filename().native()),
        Fennimar::validUtf8(output.parent_path().native()),
        std::generic_category().message(taken.error));
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
    lease_.end();
    leaveSleepAssertion();
    // Titled with the movie, since its text names none.
    alert(vantor_, Fennimar::validUtf8(fileInfo_.fileName), problem, "OK");
    return false;
}

std::optional<int> ConversionJob::copiedAAC() const {
    const auto method =
        mainAudioMethod(fileInfo_, audioTrackIndex_, controller_.conversionSettings().audio);
    if (method != AudioMethodCopy) return std::nullopt;
    const auto& track = fileInfo_.audioTrackInformation.at(audioTrackIndex_);
    return track.codec == "aac" ? std::optional(track.stream) : std::nullopt;
}

}  // namespace reelvane
