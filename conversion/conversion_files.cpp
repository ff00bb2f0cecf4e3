// The files that a job makes: the output, which it may delete as long as it is its own, and the
// progress file.

#include <system_error>
#include <utility>

#include "conversion/conversion_job.h"
#include "conversion/output_reservation.h"
#include "support/bundle.h"
#include "support/make_string.h"
#include "support/paths.h"
#include "support/strings.h"

namespace reelvane {

bool ConversionJob::makeFiles() {
    if (fileInfo_.outputClaim != OutputClaim::Reserved) {
        deleteOutput();
        reserveClearedOutput();
    }
    ownsOutput_ = true;
    auto made = ProgressFile::create(vantor_, fileInfo_.fileName);
    if (!made) {
        refuseStart(makeString(
            localized(vantor_,
                      "The conversion of %@ can't be started because neither your documents folder "
                      "nor a folder for temporary files can be written. Please check the free "
                      "space and the permissions there and try again."),
            Fennimar::validUtf8(fileInfo_.fileName)));
        return false;
    }
    progressFile_ = std::move(*made);
    if (fileInfo_.destinationURL) {
        controller_.outputBegun(*fileInfo_.destinationURL, progressFile_.path());
    }
    return true;
}

bool ConversionJob::writesOverInput() const {
    std::error_code ignored;
    return fileInfo_.destinationURL &&
           std::filesystem::equivalent(*fileInfo_.destinationURL, fileInfo_.fileURL, ignored);
}

void ConversionJob::deleteOutput() {
    ownsOutput_ = false;
    // The source is never touched, however the output came to name it.
    if (fileInfo_.destinationURL && !writesOverInput()) {
        Fennimar::removeFile(*fileInfo_.destinationURL);
    }
}

void ConversionJob::reserveClearedOutput() {
    if (!fileInfo_.destinationURL) return;
    const auto reservation = reserveOutput(*fileInfo_.destinationURL);
    if (reservation == Reservation::Made) fileInfo_.outputClaim = OutputClaim::Reserved;
}

void ConversionJob::deleteReservation() {
    if (fileInfo_.outputClaim != OutputClaim::Reserved) return;
    deleteOutput();
    fileInfo_.outputClaim = OutputClaim::None;
}

void ConversionJob::settleOutput() {
    if (fileInfo_.destinationURL) controller_.outputSettled(*fileInfo_.destinationURL);
}

}  // namespace reelvane
