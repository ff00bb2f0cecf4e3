#pragma once

#include "support/ports/host.h"

namespace reelvane {

/// The user's folders by the XDG conventions: the base folders from the environment, documents and
/// desktop from "user-dirs.dirs", each with its usual place in the home folder behind it.
[[nodiscard]] UserFolders xdgUserFolders();

}  // namespace reelvane
