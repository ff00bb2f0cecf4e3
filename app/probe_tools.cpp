#include "app/probe_tools.h"

#include <algorithm>
#include <utility>

#include "support/ports/folder_access.h"
#include "support/ports/main_bundle.h"

namespace reelvane {

ProbeTools probeTools(ProcessLauncher& launcher, const MainBundle& mainBundle,
                      FolderAccess& folderAccess, std::string appName,
                      const Translations& translations) {
    const auto granted = folderAccess.grantedFolders();
    const bool unlimited = std::ranges::find(granted, std::filesystem::path("/")) != granted.end();
    return {.launcher = &launcher,
            .ffmpeg = mainBundle.pathForResource("ffmpeg"),
            .appName = std::move(appName),
            .sandboxed = !unlimited,
            .translations = &translations};
}

}  // namespace reelvane
