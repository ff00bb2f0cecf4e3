#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "app/destination_resolver.h"
#include "app/intake_messages.h"
#include "app/opened_files.h"
#include "app/settings_reader.h"
#include "app/track_choices.h"
#include "conversion/conversion_job.h"
#include "media/mkv_file_info.h"
#include "media/probe.h"
#include "media/vetting.h"
#include "support/errands.h"
#include "support/observable.h"
#include "support/vantor.h"

namespace reelvane {

class Destinations;
class OutputNames;
class Translations;

/// What the intake is doing with the present file.
enum class IntakeState {
    Idle,          ///< there is none
    Reading,       ///< it is being probed
    AwaitingUser,  ///< it is shown for the user's choices
    FindingPlace   ///< a panel or a disk is asked where its output goes
};

/// The present file and what becomes of it.
struct PresentFile {
    IntakeState state = IntakeState::Idle;
    std::size_t number = 0;        ///< of files taken up so far: another number is another file
    std::filesystem::path file{};  ///< while idle the last one
    friend bool operator==(const PresentFile&, const PresentFile&) = default;
};

/// The least height of the file sheet in this state.
[[nodiscard]] constexpr int sheetHeight(IntakeState state) {
    return state == IntakeState::Idle ? 0 : 117;
}

/// Takes files in, probes them one at a time in the background, shows each in the file sheet and
/// turns it into a job. Main thread only. A window mirrors the sheet's state from here.
class FileIntake {
public:
    /// What the intake asks of its owner.
    class Owner {
    public:
        virtual ~Owner() = default;
        /// `othersWait`: more files are on their way, so the job does not start at once.
        virtual void addJob(std::unique_ptr<ConversionJob> job, bool othersWait) = 0;
        /// What a new job reports to.
        [[nodiscard]] virtual ConversionJob::Controller& jobController() = 0;
        /// Shows the main window, in front.
        virtual void bringToFront() = 0;
        /// Ends the program with status 0.
        virtual void terminate() = 0;
    };

    FileIntake(Vantor& vantor, Owner& owner, Destinations& destinations,
               std::shared_ptr<OutputNames> names, const RunChoices& choices);
    ~FileIntake();
    FileIntake(const FileIntake&) = delete;
    FileIntake& operator=(const FileIntake&) = delete;
    FileIntake(FileIntake&&) = delete;
    FileIntake& operator=(FileIntake&&) = delete;

    /// The user's languages as three-letter codes, best first.
    void setPreferredLanguages(std::vector<std::string> languages);

    /// Movies, subtitle files, and folders that are searched for both.
    void openFiles(const std::vector<std::filesystem::path>& paths);
    /// Lets the user pick files.
    void addClicked();
    /// The file that the sheet shows goes without its subtitle file.
    void detachSubtitle();
    /// Says how that file is written, by a name that the converter knows.
    void chooseSubtitleEncoding(std::string name);
    /// Makes the job for the file that the sheet shows.
    void addToQueue();
    /// Leaves the present file, whatever is being done with it, and takes the next one, or hides
    /// the sheet.
    void cancelAdd();

    /// Leaves the present file and takes no other: the program ends.
    void stop();

    /// True while a file waits, is being probed or is shown for the user's choice.
    [[nodiscard]] bool isBusy() const;
    /// True while files wait to be probed.
    [[nodiscard]] bool hasWaitingFiles() const { return !importFiles_.empty(); }
    /// How many files wait to be probed.
    [[nodiscard]] Observable<std::size_t>& waitingCount() { return waitingCount_; }
    [[nodiscard]] Observable<PresentFile>& present() { return present_; }
    [[nodiscard]] IntakeState state() const { return present_.get().state; }
    [[nodiscard]] const std::filesystem::path& presentFile() const { return present_.get().file; }

    [[nodiscard]] const std::optional<MKVFileInfo>& fileInfo() const { return fileInfo_; }
    /// What of a batch was not taken.
    [[nodiscard]] RefusedFiles& refusedFiles() { return messages_.refusedFiles(); }
    [[nodiscard]] PopUpMenu& audioPopUp() { return audioPopUp_; }
    /// The disk is being asked for a place for the file that the user has added.
    [[nodiscard]] Observable<bool>& awaitsDisk() { return awaitsDisk_; }

    /// Told when `fileInfo` is another one.
    [[nodiscard]] Subscription observeFileInfo(std::function<void()> changed);
    /// Told when a file was refused: its path and what the user was told.
    [[nodiscard]] Subscription observeRefusals(
        std::function<void(const std::filesystem::path&, const std::vector<VettingAlert>&)>
            refused);
    /// Told when isBusy() may have become false.
    [[nodiscard]] Subscription observeIdle(std::function<void()> idle);

private:
    /// One file on its way through the probe.
    struct Probe {
        std::filesystem::path file{};
        std::vector<std::filesystem::path> subtitles{};  ///< that may go with it, best first
        Inspection inspection{};
    };

    void lookInBackground(std::vector<std::filesystem::path> paths);
    void take(OpenedFiles opened);
    [[nodiscard]] std::string withoutMovieText(const std::filesystem::path& subtitle) const;
    void addNextFile();
    void enter(IntakeState state);
    [[nodiscard]] ProbeTools tools() const;
    void probeInBackground(Probe probe);
    /// In the background: the record gets its subtitle file.
    static void lookForSubtitle(Probe& probe, const Translations& translations,
                                UnknownEncoding unknownEncoding);
    [[nodiscard]] UnknownEncoding unknownEncoding() const;
    [[nodiscard]] bool addsByItself() const;
    [[nodiscard]] bool awaitsUser() const;
    void probed(const Probe& probe, const std::stop_token& stop);
    void accept();
    /// Tells the observers of refusals about a file that was taken but cannot become a job.
    void refuse(const std::filesystem::path& file, const std::vector<VettingAlert>& alerts);
    void skip(const std::filesystem::path& file, const std::vector<VettingAlert>& alerts);
    void stopForToolProblem(const Probe& probe);
    void fillAudioPopUp();
    void resolved(std::size_t audioTrackIndex, const Resolution& resolution);
    void addResolved(std::size_t audioTrackIndex, const ResolvedDestination& destination);
    void clearFileInfo();
    void leaveUnadded(const std::optional<VettingAlert>& problem);
    void tellOfPresentFile(const VettingAlert& problem);
    [[nodiscard]] VettingAlert plainAlert(std::string message) const;

    Vantor& vantor_;
    Owner& owner_;
    Destinations& destinations_;
    const RunChoices& choices_;
    IntakeMessages messages_;
    DestinationResolver resolver_;
    std::vector<std::string> preferredLanguages_;
    std::vector<std::filesystem::path> importFiles_;  // taken from the end
    Observable<std::size_t> waitingCount_{0};
    Observable<PresentFile> present_;
    SubtitlePairing pairing_;
    std::optional<MKVFileInfo> fileInfo_;
    PopUpMenu audioPopUp_;
    Observable<bool> awaitsDisk_{false};
    bool choosing_ = false;    // the open panel has not been answered
    int looking_ = 0;          // batches that are being looked into
    std::stop_source search_;  // stopped when the program ends
    // Stopped when the present file is left, so that a late answer finds nobody.
    std::stop_source stop_{std::nostopstate};
    Observers<> fileInfoObservers_;
    Observers<const std::filesystem::path&, const std::vector<VettingAlert>&> refusals_;
    Observers<> idle_;
    Errands errands_{vantor_.ports().dispatcher};
};

}  // namespace reelvane
