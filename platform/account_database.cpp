#include "platform/account_database.h"

#include <cerrno>
#include <cstddef>
#include <grp.h>
#include <pwd.h>
#include <unistd.h>

namespace reelvane {

namespace {

constexpr std::size_t kFirstBuffer = 4096;
constexpr std::size_t kLargestBuffer = std::size_t{16} << 20U;  // a group may list many members

/// Calls a look-up of the C library with a buffer that grows until it is large enough.
template <typename LookUp>
void lookUp(std::vector<char>& buffer, LookUp call) {
    buffer.resize(kFirstBuffer);
    while (call() == ERANGE && buffer.size() < kLargestBuffer) buffer.resize(buffer.size() * 2);
}

std::string text(const char* value) {
    return value == nullptr ? std::string() : value;
}

}  // namespace

Account currentAccount() {
    std::vector<char> buffer;
    passwd entry = {};
    passwd* found = nullptr;
    lookUp(buffer,
           [&] { return ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found); });
    if (found == nullptr) return {};
    return {.name = text(found->pw_name), .home = text(found->pw_dir)};
}

std::optional<std::vector<std::string>> groupMembers(const std::string& group) {
    std::vector<char> buffer;
    ::group entry = {};
    ::group* found = nullptr;
    lookUp(buffer, [&] {
        return ::getgrnam_r(group.c_str(), &entry, buffer.data(), buffer.size(), &found);
    });
    if (found == nullptr) return std::nullopt;
    std::vector<std::string> members;
    for (char* const* member = found->gr_mem; *member != nullptr; ++member) {
        members.emplace_back(*member);
    }
    return members;
}

}  // namespace reelvane
