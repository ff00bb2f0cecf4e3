#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "support/make_string.h"

namespace reelvane {

/// A saved destination folder that could not be used when a job needed it. Nothing catches it: it
/// ends in the fatal problem report.
class BookmarkProblem final : public std::runtime_error {
public:
    BookmarkProblem(std::string_view operation, std::string_view reason)
        : std::runtime_error(makeString("Bookmark Problem: %@: %@", operation, reason)),
          name_(makeString("Bookmark Problem: %@", operation)),
          reason_(reason) {}

    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] const std::string& reason() const { return reason_; }

private:
    std::string name_;
    std::string reason_;
};

}  // namespace reelvane
