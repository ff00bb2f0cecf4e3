#include "app/file_intake.h"

#include <algorithm>
#include <utility>

#include "app/destinations.h"
#include "app/preference_table.h"
#include "app/settings_reader.h"
#include "app/track_choices.h"
#include "conversion/stream_plan.h"
#include "media/languages.h"
#include "support/alerts.h"
#include "support/localization.h"
#include "support/make_string.h"
#include "support/paths.h"
#include "support/ports/main_bundle.h"
#include "support/ports/panels.h"
#include "support/strings.h"
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

}  // namespace

FileIntake::FileIntake(Vantor& vantor, Owner& owner, Destinations& destinations,
                       std::shared_ptr<OutputNames> names, const RunChoices& choices)
    : vantor_(vantor),
      owner_(owner),
      destinations_(destinations),
      choices_(choices),
      messages_(vantor, choices.unattended),
      resolver_(vantor, destinations, std::move(names), choices) {
    resolver_.setSearching([this](bool searching) { awaitsDisk_.set(searching); });
}

FileIntake::~FileIntake() {
    stop();
}

void FileIntake::setPreferredLanguages(std::vector<std::string> languages) {
    preferredLanguages_ = std::move(languages);
}

void FileIntake::stop() {
    stop_.request_stop();
    search_.request_stop();
}

void FileIntake::openFiles(const std::vector<std::filesystem::path>& paths) {
    auto absolute = absolutePaths(paths);
    if (std::ranges::all_of(absolute, isMovieFile)) {  // nothing needs to be looked at
        take({.sorted = sortFiles(absolute, Fennimar::readInt)});
    } else {
        lookInBackground(std::move(absolute));
    }
    owner_.bringToFront();
}

void FileIntake::lookInBackground(std::vector<std::filesystem::path> paths) {
    ++looking_;
    errands_.run([paths = std::move(paths), &translations = vantor_.ports().translations,
                  stop = search_.get_token()] { return lookInto(paths, translations, stop); },
                 [this](OpenedFiles opened) {
                     --looking_;
                     take(std::move(opened));
                 });
}

void FileIntake::take(OpenedFiles opened) {
    auto& movies = opened.sorted.movies;
    const bool handled = hasWaitingFiles() || state() != IntakeState::Idle;
    messages_.movies(movies.size(), handled);
    for (const auto& subtitle : opened.sorted.subtitles) pairing_.addSubtitle(subtitle);
    for (const auto& movie : movies) pairing_.addMovie(movie);
    std::ranges::move(movies, std::back_inserter(importFiles_));
    waitingCount_.set(importFiles_.size());
    for (const auto& subtitle : opened.sorted.subtitles) {
        const auto isItsMovie = [&](const auto& movie) {
            return pairing_.mayGoWith(subtitle, movie);
        };
        if (std::ranges::any_of(importFiles_, isItsMovie)) continue;
        opened.leftOut.push_back({.file = subtitle, .reason = withoutMovieText(subtitle)});
    }
    if (!handled) addNextFile();
    if (!isBusy()) idle_.notify();
    messages_.tellOfLeftOut(std::move(opened.leftOut), !isBusy());
}

std::string FileIntake::withoutMovieText(const std::filesystem::path& subtitle) const {
    return makeString(
        localized(vantor_,
                  "There is no movie yet for the subtitle file '%@'. Please add the one "
                  "whose name it begins with: the file goes with that."),
        Fennimar::validUtf8(subtitle.filename().native()));
}

void FileIntake::addClicked() {
    // A panel whose folder is slow to be found shows itself later; one is enough.
    if (std::exchange(choosing_, true)) return;
    vantor_.ports().panels.open({.allowedTypes = openableFileTypes()},
                                errands_.whileHere([this](const auto& chosen) {
                                    choosing_ = false;
                                    openFiles(chosen);
                                }));
}

bool FileIntake::isBusy() const {
    return looking_ > 0 || hasWaitingFiles() || state() != IntakeState::Idle;
}

void FileIntake::enter(IntakeState state) {
    auto present = present_.get();
    present.state = state;
    present_.set(std::move(present));
}

void FileIntake::addNextFile() {
    if (importFiles_.empty()) return;
    Probe probe{.file = std::move(importFiles_.back())};
    importFiles_.pop_back();
    waitingCount_.set(importFiles_.size());
    probe.subtitles = pairing_.subtitlesFor(probe.file);
    if (choices_.subtitleFile) {
        probe.subtitles = {std::filesystem::absolute(*choices_.subtitleFile)};
    }
    stop_ = std::stop_source();
    present_.set(
        {.state = IntakeState::Reading, .number = present_.get().number + 1, .file = probe.file});
    probeInBackground(std::move(probe));
}

ProbeTools FileIntake::tools() const {
    const auto& ports = vantor_.ports();
    auto tools = probeTools(ports.processLauncher, ports.mainBundle, ports.folderAccess,
                            vantor_.appName(), ports.translations);
    tools.stop = stop_.get_token();
    return tools;
}

void FileIntake::probeInBackground(Probe probe) {
    errands_.run(
        [probe = std::move(probe), options = readProbeOptions(vantor_.preferences()),
         tools = tools(), unknownEncoding = unknownEncoding()]() mutable {
            probe.inspection = initWithURL(probe.file, options, tools);
            lookForSubtitle(probe, *tools.translations, unknownEncoding);
            return std::move(probe);
        },
        [this, stop = stop_.get_token()](const Probe& read) {
            if (!stop.stop_requested()) probed(read, stop);
        });
}

void FileIntake::lookForSubtitle(Probe& probe, const Translations& translations,
                                 UnknownEncoding unknownEncoding) {
    auto& inspection = probe.inspection;
    if (!inspection.record) return;
    auto choice = chooseSubtitle(translations, probe.subtitles, unknownEncoding);
    setSubtitle(*inspection.record, choice.subtitle);
    auto texts = std::move(choice.leftOut);
    texts.push_back(silentMovieText(translations, *inspection.record));
    for (auto& text : texts) {
        if (!text.empty()) {
            inspection.alerts.push_back({.message = std::move(text), .button = "OK"});
        }
    }
}

bool FileIntake::addsByItself() const {
    return choices_.unattended || get(vantor_.preferences(), kAutoAdd);
}

UnknownEncoding FileIntake::unknownEncoding() const {
    if (!findsSubtitleEncoding(readConversionSettings(vantor_.preferences()))) {
        return UnknownEncoding::IsPreferences;
    }
    return addsByItself() ? UnknownEncoding::LeavesOut : UnknownEncoding::IsAskedFor;
}

bool FileIntake::awaitsUser() const {
    return fileInfo_ && state() == IntakeState::AwaitingUser;
}

void FileIntake::detachSubtitle() {
    if (!awaitsUser() || !fileInfo_->subtitleFileURL) return;
    setSubtitle(*fileInfo_, std::nullopt);
    fileInfoObservers_.notify();
}

void FileIntake::chooseSubtitleEncoding(std::string name) {
    if (!awaitsUser() || !fileInfo_->subtitleFileURL) return;
    auto& format = fileInfo_->subtitleFormat;
    format.encoding = {.kind = FoundEncoding::Kind::Named, .name = std::move(name)};
    format.encodingIsChosen = true;
    fileInfoObservers_.notify();
}

void FileIntake::probed(const Probe& probe, const std::stop_token& stop) {
    if (probe.inspection.toolProblem != ProbeToolProblem::None) {
        stopForToolProblem(probe);
        return;
    }
    const auto& record = probe.inspection.record;
    if (record && choices_.audioTrackIndex) {
        if (auto problem = audioChoiceProblem(*record, *choices_.audioTrackIndex)) {
            skip(probe.file, {plainAlert(std::move(*problem))});
            return;
        }
    }
    if (!record) {
        skip(probe.file, probe.inspection.alerts);
        return;
    }
    const bool several = messages_.isOneOfSeveral();
    if (!several) messages_.tellOfTaken(probe.inspection.alerts);
    if (stop.stop_requested()) return;  // an alert's own loop may have left the file
    fileInfo_ = *record;
    if (several) fileInfo_->warnings = messages_.notes(probe.inspection.alerts);
    accept();
}

void FileIntake::accept() {
    fillAudioPopUp();
    fileInfoObservers_.notify();
    destinations_.rebuildDestinationPopUp();
    enter(IntakeState::AwaitingUser);
    if (addsByItself()) addToQueue();
}

void FileIntake::skip(const std::filesystem::path& file, const std::vector<VettingAlert>& alerts) {
    const auto stop = stop_.get_token();
    messages_.tellOfRefused(file, alerts);
    refuse(file, alerts);
    if (stop.stop_requested()) return;  // an alert's own loop may have left the file
    cancelAdd();
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
    if (!choices_.unattended) {
        runAlert(vantor_, {.title = alert.title,
                           .message = alert.message,
                           .buttons = {fatal ? std::string(localizable("Exit")) : alert.button}});
    }
    const bool several = messages_.isOneOfSeveral();
    std::for_each(dropped.rbegin(), dropped.rend(), [&](const auto& file) {
        if (several) refusedFiles().add({.file = file, .reason = alert.message});
        refuse(file, {alert});
    });
    cancelAdd();
    if (fatal) owner_.terminate();
}

void FileIntake::fillAudioPopUp() {
    const auto& tracks = fileInfo_->audioTrackInformation;
    std::vector<MenuItem> items;
    items.reserve(tracks.size());
    for (const auto& track : tracks) items.push_back({.title = text(track)});
    audioPopUp_.setItems(std::move(items));
    const auto chosen =
        choices_.audioTrackIndex
            ? choices_.audioTrackIndex
            : bestLanguage(tracks, get(vantor_.preferences(), kDefaultAudio), preferredLanguages_);
    if (chosen) audioPopUp_.selectItemAtIndex(*chosen);
}

void FileIntake::addToQueue() {
    // A file that was left, or is not yet known, is not there to be added; nor is one twice. A
    // question about it comes first.
    if (!awaitsUser() || asksForEncoding(*fileInfo_)) return;
    enter(IntakeState::FindingPlace);
    const auto stop = stop_.get_token();
    resolver_.resolve(*fileInfo_, chosenDestination(destinations_.destinationPopUp()), stop,
                      [this, stop, track = audioPopUp_.selectedIndex().value_or(0)](
                          const Resolution& resolution) {
                          if (!stop.stop_requested()) resolved(track, resolution);
                      });
}

void FileIntake::resolved(std::size_t audioTrackIndex, const Resolution& resolution) {
    awaitsDisk_.set(false);
    if (resolution.destination) {
        addResolved(audioTrackIndex, *resolution.destination);
    } else if (choices_.unattended) {
        leaveUnadded(resolution.problem);
    } else {
        enter(IntakeState::AwaitingUser);  // for another choice
        if (resolution.problem) tellOfPresentFile(*resolution.problem);
    }
}

void FileIntake::addResolved(std::size_t audioTrackIndex, const ResolvedDestination& destination) {
    auto record = *fileInfo_;
    record.destinationURL = destination.destinationURL;
    record.securityURL = destination.securityURL;
    if (destination.chosen) record.outputClaim = OutputClaim::Chosen;
    if (const auto& subtitle = record.subtitleFileURL) pairing_.pair(record.fileURL, *subtitle);
    auto job = std::make_unique<ConversionJob>(vantor_, owner_.jobController(), std::move(record),
                                               audioTrackIndex);
    job->presetSpeedInfo();
    owner_.addJob(std::move(job), hasWaitingFiles());
    cancelAdd();
    clearFileInfo();
}

/// Its title names the file, whose alert this is.
void FileIntake::tellOfPresentFile(const VettingAlert& problem) {
    owner_.bringToFront();
    alert(vantor_, Fennimar::validUtf8(fileInfo_->fileName), problem.message, problem.button);
}

void FileIntake::leaveUnadded(const std::optional<VettingAlert>& problem) {
    const auto alert = problem.value_or(plainAlert(
        makeString("No destination could be chosen for the file '%@', so it was not added. Please "
                   "name the folder for the converted files.",
                   fileInfo_->fileName)));
    skip(fileInfo_->fileURL, {alert});
}

void FileIntake::cancelAdd() {
    stop_.request_stop();
    awaitsDisk_.set(false);
    if (hasWaitingFiles()) {
        addNextFile();
        return;
    }
    enter(IntakeState::Idle);
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
