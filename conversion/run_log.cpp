#include "conversion/run_log.h"

#include "support/strings.h"

namespace reelvane {

namespace {

bool isStatistics(std::string_view line) {
    return Fennimar::contains(line, "frame=") && Fennimar::contains(line, "bitrate=");
}

}  // namespace

void appendToLog(std::string& jobOutput, std::string_view printed) {
    for (const auto line : Fennimar::lines(printed)) {
        if (!isStatistics(line)) jobOutput.append(line);
    }
}

}  // namespace reelvane
