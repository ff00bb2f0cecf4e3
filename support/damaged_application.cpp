#include "support/damaged_application.h"

#include <system_error>

#include "support/alerts.h"
#include "support/paths.h"
#include "support/ports/main_bundle.h"
#include "support/vantor.h"

namespace reelvane {
namespace fs = std::filesystem;

bool applicationIsDamaged(const fs::path& frameworks) {
    std::error_code error;
    for (fs::directory_iterator entry(frameworks, error), end; !error && entry != end;
         entry.increment(error)) {
        const auto& framework = entry->path();
        if (!Fennimar::fileIsAlias(framework / framework.stem())) return true;
    }
    return false;
}

void runDamagedApplicationTest(Vantor& vantor, const EndProcess& end) {
    if (!applicationIsDamaged(vantor.ports().mainBundle.bundlePath() / "Frameworks")) return;
    alert_apptitled(
        vantor,
        "This application is damaged. Either your download was damaged or you used a faulty "
        "program to extract the ZIP archive. Please re-download and make sure to use the ZIP "
        "decompression built into Mac OS X.",
        "OK");
    end(0);
}

}  // namespace reelvane
