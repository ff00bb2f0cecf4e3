#pragma once

#include <string>
#include <string_view>

#include "conversion/diagnosis.h"

namespace reelvane {

class Vantor;

/// What a report says of the run itself.
struct FailedRun {
    std::string arguments{};  ///< joined with single spaces
    std::string jobOutput{};  ///< whole
    std::string recordDescription{};
};

/// What a report says of the program and the machine.
struct ReportSender {
    std::string appName{};
    std::string appVersion{};
    std::string supportAddress{};
    std::string machineType{};
    std::string operatingSystem{};
    std::string preferences{};  ///< the preferences file in Base64
};

/// The mail link of a problem report, percent-encoded. Pure.
[[nodiscard]] std::string problemReportLink(const ReportSender& sender, const FailedRun& run);

/// Shows why a conversion failed and opens the report's mail where the user asks for it. Blocks
/// until the user has answered.
void explainFailure(Vantor& vantor, const Diagnosis& diagnosis, const FailedRun& run);

}  // namespace reelvane
