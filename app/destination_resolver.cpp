#include "app/destination_resolver.h"

#include <system_error>
#include <utility>

#include "app/destinations.h"
#include "app/output_names.h"
#include "app/settings_reader.h"
#include "support/alerts.h"
#include "support/dispatch.h"
#include "support/paths.h"
#include "support/ports/folder_access.h"
#include "support/ports/panels.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

/// The same path, or another name of the same file: writing there would destroy the source.
bool isSameFile(const std::filesystem::path& left, const std::filesystem::path& right) {
    std::error_code ignored;
    return left == right || std::filesystem::equivalent(left, right, ignored);
}

}  // namespace

DestinationResolver::DestinationResolver(Vantor& vantor, Destinations& destinations,
                                         OutputNames& names, const RunChoices& choices)
    : vantor_(vantor),
      destinations_(destinations),
      names_(names),
      choices_(choices) {}

std::string DestinationResolver::extension() const {
    return std::string(outputExtension(vantor_.preferences()));
}

void DestinationResolver::resolve(const MKVFileInfo& record, std::optional<std::size_t> menuIndex,
                                  Answer answer) {
    if (choices_.destinationFolder) {
        const auto folder = std::filesystem::absolute(*choices_.destinationFolder);
        answer(ResolvedDestination{.destinationURL =
                                       names_.freePath(folder, record.fileName, extension())});
    } else if (!menuIndex || !destinations_.isDestination(*menuIndex)) {
        answer(std::nullopt);
    } else if (*menuIndex == kAskDestination) {
        askWithSavePanel(record, std::move(answer));
    } else if (*menuIndex == kNextToSourceDestination) {
        findFolderNextTo(record, std::move(answer));
    } else {
        const auto folder = destinations_.openSavedFolder(*menuIndex);
        answer(ResolvedDestination{
            .destinationURL = names_.freePath(folder, record.fileName, extension()),
            .securityURL = folder});
    }
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
                                         const std::filesystem::path& chosen,
                                         const Answer& answer) {
    if (isSameFile(record.fileURL, chosen)) {
        alert_apptitled(vantor_,
                        "You've tried to overwrite the source file with the target file. Thats the "
                        "worst idea ever.",
                        "D'oh");
        answer(std::nullopt);
        return;
    }
    // Another job of the list reads or writes there: the user meant no harm to that one.
    if (names_.isPromised(chosen)) {
        answer(ResolvedDestination{
            .destinationURL =
                names_.freePath(chosen.parent_path(), chosen.filename().native(), extension())});
        return;
    }
    Fennimar::removeFile(chosen);
    answer(ResolvedDestination{.destinationURL = chosen, .chosen = true});
}

std::optional<ResolvedDestination> DestinationResolver::nextTo(const MKVFileInfo& record) {
    const auto folder = record.fileURL.parent_path();
    const auto target = std::filesystem::path(record.fileURL).replace_extension(extension());
    const auto* const opened = folderHolding(destinations_.openedFolders(), target);
    if (opened == nullptr) return std::nullopt;
    ResolvedDestination destination{.destinationURL =
                                        names_.freePath(folder, record.fileName, extension())};
    if (opened->securityScoped && vantor_.ports().folderAccess.startAccessing(opened->folder)) {
        destination.securityURL = opened->folder;
    }
    return destination;
}

void DestinationResolver::findFolderNextTo(const MKVFileInfo& record, Answer answer) {
    if (auto found = nextTo(record)) {
        answer(std::move(found));
        return;
    }
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
            auto found = nextTo(record);
            if (!found) {
                dispatch_async_main(vantor_, [&vantor = vantor_] {
                    alert_apptitled(vantor,
                                    "You did not seem to select a folder that contains your MKV.",
                                    "Cancel");
                });
            }
            answer(std::move(found));
        });
}

}  // namespace reelvane
