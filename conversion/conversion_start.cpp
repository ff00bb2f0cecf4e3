// How a job starts: the disks are asked in the background, then the converter is launched.

#include <system_error>
#include <utility>

#include "conversion/command_builder.h"
#include "conversion/conversion_job.h"
#include "conversion/stream_plan.h"
#include "support/localization.h"
#include "support/logging.h"
#include "support/make_string.h"
#include "support/strings.h"
#include "support/vantor.h"

namespace reelvane {

void ConversionJob::start() {
    auto* const queued = std::get_if<QueuedJob>(&phase_);
    const bool isOver =
        std::holds_alternative<FinishedJob>(phase_) || std::holds_alternative<FailedJob>(phase_);
    if (queued == nullptr && !isOver) return;
    run_ = {};
    result_ = {};
    if (queued != nullptr && queued->abandoned) {
        // What is under way is taken up.
        enter(StartingJob{.disks = std::move(*queued->abandoned), .awake = stayAwake()});
        return;
    }
    StartingJob starting{.disks = DiskWork(vantor_.ports().dispatcher), .awake = stayAwake()};
    askDisks(starting.disks);
    enter(std::move(starting));
}

void ConversionJob::askDisks(DiskWork& disks) {
    std::error_code none;
    const StartQuestion question{
        .record = fileInfo_,
        .outputs = controller_.outputs(),
        .progressFolders = {vantor_.docDir(), std::filesystem::temp_directory_path(none)},
        .copiedAAC = copiedAAC(),
        .version = controller_.converterVersion(),
        .unwanted = disks.stop.get_token()};
    disks.errands.run([question, &vantor = vantor_] { return prepareStart(vantor, question); },
                      [this](StartFacts facts) {
                          if (isStarting()) {
                              prepared(std::move(facts));
                          } else {
                              undoStart(std::move(facts.output.lease));
                          }
                      });
}

void ConversionJob::undoStart(OutputLease made) {
    // Shared, because work can be copied and a lease can not.
    const auto undone = std::make_shared<OutputLease>(std::move(made));
    auto& abandoned = std::get<QueuedJob>(phase_).abandoned;
    abandoned->errands.run([undone] { undone->end(); },
                           [this] {
                               if (auto* const starting = std::get_if<StartingJob>(&phase_)) {
                                   askDisks(starting->disks);
                               } else if (auto* const queued = std::get_if<QueuedJob>(&phase_)) {
                                   queued->abandoned.reset();
                               }
                           });
}

void ConversionJob::prepared(StartFacts facts) {
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
    const auto& files = *std::get<StartingJob>(phase_).lease.files();
    auto written = fileInfo_;
    written.destinationURL = files.workPath();
    run_.arguments = buildArguments({.file = written,
                                     .audioTrackIndex = audioTrackIndex_,
                                     .settings = settings,
                                     .progressFile = files.progressPath(),
                                     .needsFixup = facts.needsFixup && method == AudioMethodCopy});
    run_.plan = planStreams(fileInfo_, audioTrackIndex_, settings);
    run_.arguments.shrink_to_fit();  // they are kept as long as the job is listed
    run_.settings = settings;
    launch();
}

bool ConversionJob::checkInput(const StartFacts& facts) {
    if (!facts.inputPresent) {
        run_.log.append("USER_REMOVED");
        leaveAwake(std::get<StartingJob>(phase_).awake);
        const auto name = Fennimar::validUtf8(fileInfo_.fileURL.filename().native());
        enter(FailedJob());
        tell(JobEvent::Kind::SourceMissing, vantor_.appName(),
             makeString(localized(vantor_,
                                  "It seems you've removed the file %@ or unmounted it's volume so "
                                  "conversion can't proceed."),
                        name));
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
    auto& lease = std::get<StartingJob>(phase_).lease;
    lease = std::move(taken.lease);
    moveDestination(lease.files()->destination());
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
    leaveAwake(std::get<StartingJob>(phase_).awake);
    enter(QueuedJob());
    // Titled with the movie, since its text names none.
    tell(JobEvent::Kind::NoSpace, Fennimar::validUtf8(fileInfo_.fileName),
         localized(vantor_, problem));
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
