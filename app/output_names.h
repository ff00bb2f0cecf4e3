#pragma once

#include <cstdint>
#include <filesystem>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

namespace reelvane {

/// The paths that jobs in the list will write, and those that they read. A promised path is a taken
/// one, so that two movies of one name never overwrite each other. Any thread: what asks a disk is
/// called in the background, and a disk that does not answer holds up nobody else. A look-up costs
/// the same whatever the length of the list.
class OutputNames {
public:
    /// `folder` and the input's name with the output's extension, cut to what a file system takes,
    /// and made unique: nothing lies there and no job was promised it. It is promised from now on.
    /// A number that was taken is not looked at again until a promise is released. Asks the disk.
    [[nodiscard]] std::filesystem::path takeFreePath(const std::filesystem::path& folder,
                                                     std::string_view inputName,
                                                     std::string_view extension);

    /// Each promise must be released once.
    void promise(const std::filesystem::path& path);
    /// False, and nothing is promised, when it is already.
    [[nodiscard]] bool promiseIfFree(const std::filesystem::path& path);
    void release(const std::filesystem::path& path);

private:
    [[nodiscard]] static std::string keyOf(const std::filesystem::path& path);
    [[nodiscard]] std::uint64_t firstNumberFor(const std::string& key) const;

    mutable std::mutex mutex_;                       ///< never held while a disk is asked
    std::unordered_map<std::string, int> promises_;  ///< how many jobs hold each
    /// The number that was last found for a name, where the name itself was taken.
    std::unordered_map<std::string, std::uint64_t> numbers_;
};

}  // namespace reelvane
