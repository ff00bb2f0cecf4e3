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
    std::filesystem::path cache{};            ///< what can be made again; shared by the programs
    std::filesystem::path home{};             ///< as the environment says
    std::filesystem::path accountHome{};      ///< as the password database says
};

/// Where process numbers mean something: two processes can see each other by number only where all
/// three agree. Empty texts are unknown, and agree with nothing.
struct ProcessScope {
    std::string machine{};       ///< of this installation of the system
    std::string boot{};          ///< of this run of it, the same in every container on it
    std::string pidNamespace{};  ///< "pid:[4026531836]": containers have their own

    [[nodiscard]] bool operator==(const ProcessScope&) const = default;
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
    /// Where this process runs.
    [[nodiscard]] virtual ProcessScope processScope() const = 0;
};

}  // namespace reelvane
