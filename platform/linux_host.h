#pragma once

#include <filesystem>
#include <optional>
#include <string>
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

}  // namespace reelvane
