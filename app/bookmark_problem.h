#pragma once

#include "support/named_exception.h"

namespace reelvane {

/// A saved destination folder that could not be used when a job needed it. The core does not catch
/// it: where nobody can be asked for another place it ends in the fatal problem report.
class BookmarkProblem final : public NamedException {
    using NamedException::NamedException;
};

}  // namespace reelvane
