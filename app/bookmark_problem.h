#pragma once

#include "support/named_exception.h"

namespace reelvane {

/// A saved destination folder that could not be used when a job needed it.
class BookmarkProblem final : public NamedException {
    using NamedException::NamedException;
};

}  // namespace reelvane
