#pragma once

namespace reelvane {

/// The saved destination folders and the destination menus. Main thread only.
class Destinations {
public:
};

}  // namespace reelvane
