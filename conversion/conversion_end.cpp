// How a job ends: its run is over, or the user takes it off the list.

#include <fcntl.h>
#include <unistd.h>
#include <utility>

#include "conversion/conversion_job.h"
#include "conversion/diagnosis.h"
#include "conversion/stream_plan.h"
#include "support/localization.h"
#include "support/logging.h"
#include "support/make_string.h"
#include "support/paths.h"
#include "support/ports/folder_access.h"
#include "support/ports/main_bundle.h"
#include "support/ports/workspace.h"
#include "support/posix_io.h"
#include "support/strings.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

/// Waits until the device has the file; false when it could not be written there after all.
bool isOnDisk(const std::filesystem::path& file) {
    const FileDescriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
    return descriptor.isOpen() && ::fsync(descriptor.get()) == 0;
}

}  // namespace

void ConversionJob::taskFinished(int exitStatus, std::string_view remainingOutput) {
    nextStep_.take([this, exitStatus, rest = std::string(remainingOutput)] {
        run_.log.appendRest(rest);
        // The converter's word is not enough: it also ends with 0 over a file that is broken.
        if (exitStatus == 0) {
            checkRun();
        } else {
            runEnded(true);
        }
    });
}

void ConversionJob::checkRun() {
    CheckingJob checking{.shown = state(),
                         .settings = controller_.conversionSettings(),
                         .lease = std::move(std::get<RunningJob>(phase_).lease),
                         .disks = DiskWork(vantor_.ports().dispatcher)};
    checking.disks.errands.run(
        [&translations = vantor_.ports().translations, files = checking.lease.files(),
         record = fileInfo_, planned = outputTracks(run_.plan, fileInfo_),
         log = run_.log.searched(), autoRemove = checking.settings.autoRemove,
         tools = cueTools(checking.disks)] {
            if (!files->isOutputThere()) return OutputCheck{.isGone = true};
            auto check = checkOutput(translations, record, planned, log, files->heldPath());
            if (!check.proof.problem.empty()) return check;
            addNotes(check.notes, cueNotes(translations, record, planned, check.textCounts, tools));
            const auto size = Fennimar::fileSize(files->heldPath());
            check.details = hasDoubt(check.notes) ? contentText(translations, check.proof.seconds,
                                                                check.proof.tracks, size)
                                                  : proofText(translations, check.proof, size);
            // Where the source is to go, the output must not be in the system's memory only.
            check.onDisk = autoRemove && isOnDisk(files->heldPath());
            return check;
        },
        [this](const OutputCheck& check) {
            result_.check = check;
            nextStep_.take([this] { keepOutput(); });
        });
    enter(std::move(checking));
}

void ConversionJob::keepOutput() {
    const auto& check = result_.check;
    if (check.isGone) result_.problem = placeProblem(RunFiles::Keeping::Gone);
    if (check.isGone || !check.proof.problem.empty()) {
        runEnded(true);
        return;
    }
    auto& checking = std::get<CheckingJob>(phase_);
    struct Kept {
        RunFiles::Keeping keeping;
        std::optional<FileVersion> identity;
    };
    checking.disks.errands.run(
        [files = checking.lease.files()] {
            const auto keeping = files->keep();
            return Kept{.keeping = keeping, .identity = fileVersionOf(files->keptPath())};
        },
        [this](const Kept& kept) {
            const bool isKept = kept.keeping == RunFiles::Keeping::Kept;
            if (isKept) {
                moveDestination(std::get<CheckingJob>(phase_).lease.files()->keptPath());
                result_.check.identity = kept.identity;
            } else {
                result_.problem = placeProblem(kept.keeping);
                result_.check.details.clear();
            }
            nextStep_.take([this, isKept] { runEnded(!isKept); });
        });
}

CueTools ConversionJob::cueTools(const DiskWork& disks) const {
    const auto& ports = vantor_.ports();
    return {.launcher = &ports.processLauncher,
            .ffmpeg = ports.mainBundle.pathForResource("ffmpeg"),
            .stop = disks.stop.get_token()};
}

void ConversionJob::runEnded(bool failed) {
    const auto& ports = vantor_.ports();
    const EndedRun run{.fileName = Fennimar::validUtf8(fileInfo_.fileName),
                       .output = fileInfo_.destinationURL.value_or(std::filesystem::path()),
                       .failed = failed,
                       .warning = warning()};
    JobEvent event{.kind = failed ? JobEvent::Kind::RunFailed : JobEvent::Kind::RunFinished,
                   .notification = endNotification(ports.translations, vantor_.appName(), run)};
    if (failed && ranOutOfSpace(run_.log.searched())) {
        const auto explanation = diagnosis();
        event.title = makeString("%@: %@", run.fileName, explanation.title);
        event.text = explanation.message;
    }
    run_.ended = ports.dispatcher.now();
    run_.progress = 100;
    if (failed) {
        enter(FailedJob());
    } else {
        succeed();
    }
    controller_.jobEvent(event);
}

void ConversionJob::succeed() {
    auto& checking = std::get<CheckingJob>(phase_);
    const auto settings = checking.settings;
    checking.lease.end();  // the output is the user's now
    FinishedJob finished;
    if (settings.autoRemove) finished.comparison = decideOnSource(settings);
    enter(std::move(finished));
    // A warning stays until the user has seen it.
    if (settings.autoClean && !isComparing() && warning().empty()) remove();
}

std::unique_ptr<SourceRemover> ConversionJob::decideOnSource(const ConversionSettings& settings) {
    const bool toTrash = settings.autoRemoveType == 0;
    const auto& check = result_.check;
    const auto kind = hasDoubt(check.notes)                       ? SourceFate::Kind::Doubtful
                      : fileInfo_.runtimeSeconds.value_or(0) <= 0 ? SourceFate::Kind::NoLength
                      : check.proof.isShort                       ? SourceFate::Kind::Short
                      : fileInfo_.hasOtherPictures                ? SourceFate::Kind::OtherPicture
                      : !check.onDisk                             ? SourceFate::Kind::NotOnDisk
                                                                  : SourceFate::Kind::Removed;
    if (kind != SourceFate::Kind::Removed) {
        tellOfSource({.kind = kind}, toTrash);
        return nullptr;
    }
    return std::make_unique<SourceRemover>(
        vantor_, controller_.comparisons(),
        SourceRemoval{.source = {.path = fileInfo_.fileURL,
                                 .stream = makeString("0:%i", fileInfo_.videoTrackID.value_or(0)),
                                 .codec = fileInfo_.videoCodec,
                                 .hasEdits = readsEdits(fileInfo_.demuxer)},
                      .sourceIdentity = fileInfo_.identity,
                      .output = {.path = *fileInfo_.destinationURL,
                                 .stream = "0:v:0",
                                 .codec = fileInfo_.videoCodec,
                                 .hasEdits = true},
                      .outputIdentity = check.identity,
                      .toTrash = toTrash},
        [this, settings](const SourceFate& fate) { sourceDecided(settings, fate); });
}

void ConversionJob::tellOfSource(const SourceFate& fate, bool toTrash) {
    const auto text = sourceFateText(vantor_.ports().translations,
                                     Fennimar::validUtf8(fileInfo_.fileName), fate, toTrash);
    if (text.empty()) return;
    addNotes(result_.check.notes, {{.kind = JobNote::Kind::SourceKept, .text = text}});
    vn_log_level(LogError, "Info: %@ (%@)", text, fileInfo_.fileURL);
}

void ConversionJob::sourceDecided(const ConversionSettings& settings, const SourceFate& fate) {
    std::get<FinishedJob>(phase_).comparison.reset();
    tellOfSource(fate, settings.autoRemoveType == 0);
    observers_.notify();
    if (settings.autoClean && warning().empty()) remove();
    tell(JobEvent::Kind::SourceDecided);
}

std::string ConversionJob::warning() const {
    return warningText(notes());
}

Diagnosis ConversionJob::diagnosis() const {
    const auto arguments = Fennimar::joined(run_.arguments, " ");
    const auto name = Fennimar::validUtf8(fileInfo_.fileName);
    const bool blamed = blamesSource(result_.check.proof, run_.log.searched());
    return diagnose(vantor_.ports().translations,
                    {.startProblem = result_.problem,
                     .jobOutput = run_.log.searched(),
                     .shownOutput = run_.log.shown(),
                     .incompleteOutput = !result_.check.proof.problem.empty(),
                     .damagedSource = blamed ? std::string_view(name) : std::string_view(),
                     .arguments = arguments,
                     .embeddedSubtitlesConverted = !run_.plan.subtitles.empty(),
                     .externalSubtitles = run_.plan.externalSubtitle});
}

void ConversionJob::reveal() {
    auto& workspace = vantor_.ports().workspace;
    if (state() == ConversionJobState::Failed) {
        const auto explanation = diagnosis();
        JobEvent event{.kind = JobEvent::Kind::Explained,
                       .title = explanation.title,
                       .text = explanation.message};
        if (explanation.offersReport) {
            event.report = FailedRun{.arguments = Fennimar::joined(run_.arguments, " "),
                                     .log = run_.log.shown(),
                                     .recordDescription = description(fileInfo_)};
        }
        controller_.jobEvent(event);
    } else if (workspace.isShiftKeyHeld()) {
        workspace.reveal(fileInfo_.fileURL);
    } else if (fileInfo_.destinationURL) {
        workspace.reveal(*fileInfo_.destinationURL);
    }
}

void ConversionJob::remove() {
    if (auto* const running = std::get_if<RunningJob>(&phase_)) {
        if (running->following) leaveAwake(running->following->awake);
        running->child->terminate();
    }
    phase_.emplace<RemovedJob>(RemovedJob{.last = state()});
    if (const auto folder = std::exchange(fileInfo_.securityURL, {})) {
        vantor_.ports().folderAccess.stopAccessing(*folder);
    }
    controller_.removeJob(*this);
}

std::string ConversionJob::placeProblem(RunFiles::Keeping keeping) const {
    const auto format =
        keeping == RunFiles::Keeping::Unreplaced
            ? localizable(
                  "The new %@ is whole, but it could not take the place of the old one, so "
                  "it was not kept, and the old one is as it was. Please check the folder's "
                  "permissions and try again.")
            : localizable(
                  "%@ was deleted or replaced by another program while it was converted. "
                  "What lies there now was left alone. Please try again.");
    return makeString(localized(vantor_, format),
                      Fennimar::validUtf8(fileInfo_.destinationURL->filename().native()));
}

void ConversionJob::setAside() {
    pause();
    nextStep_.hold();
    if (!isComparing()) return;
    // Nobody who has taken a movie off the list wants its source to go; it is decided anew later.
    std::get<FinishedJob>(phase_).comparison.reset();
    nextStep_.take([this] {
        std::get<FinishedJob>(phase_).comparison = decideOnSource(controller_.conversionSettings());
        observers_.notify();
    });
}

void ConversionJob::bringBack() {
    nextStep_.release();
}

}  // namespace reelvane
