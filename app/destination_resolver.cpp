#include "app/destination_resolver.h"

#include <utility>

#include "app/bookmark_problem.h"
#include "app/destinations.h"
#include "app/output_names.h"
#include "app/settings_reader.h"
#include "support/alerts.h"
#include "support/dispatch.h"
#include "support/logging.h"
#include "support/paths.h"
#include "support/ports/panels.h"
#include "support/vantor.h"

namespace reelvane {

struct DestinationResolver::Found {
    std::optional<ResolvedDestination> destination{};
    std::optional<BookmarkProblem> problem{};
    bool isSource = false;
};

namespace {

ResolvedDestination placeIn(OutputNames& names, const std::filesystem::path& folder,
                            const std::string& fileName, const std::string& extension) {
    auto path = names.takeFreePath(folder, fileName, extension);
    const bool isWriteable = Fennimar::isWriteablePath(path);
    return {.destinationURL = std::move(path), .isWriteable = isWriteable};
}

}  // namespace

DestinationResolver::DestinationResolver(Vantor& vantor, Destinations& destinations,
                                         std::shared_ptr<OutputNames> names,
                                         const RunChoices& choices)
    : vantor_(vantor),
      destinations_(destinations),
      names_(std::move(names)),
      choices_(choices) {}

std::string DestinationResolver::extension() const {
    return std::string(outputExtension(vantor_.preferences()));
}

void DestinationResolver::resolve(const MKVFileInfo& record, std::optional<std::size_t> menuIndex,
                                  Answer answer) {
    if (choices_.destinationFolder) {
        searchInBackground(
            [names = names_, folder = std::filesystem::absolute(*choices_.destinationFolder),
             name = record.fileName, type = extension()] {
                return Found{.destination = placeIn(*names, folder, name, type)};
            },
            std::move(answer));
    } else if (!menuIndex || !destinations_.isDestination(*menuIndex)) {
        answer(std::nullopt);
    } else if (*menuIndex == kAskDestination) {
        askWithSavePanel(record, std::move(answer));
    } else if (*menuIndex == kNextToSourceDestination) {
        findFolderNextTo(record, std::move(answer));
    } else {
        takeSavedFolder(record, destinations_.savedFolder(*menuIndex), std::move(answer));
    }
}

void DestinationResolver::release(const ResolvedDestination& destination) {
    names_->release(destination.destinationURL);
    if (destination.securityURL) {
        vantor_.ports().folderAccess.stopAccessing(*destination.securityURL);
    }
}

void DestinationResolver::searchInBackground(Search search, Answer answer) {
    if (searchBegun_) searchBegun_();
    dispatch_async_back(vantor_, [this, &vantor = vantor_, alive = std::weak_ptr(alive_),
                                  search = std::move(search), answer = std::move(answer)] {
        dispatch_async_main(vantor, [this, alive, answer, found = search()] {
            if (!alive.lock()) return;
            if (found.problem) tell(*found.problem);
            if (found.isSource) {
                alert_apptitled(vantor_,
                                "You've tried to overwrite the source file with the target file. "
                                "Thats the worst idea ever.",
                                "D'oh");
            }
            answer(found.destination);
        });
    });
}

void DestinationResolver::tell(const BookmarkProblem& problem) {
    vn_log_level(LogError, "%@: %@", problem.name(), problem.what());
    alert_apptitled(vantor_,
                    "The saved folder cannot be opened. Is its disk connected? Please try again "
                    "then, or choose another place.",
                    "OK");
}

void DestinationResolver::takeSavedFolder(const MKVFileInfo& record, const BookmarkData& bookmark,
                                          Answer answer) {
    searchInBackground(
        [names = names_, &access = vantor_.ports().folderAccess, bookmark, name = record.fileName,
         type = extension()] {
            try {
                const auto folder = openSavedFolder(access, bookmark);
                auto place = placeIn(*names, folder, name, type);
                place.securityURL = folder;
                return Found{.destination = std::move(place)};
            } catch (const BookmarkProblem& problem) {
                return Found{.problem = problem};
            }
        },
        std::move(answer));
}

void DestinationResolver::askWithSavePanel(const MKVFileInfo& record, Answer answer) {
    const auto type = extension();
    auto name = std::filesystem::path(record.fileName).replace_extension(type).native();
    vantor_.ports().panels.save(
        {.folder = record.fileURL.parent_path(), .fileName = std::move(name), .extension = type},
        [this, alive = std::weak_ptr(alive_), record,
         answer = std::move(answer)](const std::optional<std::filesystem::path>& chosen) {
            if (!alive.lock()) return;
            if (chosen) {
                takeChosenPath(record, *chosen, answer);
            } else {
                answer(std::nullopt);
            }
        });
}

void DestinationResolver::takeChosenPath(const MKVFileInfo& record,
                                         const std::filesystem::path& chosen, Answer answer) {
    searchInBackground(
        [names = names_, source = record.fileURL, chosen, type = extension()] {
            if (Fennimar::isSameFile(source, chosen)) return Found{.isSource = true};
            // Where another job of the list reads or writes, the user meant no harm to that one.
            if (!names->promiseIfFree(chosen)) {
                return Found{.destination = placeIn(*names, chosen.parent_path(),
                                                    chosen.filename().native(), type)};
            }
            Fennimar::removeFile(chosen);
            return Found{.destination =
                             ResolvedDestination{.destinationURL = chosen,
                                                 .chosen = true,
                                                 .isWriteable = Fennimar::isWriteablePath(chosen)}};
        },
        std::move(answer));
}

bool DestinationResolver::goNextTo(const MKVFileInfo& record, const Answer& answer) {
    const auto target = std::filesystem::path(record.fileURL).replace_extension(extension());
    const auto* const opened = folderHolding(destinations_.openedFolders(), target);
    if (opened == nullptr) return false;
    searchInBackground(
        [names = names_, &access = vantor_.ports().folderAccess, opened = *opened,
         folder = record.fileURL.parent_path(), name = record.fileName, type = extension()] {
            auto place = placeIn(*names, folder, name, type);
            if (opened.securityScoped && access.startAccessing(opened.folder)) {
                place.securityURL = opened.folder;
            }
            return Found{.destination = std::move(place)};
        },
        answer);
    return true;
}

void DestinationResolver::findFolderNextTo(const MKVFileInfo& record, Answer answer) {
    if (goNextTo(record, answer)) return;
    alert_apptitled(
        vantor_,
        "You've chosen the 'Next to' default destination for converted MP4 files. Since Apple's "
        "SandBox limits access to your files you have to open the folder that contains all MKV "
        "files that you want to convert",
        "OK");
    vantor_.ports().panels.open(
        {.chooseFolder = true},
        [this, alive = std::weak_ptr(alive_), record,
         answer = std::move(answer)](const std::vector<std::filesystem::path>& chosen) {
            if (!alive.lock()) return;
            if (chosen.empty()) {
                answer(std::nullopt);
                return;
            }
            destinations_.addOpenedFolder(chosen.front());
            if (goNextTo(record, answer)) return;
            dispatch_async_main(vantor_, [&vantor = vantor_] {
                alert_apptitled(vantor,
                                "You did not seem to select a folder that contains your MKV.",
                                "Cancel");
            });
            answer(std::nullopt);
        });
}

}  // namespace reelvane
