#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/ports/host.h"

namespace reelvane {

/// What the Linux system says of itself and its user, asked anew at each call. Any thread.
class LinuxHost final : public Host {
public:
    /// `root` is the folder that stands for "/" when system files are read.
    explicit LinuxHost(std::filesystem::path root = "/");

    [[nodiscard]] std::string machineModel() const override;
    [[nodiscard]] std::string operatingSystemVersion() const override;
    [[nodiscard]] std::vector<std::string> preferredLanguages() const override;
    [[nodiscard]] std::string loginName() const override;
    [[nodiscard]] std::vector<std::string> administrators() const override;
    [[nodiscard]] UserFolders folders() const override;
    [[nodiscard]] std::optional<std::string> processStartTime(int processID) const override;
    [[nodiscard]] ProcessScope processScope() const override;

private:
    [[nodiscard]] std::string trimmedContent(const char* file) const;

    std::filesystem::path root_;
};

/// The user's folders by the XDG conventions: the base folders from the environment, documents and
/// desktop from "user-dirs.dirs", each with its usual place in the home folder behind it.
[[nodiscard]] UserFolders xdgUserFolders();

struct Account {
    std::string name{};
    std::string home{};
};

/// The account of the real user id, from the password database; empty when it has none.
[[nodiscard]] Account currentAccount();

/// The members that the group lists; absent when there is no such group.
[[nodiscard]] std::optional<std::vector<std::string>> groupMembers(const std::string& group);

/// Reads lines of the form NAME=value or NAME="value" as a shell would, without expanding
/// variables: os-release(5), user-dirs.dirs. Other lines are skipped; the last of a name counts.
[[nodiscard]] std::map<std::string, std::string, std::less<>> parseShellAssignments(
    std::string_view text);

}  // namespace reelvane
