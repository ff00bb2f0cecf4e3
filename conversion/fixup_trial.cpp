#include "conversion/fixup_trial.h"

#include "support/make_string.h"
#include "support/strings.h"
#include "support/tasks.h"

namespace reelvane {

std::vector<std::string> fixupTrialArguments(const MKVFileInfo& file, int audioStreamIndex) {
    const auto output = file.destinationURL.value_or(std::filesystem::path());
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
            "-y",
            output.native()};
}

bool needFixup(ProcessLauncher& launcher, const std::filesystem::path& ffmpeg,
               const MKVFileInfo& file, int audioStreamIndex) {
    auto command = fixupTrialArguments(file, audioStreamIndex);
    command.insert(command.begin(), ffmpeg.native());
    const auto printed = runAsTask(launcher, command);
    return printed && Fennimar::contains(*printed, "aac_adtstoasc");
}

}  // namespace reelvane
