#pragma once

#include <stdexcept>
#include <string>

namespace reelvane {

/// The command line is wrong; the text is the one sentence for the user. It never leaves the
/// reading of the arguments.
class UsageError final : public std::runtime_error {
public:
    explicit UsageError(const std::string& sentence) : std::runtime_error(sentence) {}
};

}  // namespace reelvane
