#include "platform/linux_host.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <glib.h>
#include <grp.h>
#include <map>
#include <memory>
#include <pwd.h>
#include <string>
#include <string_view>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "platform/ini_file.h"
#include "support/strings.h"

namespace reelvane {

namespace {

/// "de" out of "de_DE.UTF-8@euro"; empty for the locales that name no language.
std::string_view languageOf(std::string_view locale) {
    const auto language = locale.substr(0, locale.find_first_of("_.@-"));
    return language == "C" || language == "POSIX" ? std::string_view() : language;
}

using std::filesystem::path;

/// The conventions say to ignore a path that is not absolute.
path folderFrom(const char* variable, const path& otherwise) {
    const char* const value = std::getenv(variable);
    return value != nullptr && path(value).is_absolute() ? path(value) : otherwise;
}

/// An entry is absolute or begins with "$HOME/"; others are ignored.
path userFolder(const std::map<std::string, std::string, std::less<>>& entries,
                std::string_view name, const path& home, const path& otherwise) {
    constexpr std::string_view kHome = "$HOME";
    const auto found = entries.find(name);
    if (found == entries.end()) return otherwise;
    const std::string_view entry = found->second;
    if (entry.starts_with('/')) return path(entry).lexically_normal();
    if (entry != kHome && !entry.starts_with("$HOME/")) return otherwise;
    const auto below = path(entry.substr(kHome.size())).relative_path();
    return below.empty() ? home : home / below;
}

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

UserFolders xdgUserFolders() {
    const auto accountHome = path(currentAccount().home);
    const auto home = folderFrom("HOME", accountHome);
    const auto configuration = folderFrom("XDG_CONFIG_HOME", home / ".config");
    const auto entries = parseShellAssignments(readWhole(configuration / "user-dirs.dirs").text);
    return {.documents = userFolder(entries, "XDG_DOCUMENTS_DIR", home, home / "Documents"),
            .desktop = userFolder(entries, "XDG_DESKTOP_DIR", home, home / "Desktop"),
            .applicationData = folderFrom("XDG_DATA_HOME", home / ".local/share"),
            .configuration = configuration,
            .cache = folderFrom("XDG_CACHE_HOME", home / ".cache"),
            .home = home,
            .accountHome = accountHome};
}

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

std::map<std::string, std::string, std::less<>> parseShellAssignments(std::string_view text) {
    std::map<std::string, std::string, std::less<>> values;
    for (const auto line : Fennimar::split(text, "\n")) {
        const auto trimmed = Fennimar::trimmedOf(line, " \t\r");
        const auto value = Fennimar::partAfter(trimmed, "=");
        if (trimmed.starts_with('#') || !value) continue;
        const std::unique_ptr<char, decltype(&g_free)> unquoted(
            g_shell_unquote(std::string(*value).c_str(), nullptr), &g_free);
        if (!unquoted) continue;
        values.insert_or_assign(std::string(Fennimar::partBefore(trimmed, "=")), unquoted.get());
    }
    return values;
}

}  // namespace reelvane
