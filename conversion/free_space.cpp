#include "conversion/free_space.h"

#include <limits>
#include <sys/statvfs.h>
#include <sys/vfs.h>

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

}  // namespace reelvane
