#include "platform/linux_host.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <system_error>
#include <utility>

#include "platform/account_database.h"
#include "platform/ini_file.h"
#include "platform/shell_assignments.h"
#include "platform/xdg_user_folders.h"
#include "support/strings.h"

namespace reelvane {

namespace {

/// "de" out of "de_DE.UTF-8@euro"; empty for the locales that name no language.
std::string_view languageOf(std::string_view locale) {
    const auto language = locale.substr(0, locale.find_first_of("_.@-"));
    return language == "C" || language == "POSIX" ? std::string_view() : language;
}

}  // namespace

LinuxHost::LinuxHost(std::filesystem::path root) : root_(std::move(root)) {}

std::string LinuxHost::machineModel() const {
    return trimmedContent("sys/class/dmi/id/product_name");
}

std::string LinuxHost::operatingSystemVersion() const {
    for (const auto* const file : {"etc/os-release", "usr/lib/os-release"}) {
        const auto values = parseShellAssignments(readWhole(root_ / file).text);
        if (const auto found = values.find("PRETTY_NAME"); found != values.end()) {
            return found->second;
        }
    }
    return {};
}

std::vector<std::string> LinuxHost::preferredLanguages() const {
    std::vector<std::string> languages;
    for (const auto* const variable : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* const value = std::getenv(variable);
        if (value == nullptr) continue;
        for (const auto locale : Fennimar::split(value, ":")) {
            const auto language = languageOf(locale);
            const bool known = std::ranges::find(languages, language) != languages.end();
            if (!language.empty() && !known) languages.emplace_back(language);
        }
    }
    return languages;
}

std::string LinuxHost::loginName() const {
    return currentAccount().name;
}

std::vector<std::string> LinuxHost::administrators() const {
    for (const auto* const group : {"admin", "sudo", "wheel"}) {
        if (auto members = groupMembers(group)) return *std::move(members);
    }
    return {};
}

UserFolders LinuxHost::folders() const {
    return xdgUserFolders();
}

std::optional<std::string> LinuxHost::processStartTime(int processID) const {
    const auto process = root_ / "proc" / std::to_string(processID);
    const auto status = readWhole(process / "stat").text;
    // The program's name stands in parentheses and may hold any character, those included.
    const auto nameEnd = status.rfind(')');
    if (nameEnd == std::string::npos) return std::nullopt;
    const auto fields = Fennimar::split(std::string_view(status).substr(nameEnd + 1), " ");
    constexpr std::size_t kState = 1;  // counted from the name's end; see proc(5)
    constexpr std::size_t kStartTime = 20;
    if (fields.size() <= kStartTime || fields[kState] == "Z" || fields[kState] == "X") {
        return std::nullopt;
    }
    // It counts from the start of the system, which so belongs to it.
    return std::string(fields[kStartTime]) + "@" + trimmedContent("proc/sys/kernel/random/boot_id");
}

ProcessScope LinuxHost::processScope() const {
    std::error_code ignored;
    const auto pidNamespace = std::filesystem::read_symlink(root_ / "proc/self/ns/pid", ignored);
    auto machine = trimmedContent("etc/machine-id");
    constexpr std::size_t kDigits = 32;  // images carry none, or "uninitialized"; see machine-id(5)
    if (machine.size() != kDigits) machine.clear();
    return {.machine = machine,
            .boot = trimmedContent("proc/sys/kernel/random/boot_id"),
            .pidNamespace = pidNamespace};
}

std::string LinuxHost::trimmedContent(const char* file) const {
    return std::string(Fennimar::trimmedOfWhitespaceAndNewlines(readWhole(root_ / file).text));
}

}  // namespace reelvane
