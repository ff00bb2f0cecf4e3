#include "conversion/source_removal.h"

#include <system_error>
#include <utility>

#include "conversion/job_notes.h"
#include "support/localization.h"
#include "support/make_string.h"
#include "support/ports/child_process.h"
#include "support/ports/main_bundle.h"
#include "support/ports/translations.h"
#include "support/ports/workspace.h"
#include "support/strings.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

constexpr std::string_view kHash = "murmur3";  // 128 bits, as fast as any disk

/// The filter that unwraps the codec's units; empty: its packets are the same in every container.
/// The numbers are those of the access unit delimiter (ITU-T H.264, table 7-1; H.265, table 7-1).
std::string_view unwrappingFilter(std::string_view codec) {
    if (codec == "h264") return "filter_units=remove_types=9";
    if (codec == "hevc") return "filter_units=remove_types=35";
    return {};
}

/// What stands after the last occurrence of a word.
std::optional<std::string_view> lastAfter(std::string_view text, std::string_view word) {
    const auto at = text.rfind(word);
    if (at == std::string_view::npos) return std::nullopt;
    return text.substr(at + word.size());
}

}  // namespace

bool readsEdits(std::string_view demuxer) {
    return Fennimar::contains(demuxer, "mp4");
}

std::vector<std::string> hashArguments(const PictureFile& picture) {
    std::vector<std::string> list{"-loglevel", "error", "-stats"};
    const auto append = [&list](std::initializer_list<std::string> more) {
        list.insert(list.end(), more);
    };
    if (picture.hasEdits) append({"-ignore_editlist", "1"});
    append({"-i", picture.path.native(), "-map", picture.stream, "-c", "copy", "-copyinkf"});
    if (const auto filter = unwrappingFilter(picture.codec); !filter.empty()) {
        append({"-bsf:v", std::string(filter)});
    }
    append({"-f", "hash", "-hash", std::string(kHash), "-"});
    return list;
}

std::optional<PictureDigest> digestInOutput(std::string_view printed) {
    const auto hash = lastAfter(printed, std::string(kHash) + "=");
    const auto packets = lastAfter(printed, "frame=");
    if (!hash || !packets) return std::nullopt;
    return PictureDigest{.hash = std::string(Fennimar::partBefore(*hash, "\n")),
                         .packets = static_cast<std::size_t>(Fennimar::leadingInteger(*packets))};
}

std::optional<PictureDigest> digestOf(ProcessLauncher& launcher,
                                      const std::filesystem::path& ffmpeg,
                                      const PictureFile& picture, const std::stop_token& stop) {
    const auto result = launcher.run({.executable = ffmpeg,
                                      .arguments = hashArguments(picture),
                                      .background = true,
                                      .stop = stop});
    if (!result.finished || result.finished->exitStatus != 0) return std::nullopt;
    const auto& printed = result.finished->output;
    // A file that ends at a read error is no error to the converter.
    if (!doubtsOfLog(kUntranslated, {}, printed).empty()) return std::nullopt;
    return digestInOutput(printed);
}

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
        case SourceKind::OtherPicture:
            return localizable(
                "%@ was kept because it holds another picture track that is not in the new file.");
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
