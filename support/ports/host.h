#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace reelvane {

/// The user's folders. Absolute paths; none is created by asking.
struct UserFolders {
    std::filesystem::path documents{};
    std::filesystem::path desktop{};
    std::filesystem::path applicationData{};  ///< holds one folder per program
    std::filesystem::path configuration{};    ///< holds one folder per program
    std::filesystem::path home{};             ///< as the environment says
    std::filesystem::path accountHome{};      ///< as the password database says
};

/// The machine, its system and its user. Any thread.
class Host {
public:
    virtual ~Host() = default;
    [[nodiscard]] virtual std::string machineModel() const = 0;
    [[nodiscard]] virtual std::string operatingSystemVersion() const = 0;
    /// Language identifiers from the environment, best first: "de", "en".
    [[nodiscard]] virtual std::vector<std::string> preferredLanguages() const = 0;
    [[nodiscard]] virtual std::string loginName() const = 0;
    /// The members listed in the administrators' group; primary groups do not count.
    [[nodiscard]] virtual std::vector<std::string> administrators() const = 0;
    [[nodiscard]] virtual UserFolders folders() const = 0;
    /// When the process was started, as a text that no other process of this number ever has;
    /// absent when none runs.
    [[nodiscard]] virtual std::optional<std::string> processStartTime(int processID) const = 0;
};

}  // namespace reelvane
