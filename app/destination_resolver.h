#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "app/run_choices.h"
#include "media/mkv_file_info.h"
#include "support/ports/folder_access.h"

namespace reelvane {

class BookmarkProblem;
class Destinations;
class OutputNames;
class Vantor;

/// Where one output goes.
struct ResolvedDestination {
    std::filesystem::path destinationURL{};              ///< promised to the job
    std::optional<std::filesystem::path> securityURL{};  ///< a folder whose access was started
    bool chosen = false;  ///< the user chose this very path and agreed to replace what is there
    bool isWriteable = false;
};

/// Finds the output path for one input, asking the user where need be. The disks are asked in the
/// background. Main thread only.
class DestinationResolver {
public:
    /// Absent: there is no destination, and the user knows why. Called once, maybe at once; never
    /// after the end of the resolver.
    using Answer = std::function<void(std::optional<ResolvedDestination>)>;

    DestinationResolver(Vantor& vantor, Destinations& destinations,
                        std::shared_ptr<OutputNames> names, const RunChoices& choices);

    /// Told whenever a disk is asked from now on; its answer comes with that of `resolve`.
    void setSearchBegun(std::function<void()> begun) { searchBegun_ = std::move(begun); }
    /// `menuIndex` is the selected row of the destination menu.
    void resolve(const MKVFileInfo& record, std::optional<std::size_t> menuIndex, Answer answer);
    /// Gives back what an answer gave that nobody waits for any more.
    void release(const ResolvedDestination& destination);

private:
    /// What the disks have said.
    struct Found;
    using Search = std::function<Found()>;

    void askWithSavePanel(const MKVFileInfo& record, Answer answer);
    void takeChosenPath(const MKVFileInfo& record, const std::filesystem::path& chosen,
                        Answer answer);
    void takeSavedFolder(const MKVFileInfo& record, const BookmarkData& bookmark, Answer answer);
    void findFolderNextTo(const MKVFileInfo& record, Answer answer);
    /// False when no opened folder holds the record's file.
    [[nodiscard]] bool goNextTo(const MKVFileInfo& record, const Answer& answer);
    void searchInBackground(Search search, Answer answer);
    void tell(const BookmarkProblem& problem);
    [[nodiscard]] std::string extension() const;

    Vantor& vantor_;
    Destinations& destinations_;
    std::shared_ptr<OutputNames> names_;  // shared with searches that may end after this
    const RunChoices& choices_;
    std::function<void()> searchBegun_;
    // Shared only so that what ends after this object can tell.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace reelvane
