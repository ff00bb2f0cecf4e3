#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace reelvane {

/// A preference for this run only: its key, and its value as the store would hold it.
struct PreferenceOverride {
    std::string key{};
    std::string text{};
};

/// A usage error, which may come to light only once a folder has been searched.
inline constexpr std::string_view kSubtitleForOneMovie =
    "The option '--subtitle' is for one movie only. For several, name the subtitle files among the "
    "movies: each goes with the movie whose name it begins with.";

/// What `command` and `convert` let the caller choose. Names are as given.
struct ConversionOptions {
    std::optional<std::string> toFolder{};
    std::optional<std::string> toSaved{};  ///< the name of a saved destination folder
    std::optional<std::size_t> audioTrackIndex{};
    std::optional<std::string> subtitleFile{};
};

struct InspectRequest {
    std::vector<std::string> files{};
    bool json = false;
};

struct VerifyRequest {
    std::vector<std::string> files{};
    bool json = false;
};

struct CommandRequest {
    std::string file{};
    ConversionOptions options{};
    bool json = false;
};

struct ConvertRequest {
    std::vector<std::string> files{};
    ConversionOptions options{};
    bool json = false;
    bool quiet = false;
};

struct PreferencesRequest {
    enum class Action { List, Get, Set, Reset };
    enum class Form { Table, Json, Markdown };
    Action action = Action::List;
    Form form = Form::Table;
    std::string key{};    ///< of a preference that exists; empty for the list
    std::string value{};  ///< as the store would hold it; for Set
};

struct DestinationsRequest {
    enum class Action { List, Add, Remove };
    Action action = Action::List;
    std::string name{};  ///< the folder to add, or the name to remove
    bool json = false;   ///< for List
};

/// What the user asked for, checked as far as that needs no look at the disk.
struct Request {
    std::variant<InspectRequest, VerifyRequest, CommandRequest, ConvertRequest, PreferencesRequest,
                 DestinationsRequest>
        action{};
    std::vector<PreferenceOverride> overrides{};
};

/// A text that ends the run at once: help and version on standard output with status 0, a usage
/// error on standard error with status 2.
struct EarlyExit {
    std::string text{};
    int exitStatus = 0;
};

/// Reads the command line (without the program's name). Pure.
[[nodiscard]] std::variant<Request, EarlyExit> parseArguments(
    const std::vector<std::string>& arguments);

/// What the process ends with. An interrupted run ends with its signal's status instead.
inline constexpr int kExitSuccess = 0;
inline constexpr int kExitFailure =
    1;                                ///< some file was refused or failed, or could not be written
inline constexpr int kExitUsage = 2;  ///< the command line itself is wrong

}  // namespace reelvane
