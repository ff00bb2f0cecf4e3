#pragma once

#include <string>

#include "media/probe.h"

namespace reelvane {

class FolderAccess;
class MainBundle;
class ProcessLauncher;

/// What a probe works with: the bundle's ffmpeg, and whether a sandbox limits access.
[[nodiscard]] ProbeTools probeTools(ProcessLauncher& launcher, const MainBundle& mainBundle,
                                    FolderAccess& folderAccess, std::string appName);

}  // namespace reelvane
