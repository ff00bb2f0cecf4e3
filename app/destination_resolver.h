#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/run_choices.h"
#include "media/mkv_file_info.h"

namespace reelvane {

class Destinations;
class OutputNames;
class Vantor;

/// Where one output goes.
struct ResolvedDestination {
    std::filesystem::path destinationURL{};
    std::optional<std::filesystem::path> securityURL{};  ///< a folder whose access was started
    bool chosen = false;  ///< the user chose this very path and agreed to replace what is there
};

/// Finds the output path for one input, asking the user where need be. Main thread only. A panel
/// that is answered after its end answers nobody.
class DestinationResolver {
public:
    /// Absent: there is no destination, and the user knows why. Called once, maybe at once.
    using Answer = std::function<void(std::optional<ResolvedDestination>)>;

    DestinationResolver(Vantor& vantor, Destinations& destinations, OutputNames& names,
                        const RunChoices& choices);

    /// `menuIndex` is the selected row of the destination menu. Throws BookmarkProblem when a saved
    /// folder cannot be used.
    void resolve(const MKVFileInfo& record, std::optional<std::size_t> menuIndex, Answer answer);

private:
    void askWithSavePanel(const MKVFileInfo& record, Answer answer);
    void takeChosenPath(const MKVFileInfo& record, const std::filesystem::path& chosen,
                        const Answer& answer);
    void findFolderNextTo(const MKVFileInfo& record, Answer answer);
    [[nodiscard]] std::optional<ResolvedDestination> nextTo(const MKVFileInfo& record);
    [[nodiscard]] std::string extension() const;

    Vantor& vantor_;
    Destinations& destinations_;
    OutputNames& names_;
    const RunChoices& choices_;
    // Shared only so that the answer of a panel after this object's end can tell.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace reelvane
