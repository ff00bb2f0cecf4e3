#include "conversion/start_facts.h"

#include <system_error>

#include "conversion/output_reservation.h"
#include "support/birth_mark.h"
#include "support/paths.h"

namespace reelvane {
namespace {

bool isPresentFile(const std::filesystem::path& path) {
    std::error_code ignored;
    const auto status = std::filesystem::status(path, ignored);  // of what a link leads to
    return std::filesystem::exists(status) && !std::filesystem::is_directory(status);
}

/// Makes the file that the converter will write, so that it is known which one is its own.
void reserveClearedOutput(MKVFileInfo& record) {
    deleteUnlessSource(*record.destinationURL, record.fileURL);
    const auto reservation = reserveOutput(*record.destinationURL);
    if (reservation == Reservation::Made) record.outputClaim = OutputClaim::Reserved;
}

}  // namespace

StartFacts prepareStart(MKVFileInfo record, const std::function<void(MKVFileInfo&)>& claim,
                        const std::function<bool()>& isWanted) {
    StartFacts facts{.inputPresent = isPresentFile(record.fileURL),
                     .destinationURL = record.destinationURL,
                     .outputClaim = record.outputClaim};
    if (!facts.inputPresent || !record.destinationURL) return facts;
    facts.writesOverInput = Fennimar::isSameFile(*record.destinationURL, record.fileURL);
    if (facts.writesOverInput) return facts;
    // Before something of the job lies there: this may be what waits for ever.
    facts.volume = volumeFacts(record.destinationURL->parent_path());
    if (!isWanted()) return facts;
    if (record.outputClaim == OutputClaim::Chosen) {
        reserveClearedOutput(record);
    } else {
        claim(record);
    }
    facts.destinationURL = record.destinationURL;
    facts.outputClaim = record.outputClaim;
    facts.outputMark = birthMarkOf(*record.destinationURL).value_or("");
    return facts;
}

void deleteUnlessSource(const std::filesystem::path& output, const std::filesystem::path& source) {
    if (!Fennimar::isSameFile(output, source)) Fennimar::removeFile(output);
}

}  // namespace reelvane
