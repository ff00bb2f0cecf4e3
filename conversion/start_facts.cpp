#include "conversion/start_facts.h"

#include <system_error>

#include "conversion/fixup_trial.h"
#include "support/paths.h"

namespace reelvane {
namespace {

bool isPresentFile(const std::filesystem::path& path) {
    std::error_code ignored;
    const auto status = std::filesystem::status(path, ignored);  // of what a link leads to
    return std::filesystem::exists(status) && !std::filesystem::is_directory(status);
}

}  // namespace

StartFacts prepareStart(Vantor& vantor, const StartQuestion& question) {
    const auto& record = question.record;
    StartFacts facts{.inputPresent = isPresentFile(record.fileURL)};
    if (!facts.inputPresent || !record.destinationURL) return facts;
    facts.writesOverInput = Fennimar::isSameFile(*record.destinationURL, record.fileURL);
    if (facts.writesOverInput) return facts;
    // Before something of the job lies there: this may be what waits for ever. What is to be
    // replaced is still there, so that there is room for both.
    facts.volume = volumeFacts(record.destinationURL->parent_path());
    if (question.unwanted.stop_requested()) return facts;
    facts.output = OutputLease::take(question.outputs, record, question.progressFolders);
    if (facts.output.lease.files() && question.copiedAAC) {
        facts.needsFixup = needFixup(vantor, *question.version, record, *question.copiedAAC);
    }
    return facts;
}

}  // namespace reelvane
