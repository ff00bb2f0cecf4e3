#include "app/destination_resolver.h"

#include <utility>

#include "app/destinations.h"
#include "app/outputs.h"
#include "app/saved_destinations.h"
#include "app/settings_reader.h"
#include "support/alerts.h"
#include "support/dispatch.h"
#include "support/localization.h"
#include "support/logging.h"
#include "support/make_string.h"
#include "support/paths.h"
#include "support/ports/panels.h"
#include "support/strings.h"
#include "support/vantor.h"

namespace reelvane {

struct DestinationResolver::SearchResult {
    std::optional<ResolvedDestination> destination{};
    std::string problem{};  ///< to be told; empty: none
    std::string button = "OK";
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

void DestinationResolver::resolve(const MKVFileInfo& record,
                                  const std::optional<DestinationChoice>& choice,
                                  const std::stop_token& stop, Answer answer) {
    const Task task{.record = record, .stop = stop, .answer = std::move(answer)};
    if (choices_.destinationFolder) {
        searchInBackground(
            task, [names = names_, folder = std::filesystem::absolute(*choices_.destinationFolder),
                   name = record.fileName, type = extension()] {
                return SearchResult{.destination = placeIn(*names, folder, name, type)};
            });
    } else if (!choice) {
        task.answer({});
    } else if (choice->kind == DestinationChoice::Kind::Ask) {
        askWithSavePanel(task);
    } else if (choice->kind == DestinationChoice::Kind::NextToSource) {
        findFolderNextTo(task);
    } else {
        takeSavedFolder(task, choice->folder);
    }
}

void DestinationResolver::searchInBackground(const Task& task, Search search) {
    searching_(true);
    errands_.run(std::move(search), [this, task](const SearchResult& found) {
        if (task.stop.stop_requested()) {
            if (found.destination) release(*found.destination);
            return;
        }
        searching_(false);
        task.answer(judged(found));
    });
}

Resolution DestinationResolver::judged(const SearchResult& found) {
    VettingAlert problem{
        .title = vantor_.appName(), .message = found.problem, .button = found.button};
    if (!problem.message.empty()) return {.problem = std::move(problem)};
    if (!found.destination || found.destination->isWriteable) {
        return {.destination = found.destination};
    }
    release(*found.destination);
    problem.message = localized(
        vantor_,
        "You don't seem to have write access to the selected destinatation or it is a read-only "
        "filesystem. Please choose another destination.");
    return {.problem = std::move(problem)};
}

void DestinationResolver::release(const ResolvedDestination& destination) {
    names_->release(destination.destinationURL);
    if (destination.securityURL) {
        vantor_.ports().folderAccess.stopAccessing(*destination.securityURL);
    }
}

void DestinationResolver::takeSavedFolder(const Task& task, const BookmarkData& bookmark) {
    auto problem = makeString(
        localized(vantor_,
                  "The saved folder %@ cannot be opened, so there is no place for %@. Is its disk "
                  "connected? Please try again then, or choose another place."),
        Fennimar::validUtf8(vantor_.ports().folderAccess.pathOf(bookmark).native()),
        Fennimar::validUtf8(task.record.fileName));
    searchInBackground(
        task, [names = names_, &access = vantor_.ports().folderAccess, bookmark,
               name = task.record.fileName, type = extension(), problem = std::move(problem)] {
            try {
                const auto folder = openSavedFolder(access, bookmark);
                auto place = placeIn(*names, folder, name, type);
                place.securityURL = folder;
                return SearchResult{.destination = std::move(place)};
            } catch (const BookmarkProblem& thrown) {
                vn_log_level(LogError, "%@: %@", thrown.name(), thrown.what());
                return SearchResult{.problem = problem};
            }
        });
}

void DestinationResolver::askWithSavePanel(const Task& task) {
    const auto& source = task.record.fileURL;
    const auto name =
        std::filesystem::path(task.record.fileName).replace_extension(extension()).native();
    if (Fennimar::lowercased(name) != Fennimar::lowercased(source.filename().native())) {
        openSavePanel(task, name);
        return;
    }
    // The source's own name is not proposed, but the next one that is free.
    errands_.run(
        [names = names_, folder = source.parent_path(), name, type = extension()] {
            const auto free = names->takeFreePath(folder, name, type);
            names->release(free);
            return free.filename().native();
        },
        [this, task](const std::string& free) {
            if (!task.stop.stop_requested()) openSavePanel(task, free);
        });
}

void DestinationResolver::openSavePanel(const Task& task, const std::string& proposedName) {
    vantor_.ports().panels.save({.folder = task.record.fileURL.parent_path(),
                                 .fileName = proposedName,
                                 .extension = extension(),
                                 .stop = task.stop},
                                errands_.whileHere([this, task](const auto& chosen) {
                                    if (task.stop.stop_requested()) return;
                                    if (chosen) {
                                        takeChosenPath(task, *chosen);
                                    } else {
                                        task.answer({});
                                    }
                                }));
}

void DestinationResolver::takeChosenPath(const Task& task, const std::filesystem::path& chosen) {
    searchInBackground(task, [names = names_, source = task.record.fileURL, stop = task.stop,
                              chosen, type = extension()] {
        if (Fennimar::isSameFile(source, chosen)) {
            return SearchResult{.problem =
                                    "You've tried to overwrite the source file with the target "
                                    "file. Thats the worst idea ever.",
                                .button = "D'oh"};
        }
        if (stop.stop_requested()) return SearchResult{};
        // Where another job of the list reads or writes, the user meant no harm to that one.
        if (!names->promiseIfFree(chosen)) {
            return SearchResult{.destination = placeIn(*names, chosen.parent_path(),
                                                       chosen.filename().native(), type)};
        }
        // What lies there stays until the new file is proven, and then is replaced in one step.
        return SearchResult{
            .destination = ResolvedDestination{
                .destinationURL = chosen,
                .chosen = true,
                .isWriteable = Fennimar::isWriteablePath(Fennimar::uniqueFile(chosen))}};
    });
}

bool DestinationResolver::goNextTo(const Task& task) {
    const auto& source = task.record.fileURL;
    const auto target = std::filesystem::path(source).replace_extension(extension());
    const auto* const opened = folderHolding(destinations_.openedFolders(), target);
    if (opened == nullptr) return false;
    searchInBackground(
        task, [names = names_, &access = vantor_.ports().folderAccess, opened = *opened,
               folder = source.parent_path(), name = task.record.fileName, type = extension()] {
            auto place = placeIn(*names, folder, name, type);
            if (opened.securityScoped && access.startAccessing(opened.folder)) {
                place.securityURL = opened.folder;
            }
            return SearchResult{.destination = std::move(place)};
        });
    return true;
}

void DestinationResolver::findFolderNextTo(const Task& task) {
    if (goNextTo(task)) return;
    alert_apptitled(
        vantor_,
        "You've chosen the 'Next to' default destination for converted MP4 files. Since Apple's "
        "SandBox limits access to your files you have to open the folder that contains all MKV "
        "files that you want to convert",
        "OK");
    if (task.stop.stop_requested()) return;
    vantor_.ports().panels.open(
        {.chooseFolder = true, .stop = task.stop},
        errands_.whileHere([this, task](const std::vector<std::filesystem::path>& chosen) {
            if (task.stop.stop_requested()) return;
            if (chosen.empty()) {
                task.answer({});
                return;
            }
            destinations_.addOpenedFolder(chosen.front());
            if (goNextTo(task)) return;
            task.answer(judged({.problem = localized(vantor_,
                                                     "You did not seem to select a folder "
                                                     "that contains your MKV."),
                                .button = "Cancel"}));
        }));
}

}  // namespace reelvane
