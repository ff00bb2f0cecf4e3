#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <utility>

#include "app/destinations.h"
#include "app/settings_reader.h"
#include "media/mkv_file_info.h"
#include "media/vetting.h"
#include "support/errands.h"
#include "support/ports/folder_access.h"
#include "support/vantor.h"

namespace reelvane {

class OutputNames;

/// Where one output goes.
struct ResolvedDestination {
    std::filesystem::path destinationURL{};              ///< promised to the job
    std::optional<std::filesystem::path> securityURL{};  ///< a folder whose access was started
    bool chosen = false;  ///< the user chose this very path and agreed to replace what is there
    bool isWriteable = false;  ///< the output can be made there
};

/// What came of the search for a place.
struct Resolution {
    std::optional<ResolvedDestination> destination{};
    std::optional<VettingAlert> problem{};  ///< why there is none; absent: the user declined
};

/// Finds the output path for one input, asking the user where need be. The disks are asked in the
/// background. Main thread only.
class DestinationResolver {
public:
    /// Called once, maybe at once, or never when nobody waits any more.
    using Answer = std::function<void(const Resolution&)>;

    DestinationResolver(Vantor& vantor, Destinations& destinations,
                        std::shared_ptr<OutputNames> names, const RunChoices& choices);

    /// Told when a disk is being asked, and when it has answered.
    void setSearching(std::function<void(bool)> searching) { searching_ = std::move(searching); }
    /// Without a choice there is no place. After a request to stop the user is asked and told
    /// nothing more, and nothing is touched.
    void resolve(const MKVFileInfo& record, const std::optional<DestinationChoice>& choice,
                 const std::stop_token& stop, Answer answer);

private:
    /// What the disks have said.
    struct SearchResult;
    using Search = std::function<SearchResult()>;

    /// What is to be found for whom.
    struct Task {
        MKVFileInfo record{};
        std::stop_token stop{};
        Answer answer{};
    };

    void askWithSavePanel(const Task& task);
    void openSavePanel(const Task& task, const std::string& proposedName);
    void takeChosenPath(const Task& task, const std::filesystem::path& chosen);
    void takeSavedFolder(const Task& task, const BookmarkData& bookmark);
    void findFolderNextTo(const Task& task);
    /// False when no opened folder holds the record's file.
    [[nodiscard]] bool goNextTo(const Task& task);
    void searchInBackground(const Task& task, Search search);
    [[nodiscard]] Resolution judged(const SearchResult& found);
    void release(const ResolvedDestination& destination);
    [[nodiscard]] std::string extension() const;

    Vantor& vantor_;
    Destinations& destinations_;
    std::shared_ptr<OutputNames> names_;  // shared with searches that may end after this
    const RunChoices& choices_;
    std::function<void(bool)> searching_ = [](bool) {};
    Errands errands_{vantor_.ports().dispatcher};
};

}  // namespace reelvane
