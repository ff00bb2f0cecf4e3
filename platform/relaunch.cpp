#include "platform/relaunch.h"

#include <array>
#include <spawn.h>
#include <unistd.h>

namespace reelvane {

bool relaunch(const std::filesystem::path& executable) {
    posix_spawnattr_t attributes;
    if (::posix_spawnattr_init(&attributes) != 0) return false;
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    auto name = executable.native();
    const std::array<char*, 2> words{name.data(), nullptr};
    pid_t process = 0;
    const bool started =
        ::posix_spawn(&process, name.c_str(), nullptr, &attributes, words.data(), environ) == 0;
    ::posix_spawnattr_destroy(&attributes);
    return started;
}

}  // namespace reelvane
