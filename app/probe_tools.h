#pragma once

#include <string>

#include "media/probe.h"

namespace reelvane {

class FolderAccess;
class MainBundle;
class ProcessLauncher;
class Translations;

/// What a probe works with: the bundle's ffmpeg, and whether a sandbox limits access.
[[nodiscard]] ProbeTools probeTools(ProcessLauncher& launcher, const MainBundle& mainBundle,
                                    FolderAccess& folderAccess, std::string appName,
                                    const Translations& translations);

}  // namespace reelvane
