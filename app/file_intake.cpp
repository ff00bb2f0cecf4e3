#include "app/file_intake.h"

#include <algorithm>
#include <utility>

#include "app/audio_choice.h"
#include "app/destinations.h"
#include "app/file_sorting.h"
#include "app/preference_keys.h"
#include "app/probe_tools.h"
#include "app/settings_reader.h"
#include "media/languages.h"
#include "support/alerts.h"
#include "support/bundle.h"
#include "support/dispatch.h"
#include "support/make_string.h"
#include "support/named_exception.h"
#include "support/paths.h"
#include "support/ports/main_bundle.h"
#include "support/ports/panels.h"
#include "support/strings.h"
#include "support/untranslated.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

std::vector<std::filesystem::path> absolutePaths(const std::vector<std::filesystem::path>& paths) {
    std::vector<std::filesystem::path> absolute;
    absolute.reserve(paths.size());
    for (const auto& path : paths) {
        auto full = Fennimar::absolutePath(path);
        if (full.is_absolute()) absolute.push_back(std::move(full));
    }
    return absolute;
}

/// The converter would wait for ever for what comes out of a pipe or a device.
bool couldBlock(const std::filesystem::path& path) {
    std::error_code ignored;
    const auto status = std::filesystem::status(path, ignored);
    return std::filesystem::is_other(status);
}

void attachSubtitle(MKVFileInfo& record, const std::filesystem::path& subtitle) {
    record.subtitleFileURL = subtitle;
    record.informationString = informationText(kUntranslated, record);
}

/// Nothing catches what this throws: it ends in the fatal problem report, which so names the file.
[[noreturn]] void endInReport(const std::filesystem::path& file,
                              const std::exception_ptr& exception) {
    try {
        std::rethrow_exception(exception);
    } catch (...) {
        std::throw_with_nested(NamedException(
            "Unreadable Report", makeString("ffmpeg's report on the file '%@' can't be read",
                                            Fennimar::validUtf8(file.filename().native()))));
    }
}

}  // namespace

FileIntake::FileIntake(Vantor& vantor, Owner& owner, Destinations& destinations,
                       std::shared_ptr<OutputNames> names, const RunChoices& choices)
    : vantor_(vantor),
      owner_(owner),
      destinations_(destinations),
      choices_(choices),
      resolver_(vantor, destinations, std::move(names), choices) {
    resolver_.setSearching([this](bool searching) { awaitsDisk_.set(searching); });
}

FileIntake::~FileIntake() {
    stop();
}

void FileIntake::setPreferredLanguages(std::vector<std::string> languages) {
    preferredLanguages_ = std::move(languages);
}

void FileIntake::openFiles(const std::vector<std::filesystem::path>& paths) {
    auto absolute = absolutePaths(paths);
    if (std::ranges::any_of(absolute, isSubtitleFile)) {
        sortInBackground(std::move(absolute));
    } else {
        take(sortFiles(absolute, Fennimar::readInt));
    }
    owner_.bringToFront();
}

void FileIntake::sortInBackground(std::vector<std::filesystem::path> paths) {
    ++sorting_;
    dispatch_async_back(vantor_, [this, &vantor = vantor_, alive = std::weak_ptr(alive_),
                                  paths = std::move(paths)] {
        auto sorted = sortFiles(paths, Fennimar::readInt);
        std::erase_if(sorted.subtitles, couldBlock);
        dispatch_async_main(vantor, [this, alive, sorted = std::move(sorted)] {
            if (!alive.lock()) return;
            --sorting_;
            take(sorted);
        });
    });
}

void FileIntake::take(SortedFiles sorted) {
    const bool handled = handlesFile();
    for (const auto& subtitle : sorted.subtitles) pairing_.add(subtitle);
    std::ranges::move(sorted.movies, std::back_inserter(importFiles_));
    waitingCount_.set(importFiles_.size());
    if (!handled) addNextFile();
    if (!isBusy()) idle_.notify();
}

void FileIntake::addClicked() {
    // A panel whose folder is slow to be found shows itself later; one is enough.
    if (std::exchange(choosing_, true)) return;
    vantor_.ports().panels.open(
        {.allowedTypes = openableFileTypes()},
        [this, alive = std::weak_ptr(alive_)](const std::vector<std::filesystem::path>& chosen) {
            if (!alive.lock()) return;
            choosing_ = false;
            openFiles(chosen);
        });
}

bool FileIntake::isBusy() const {
    return sorting_ > 0 || handlesFile();
}

bool FileIntake::handlesFile() const {
    return hasWaitingFiles() || isScanning_.get() || topConstraint_.get() == kSheetShown;
}

void FileIntake::addNextFile() {
    if (importFiles_.empty()) return;
    Probe probe{.file = std::move(importFiles_.back())};
    importFiles_.pop_back();
    waitingCount_.set(importFiles_.size());
    presentFile_ = probe.file;
    probe.subtitle = pairing_.subtitleFor(probe.file);
    if (choices_.subtitleFile) probe.subtitle = std::filesystem::absolute(*choices_.subtitleFile);
    turn_ = std::stop_source();
    topConstraint_.set(kSheetShown);
    isScanning_.set(true);
    probeInBackground(std::move(probe));
}

ProbeTools FileIntake::tools() const {
    const auto& ports = vantor_.ports();
    auto tools = probeTools(ports.processLauncher, ports.mainBundle, ports.folderAccess,
                            vantor_.appName(), ports.translations);
    tools.stop = turn_.get_token();
    return tools;
}

void FileIntake::probeInBackground(Probe probe) {
    dispatch_async_back(
        vantor_, [this, turn = turn_.get_token(), &vantor = vantor_, probe = std::move(probe),
                  options = readProbeOptions(vantor_.preferences()), tools = tools()]() mutable {
            try {
                probe.inspection = initWithURL(probe.file, options, tools);
            } catch (...) {
                probe.exception = std::current_exception();
            }
            dispatch_async_main(vantor, [this, turn, probe = std::move(probe)] {
                if (!turn.stop_requested()) probed(probe, turn);
            });
        });
}

void FileIntake::probed(const Probe& probe, const Turn& turn) {
    if (probe.exception) {
        isScanning_.set(false);
        endInReport(probe.file, probe.exception);
    }
    if (probe.inspection.toolProblem != ProbeToolProblem::None) {
        stopForToolProblem(probe);
        return;
    }
    for (const auto& alert : probe.inspection.alerts) {
        raise(vantor_, alert);
        if (turn.stop_requested()) return;  // an alert's own loop may have left the file
    }
    if (!probe.inspection.record) {
        skip(probe.file, probe.inspection.alerts);
        return;
    }
    if (choices_.audioTrackIndex) {
        if (auto problem =
                audioChoiceProblem(*probe.inspection.record, *choices_.audioTrackIndex)) {
            const auto alert = plainAlert(std::move(*problem));
            raise(vantor_, alert);
            skip(probe.file, {alert});
            return;
        }
    }
    accept(probe);
}

void FileIntake::accept(const Probe& probe) {
    fileInfo_ = probe.inspection.record;
    if (probe.subtitle) attachSubtitle(*fileInfo_, *probe.subtitle);
    fillAudioPopUp();
    fileInfoObservers_.notify();
    isScanning_.set(false);
    destinations_.rebuildDestinationPopUp();
    if (choices_.unattended || vantor_.preferences().defaultInt(kAutoAddKey) != 0) addToQueue();
}

void FileIntake::skip(const std::filesystem::path& file, const std::vector<VettingAlert>& alerts) {
    isScanning_.set(false);
    refuse(file, alerts);
    cancelAdd();
    owner_.updateWindowTitle();
}

void FileIntake::stopForToolProblem(const Probe& probe) {
    // Without its tool no other file of the batch fares better, and one alert is enough.
    auto dropped = std::exchange(importFiles_, {});
    waitingCount_.set(0);
    dropped.push_back(probe.file);
    const auto problem = probe.inspection.toolProblem;
    const bool fatal = problem == ProbeToolProblem::NoResources;
    const auto alert = plainAlert(
        toolProblemText(vantor_.ports().translations, problem, vantor_.ports().mainBundle));
    alert_apptitled(vantor_, alert.message, fatal ? localizable("Exit") : alert.button);
    isScanning_.set(false);
    std::for_each(dropped.rbegin(), dropped.rend(),
                  [&](const auto& file) { refuse(file, {alert}); });
    cancelAdd();
    owner_.updateWindowTitle();
    if (fatal) owner_.terminate();
}

void FileIntake::fillAudioPopUp() {
    const auto& entries = fileInfo_->audioTrackInformation;
    std::vector<MenuItem> items;
    items.reserve(entries.size());
    for (const auto& entry : entries) items.push_back({.title = entry.text});
    audioPopUp_.setItems(std::move(items));
    const auto chosen =
        choices_.audioTrackIndex
            ? choices_.audioTrackIndex
            : bestLanguage(entries, vantor_.preferences().defaultInt(kDefaultAudioKey),
                           preferredLanguages_);
    if (chosen) audioPopUp_.selectItemAtIndex(*chosen);
}

void FileIntake::addToQueue() {
    // A file that was left, or is not yet known, is not there to be added; nor is one twice.
    if (!fileInfo_ || isScanning_.get() || resolving_ || topConstraint_.get() != kSheetShown) {
        return;
    }
    resolving_ = true;
    const auto turn = turn_.get_token();
    resolver_.resolve(*fileInfo_, destinations_.destinationPopUp().selectedIndex(), turn,
                      [this, turn, track = audioPopUp_.selectedIndex().value_or(0)](
                          const std::optional<ResolvedDestination>& destination) {
                          if (!turn.stop_requested()) resolved(track, destination);
                      });
}

void FileIntake::resolved(std::size_t audioTrackIndex,
                          const std::optional<ResolvedDestination>& destination) {
    endResolving();
    if (destination) {
        addResolved(audioTrackIndex, *destination);
    } else if (choices_.unattended) {
        leaveUnadded();
    }
}

void FileIntake::endResolving() {
    resolving_ = false;
    awaitsDisk_.set(false);
}

void FileIntake::addResolved(std::size_t audioTrackIndex, const ResolvedDestination& destination) {
    auto record = *fileInfo_;
    record.destinationURL = destination.destinationURL;
    record.securityURL = destination.securityURL;
    if (destination.chosen) record.outputClaim = OutputClaim::Chosen;
    auto job = std::make_unique<ConversionJob>(vantor_, owner_.jobController(), std::move(record),
                                               audioTrackIndex);
    job->presetSpeedInfo();
    owner_.addJob(std::move(job), destination.isWriteable);
}

void FileIntake::leaveUnadded() {
    const auto alert = plainAlert(
        makeString("No destination could be chosen for the file '%@', so it was not added. Please "
                   "name the folder for the converted files.",
                   fileInfo_->fileName));
    raise(vantor_, alert);
    skip(fileInfo_->fileURL, {alert});
}

void FileIntake::cancelAdd() {
    turn_.request_stop();
    endResolving();
    isScanning_.set(false);
    if (hasWaitingFiles()) {
        addNextFile();
        return;
    }
    topConstraint_.set(kSheetHidden);
    idle_.notify();
}

void FileIntake::clearFileInfo() {
    fileInfo_.reset();
    fileInfoObservers_.notify();
}

void FileIntake::refuse(const std::filesystem::path& file,
                        const std::vector<VettingAlert>& alerts) {
    refusals_.notify(file, alerts);
}

VettingAlert FileIntake::plainAlert(std::string message) const {
    return {.title = vantor_.appName(), .message = std::move(message), .button = "OK"};
}

Subscription FileIntake::observeFileInfo(std::function<void()> changed) {
    return fileInfoObservers_.add(std::move(changed));
}

Subscription FileIntake::observeRefusals(
    std::function<void(const std::filesystem::path&, const std::vector<VettingAlert>&)> refused) {
    return refusals_.add(std::move(refused));
}

Subscription FileIntake::observeIdle(std::function<void()> idle) {
    return idle_.add(std::move(idle));
}

}  // namespace reelvane
