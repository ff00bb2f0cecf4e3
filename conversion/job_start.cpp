#include "conversion/job_start.h"

#include <chrono>
#include <limits>
#include <stop_token>
#include <sys/statvfs.h>
#include <sys/vfs.h>
#include <system_error>

#include "media/probe.h"
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

constexpr unsigned long kFATMagic = 0x4d44;  // MSDOS_SUPER_MAGIC of statfs(2)

}  // namespace

std::optional<VolumeFacts> volumeFacts(const std::filesystem::path& folder) {
    struct statvfs space {};
    if (::statvfs(folder.c_str(), &space) != 0) return {};
    VolumeFacts facts{.freeSize = std::uint64_t{space.f_bavail} * space.f_frsize};
    struct statfs kind {};
    if (::statfs(folder.c_str(), &kind) == 0 &&
        static_cast<unsigned long>(kind.f_type) == kFATMagic) {
        facts.maximumFileSize = std::numeric_limits<std::uint32_t>::max();
    }
    return facts;
}

std::string_view spaceProblem(std::uint64_t needed, const VolumeFacts& volume) {
    if (volume.freeSize < needed) {
        return localizable("There is not enough free space on your target disk for conversion.");
    }
    if (volume.maximumFileSize && *volume.maximumFileSize < needed) {
        return kNoLargeFiles;
    }
    return {};
}

namespace {

bool isPresentFile(const std::filesystem::path& path) {
    std::error_code ignored;
    const auto status = std::filesystem::status(path, ignored);  // of what a link leads to
    return std::filesystem::exists(status) && !std::filesystem::is_directory(status);
}

}  // namespace

StartFacts prepareStart(Vantor& vantor, const StartQuestion& question) {
    const auto& record = question.record;
    StartFacts facts{.inputPresent = isPresentFile(record.fileURL)};
    if (!facts.inputPresent || !record.destinationURL) return facts;
    facts.writesOverInput = Fennimar::isSameFile(*record.destinationURL, record.fileURL);
    if (facts.writesOverInput) return facts;
    // Before something of the job lies there: this may be what waits for ever. What is to be
    // replaced is still there, so that there is room for both.
    facts.volume = volumeFacts(record.destinationURL->parent_path());
    if (question.unwanted.stop_requested()) return facts;
    facts.output = OutputLease::take(question.outputs, record, question.progressFolders);
    if (facts.output.lease.files() && question.copiedAAC) {
        facts.needsFixup = needFixup(vantor, *question.version, record, *question.copiedAAC);
    }
    return facts;
}

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
