#include "conversion/fixup_trial.h"

#include <chrono>
#include <stop_token>
#include <system_error>

#include "media/converter_version.h"
#include "support/dispatch.h"
#include "support/held_file.h"
#include "support/make_string.h"
#include "support/paths.h"
#include "support/ports/child_process.h"
#include "support/ports/main_bundle.h"
#include "support/strings.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

constexpr float kLongestTrial = 10;  // seconds

/// A file among the temporary ones that nobody else can open and that goes with this program; not
/// open where none can be had.
HeldFile namelessFile() {
    std::error_code none;
    const auto folder = std::filesystem::temp_directory_path(none);
    auto file = HeldFile::unnamed(folder, 0600);
    if (file.descriptor() < 0 &&
        file.nameAs(Fennimar::uniqueFile(folder / "trial.mp4")) == Naming::Made) {
        static_cast<void>(file.remove());
    }
    return file;
}

}  // namespace

bool insertsFilters(std::string_view version) {
    constexpr int kFirst = 4;
    return !version.empty() && majorVersion(version).value_or(kFirst) >= kFirst;
}

std::vector<std::string> fixupTrialArguments(const MKVFileInfo& file, int audioStreamIndex,
                                             const std::filesystem::path& output) {
    return {"-i",
            file.fileURL.native(),
            "-stats",
            "-t",
            "1",
            "-map",
            makeString("0:%i", file.videoTrackID.value_or(0)),
            "-map",
            makeString("0:%i", audioStreamIndex),
            "-vcodec",
            "copy",
            "-acodec",
            "copy",
            "-f",
            "mp4",
            "-y",
            output.native()};
}

bool needFixup(Vantor& vantor, ConverterVersion& version, const MKVFileInfo& file,
               int audioStreamIndex) {
    if (insertsFilters(version.get())) return false;
    const auto output = namelessFile();
    if (output.descriptor() < 0) return false;
    const auto& ports = vantor.ports();
    std::stop_source late;
    dispatch_after_back(vantor, kLongestTrial, [late]() mutable { late.request_stop(); });
    const auto result = ports.processLauncher.run(
        {.executable = ports.mainBundle.pathForResource("ffmpeg"),
         .arguments = fixupTrialArguments(file, audioStreamIndex, output.heldPath()),
         .stop = late.get_token()});
    return result.finished && Fennimar::contains(result.finished->output, "aac_adtstoasc");
}

}  // namespace reelvane
