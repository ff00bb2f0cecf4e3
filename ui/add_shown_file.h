#pragma once

#include "ui/ui_context.h"

namespace reelvane {

/// Adds the file that the sheet shows. A saved folder that has gone meanwhile is told plainly, and
/// the file stays in the sheet: a conversion that runs must not end with the program.
void addShownFile(const UiContext& context);

}  // namespace reelvane
