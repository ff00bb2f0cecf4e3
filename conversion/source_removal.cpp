#include "conversion/source_removal.h"

#include <system_error>
#include <utility>

#include "support/localization.h"
#include "support/make_string.h"
#include "support/ports/main_bundle.h"
#include "support/ports/translations.h"
#include "support/ports/workspace.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

using SourceKind = SourceFate::Kind;

bool isStill(const std::optional<FileVersion>& identity, const PictureFile& file) {
    return identity && identity == fileVersionOf(file.path);
}

SourceFate removed(Workspace& workspace, const SourceRemoval& removal) {
    const auto& path = removal.source.path;
    std::string problem;
    if (removal.toTrash) {
        problem = workspace.recycle(path);
    } else {
        std::error_code failed;
        std::filesystem::remove(path, failed);
        if (failed) problem = failed.message();
    }
    if (problem.empty()) return {};
    return {.kind = SourceKind::NotRemoved, .problem = std::move(problem)};
}

SourceFate decide(const Ports& ports, const SourceRemoval& removal, const std::stop_token& stop) {
    // Before the long part too, which would be in vain.
    if (!isStill(removal.sourceIdentity, removal.source)) return {.kind = SourceKind::Changed};
    const auto ffmpeg = ports.mainBundle.pathForResource("ffmpeg");
    const auto source = digestOf(ports.processLauncher, ffmpeg, removal.source, stop);
    if (!source) return {.kind = SourceKind::NotCompared};
    const auto output = digestOf(ports.processLauncher, ffmpeg, removal.output, stop);
    if (!output) return {.kind = SourceKind::NotCompared};
    if (*source != *output) return {.kind = SourceKind::Different};
    if (!isStill(removal.outputIdentity, removal.output)) return {.kind = SourceKind::OutputGone};
    if (!isStill(removal.sourceIdentity, removal.source)) return {.kind = SourceKind::Changed};
    if (stop.stop_requested()) return {.kind = SourceKind::NotCompared};
    return removed(ports.workspace, removal);
}

std::string_view formatOf(SourceKind kind, bool toTrash) {
    switch (kind) {
        case SourceKind::Removed:
            break;
        case SourceKind::Doubtful:
            return localizable("%@ was kept because the result may differ from it.");
        case SourceKind::NoLength:
            return localizable("%@ was kept because it does not say how long it is.");
        case SourceKind::Short:
            return localizable("%@ was kept because it says that it is longer than the new file.");
        case SourceKind::NotOnDisk:
            return localizable(
                "%@ was kept because the disk of the new file did not confirm that it is stored.");
        case SourceKind::Changed:
            return localizable("%@ was kept because it was changed after it had been added.");
        case SourceKind::OutputGone:
            return localizable("%@ was kept because the new file was changed meanwhile.");
        case SourceKind::NotCompared:
            return localizable("%@ was kept because it could not be compared with the new file.");
        case SourceKind::Different:
            return localizable(
                "%@ was kept because the new file does not hold exactly the same picture.");
        case SourceKind::NotRemoved:
            return toTrash ? localizable("%@ could not be moved to the Trash: %@")
                           : localizable("%@ could not be deleted: %@");
    }
    return {};
}

}  // namespace

std::string sourceFateText(const Translations& translations, std::string_view fileName,
                           const SourceFate& fate, bool toTrash) {
    const auto format = formatOf(fate.kind, toTrash);
    if (format.empty()) return {};
    return makeString(translations.localized(format), fileName, fate.problem);
}

SourceRemover::SourceRemover(Vantor& vantor, Turns& turns, SourceRemoval removal,
                             std::function<void(const SourceFate&)> then)
    : vantor_(vantor),
      removal_(std::move(removal)),
      then_(std::move(then)),
      errands_(vantor.ports().dispatcher),
      turn_(turns.take([this] { begin(); })) {}

void SourceRemover::begin() {
    errands_.run([&ports = vantor_.ports(), removal = removal_,
                  stop = stop_.get_token()] { return decide(ports, removal, stop); },
                 [this](const SourceFate& fate) {
                     turn_ = {};  // whoever is told may look whether all is over
                     const auto then = std::move(then_);
                     then(fate);
                 });
}

}  // namespace reelvane
