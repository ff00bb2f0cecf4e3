#pragma once

#include <string>
#include <string_view>

namespace reelvane {

/// Appends what the converter printed to its log, but for the statistics lines. Lines are joined
/// without a separator; the log is only searched for single messages.
void appendToLog(std::string& jobOutput, std::string_view printed);

}  // namespace reelvane
