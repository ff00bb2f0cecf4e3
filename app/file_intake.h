#pragma once

#include <cstddef>
#include <exception>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "app/destination_resolver.h"
#include "app/file_sorting.h"
#include "app/pop_up_menu.h"
#include "app/run_choices.h"
#include "app/subtitle_pairing.h"
#include "conversion/conversion_job.h"
#include "media/mkv_file_info.h"
#include "media/probe.h"
#include "media/vetting.h"
#include "support/observable.h"

namespace reelvane {

class Destinations;
class OutputNames;
class Vantor;

/// The height of the file sheet's place in the window while it is shown.
inline constexpr int kSheetShown = 117;
inline constexpr int kSheetHidden = 0;

/// Takes files in, probes them one at a time in the background, shows each in the file sheet and
/// turns it into a job. Main thread only. A window mirrors the sheet's state from here.
class FileIntake {
public:
    /// What the intake asks of the controller.
    class Owner {
    public:
        virtual ~Owner() = default;
        /// `isWriteable`: its output can be made where it is to go.
        virtual void addJob(std::unique_ptr<ConversionJob> job, bool isWriteable) = 0;
        /// What a new job reports to.
        [[nodiscard]] virtual ConversionJob::Controller& jobController() = 0;
        virtual void updateWindowTitle() = 0;
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

    void openFiles(const std::vector<std::filesystem::path>& paths);
    /// Lets the user pick files.
    void addClicked();
    /// Makes the job for the file that the sheet shows.
    void addToQueue();
    /// Leaves the present file, whatever is being done with it, and takes the next one, or hides
    /// the sheet.
    void cancelAdd();

    /// Leaves the present file and takes no other: the program ends.
    void stop() { turn_.request_stop(); }

    /// True while a file waits, is being probed or is shown for the user's choice.
    [[nodiscard]] bool isBusy() const;
    /// True while files wait to be probed.
    [[nodiscard]] bool hasWaitingFiles() const { return !importFiles_.empty(); }
    /// How many files wait to be probed.
    [[nodiscard]] Observable<std::size_t>& waitingCount() { return waitingCount_; }
    /// The file that is being probed or shown, or was so last; set before `isScanning` is.
    [[nodiscard]] const std::filesystem::path& presentFile() const { return presentFile_; }

    [[nodiscard]] const std::optional<MKVFileInfo>& fileInfo() const { return fileInfo_; }
    void clearFileInfo();
    /// Tells the observers of refusals about a file that was taken but cannot become a job.
    void refuse(const std::filesystem::path& file, const std::vector<VettingAlert>& alerts);

    [[nodiscard]] PopUpMenu& audioPopUp() { return audioPopUp_; }
    [[nodiscard]] Observable<bool>& isScanning() { return isScanning_; }
    /// The disk is being asked for a place for the file that the user has added.
    [[nodiscard]] Observable<bool>& awaitsDisk() { return awaitsDisk_; }
    [[nodiscard]] Observable<int>& topConstraint() { return topConstraint_; }

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
        std::optional<std::filesystem::path> subtitle{};
        Inspection inspection{};
        std::exception_ptr exception{};  ///< a report that could not be read
    };

    /// Stopped when the present file is left, so that a late answer finds nobody.
    using Turn = std::stop_token;

    void sortInBackground(std::vector<std::filesystem::path> paths);
    void take(SortedFiles sorted);
    [[nodiscard]] bool handlesFile() const;
    void addNextFile();
    [[nodiscard]] ProbeTools tools() const;
    void probeInBackground(Probe probe);
    void probed(const Probe& probe, const Turn& turn);
    void accept(const Probe& probe);
    void skip(const std::filesystem::path& file, const std::vector<VettingAlert>& alerts);
    void stopForToolProblem(const Probe& probe);
    void fillAudioPopUp();
    void resolved(std::size_t audioTrackIndex,
                  const std::optional<ResolvedDestination>& destination);
    void endResolving();
    void addResolved(std::size_t audioTrackIndex, const ResolvedDestination& destination);
    void leaveUnadded();
    [[nodiscard]] VettingAlert plainAlert(std::string message) const;

    Vantor& vantor_;
    Owner& owner_;
    Destinations& destinations_;
    const RunChoices& choices_;
    DestinationResolver resolver_;
    std::vector<std::string> preferredLanguages_;
    std::vector<std::filesystem::path> importFiles_;  // taken from the end
    Observable<std::size_t> waitingCount_{0};
    std::filesystem::path presentFile_;
    bool resolving_ = false;  // a panel or a disk is asked for the present file's destination
    SubtitlePairing pairing_;
    std::optional<MKVFileInfo> fileInfo_;
    PopUpMenu audioPopUp_;
    Observable<bool> isScanning_{false};
    Observable<bool> awaitsDisk_{false};
    Observable<int> topConstraint_{kSheetHidden};
    bool choosing_ = false;  // the open panel has not been answered
    int sorting_ = 0;        // batches whose subtitle files are being looked at
    std::stop_source turn_{std::nostopstate};
    Observers<> fileInfoObservers_;
    Observers<const std::filesystem::path&, const std::vector<VettingAlert>&> refusals_;
    Observers<> idle_;
    // Shared only so that what ends after this object can tell.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace reelvane
