#pragma once

#include <string>

#include "conversion/diagnosis.h"

namespace reelvane {

class Vantor;
struct Mail;
struct ReportFacts;

/// What a report says of the run itself.
struct FailedRun {
    std::string arguments{};  ///< joined with single spaces
    std::string log{};        ///< whole, line by line
    std::string recordDescription{};
};

/// The report on a failed conversion.
[[nodiscard]] Mail failureReport(const ReportFacts& sender, const FailedRun& run);

/// Shows why a conversion failed and opens the report's mail where the user asks for it. Blocks
/// until the user has answered.
void explainFailure(Vantor& vantor, const Diagnosis& diagnosis, const FailedRun& run);

}  // namespace reelvane
