#include "support/birth_mark.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "support/make_string.h"

namespace reelvane {

std::optional<std::string> birthMarkOf(const std::filesystem::path& path) {
    constexpr unsigned kNeeded = STATX_TYPE | STATX_INO | STATX_BTIME;
    struct statx facts {};
    if (::statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, kNeeded, &facts) != 0) return {};
    if ((facts.stx_mask & kNeeded) != kNeeded || !S_ISREG(facts.stx_mode)) return {};
    return makeString("%@@%@.%@", facts.stx_ino, facts.stx_btime.tv_sec, facts.stx_btime.tv_nsec);
}

}  // namespace reelvane
