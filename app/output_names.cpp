#include "app/output_names.h"

#include <system_error>

#include "conversion/output_reservation.h"
#include "support/paths.h"

namespace reelvane {
namespace {

/// A link that leads nowhere counts: writing through it would make a file elsewhere.
bool somethingLiesAt(const std::filesystem::path& path) {
    std::error_code ignored;
    return std::filesystem::exists(std::filesystem::symlink_status(path, ignored));
}

}  // namespace

std::string OutputNames::keyOf(const std::filesystem::path& path) {
    return path.lexically_normal().native();
}

std::filesystem::path OutputNames::freePath(const std::filesystem::path& folder,
                                            std::string_view inputName,
                                            std::string_view extension) {
    auto name = std::filesystem::path(inputName).stem();
    name += ".";
    name += extension;
    const auto wished = folder / name;
    const auto known = numbers_.find(keyOf(wished));
    auto number = known == numbers_.end() ? 0 : known->second;
    auto path = Fennimar::uniqueFile(
        wished, [this](const std::filesystem::path& candidate) { return isPromised(candidate); },
        &number);
    if (number > 0) numbers_[keyOf(wished)] = number;
    return path;
}

void OutputNames::promise(const std::filesystem::path& path) {
    ++promises_[keyOf(path)];
}

void OutputNames::release(const std::filesystem::path& path) {
    const auto found = promises_.find(keyOf(path));
    if (found != promises_.end() && --found->second <= 0) promises_.erase(found);
    numbers_.clear();
}

bool OutputNames::isPromised(const std::filesystem::path& path) const {
    const auto found = promises_.find(keyOf(path));
    return found != promises_.end() && found->second > 0;
}

void OutputNames::refresh(MKVFileInfo& record) {
    if (!record.destinationURL) return;
    const auto present = *record.destinationURL;
    if (record.outputClaim == OutputClaim::Chosen || !somethingLiesAt(present)) return;
    release(present);
    record.destinationURL =
        freePath(present.parent_path(), record.fileName, present.extension().native().substr(1));
    promise(*record.destinationURL);
}

void OutputNames::claim(MKVFileInfo& record) {
    auto reservation = Reservation::Taken;
    while (reservation == Reservation::Taken) {
        refresh(record);
        if (!record.destinationURL || record.outputClaim == OutputClaim::Chosen) return;
        reservation = reserveOutput(*record.destinationURL);
    }
    // Where none can be made, the converter will say what is wrong there.
    if (reservation == Reservation::Made) record.outputClaim = OutputClaim::Reserved;
}

}  // namespace reelvane
