#include "cli/arguments.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

#include "app/opened_files.h"
#include "app/preference_table.h"
#include "cli/command_line.h"
#include "cli/help_text.h"
#include "support/make_string.h"

namespace reelvane {
namespace {

/// The command line is wrong; the text is the one sentence for the user. It never leaves this file.
class UsageError final : public std::runtime_error {
public:
    explicit UsageError(const std::string& sentence) : std::runtime_error(sentence) {}
};

const std::vector<CommandRule>& commandRules() {
    static const OptionRule json{.name = "--json"};
    static const OptionRule markdown{.name = "--markdown", .excludes = "--json"};
    static const std::vector<OptionRule> conversion{
        {.name = "--to", .takesValue = true},
        {.name = "--to-saved", .takesValue = true, .excludes = "--to"},
        {.name = "--audio", .takesValue = true},
        {.name = "--subtitle", .takesValue = true},
        json};
    static const auto conversionAndQuiet = [] {
        auto options = conversion;
        options.push_back({.name = "--quiet"});
        return options;
    }();
    static const std::vector<CommandRule> rules{
        {.name = "", .options = {{.name = "--set", .takesValue = true}}},
        {.name = "convert", .operands = {"FILE..."}, .options = conversionAndQuiet},
        {.name = "inspect", .operands = {"FILE..."}, .options = {json}},
        {.name = "verify", .operands = {"FILE..."}, .options = {json}},
        {.name = "command", .operands = {"FILE"}, .options = conversion},
        {.name = "preferences", .options = {json, markdown}},
        {.name = "preferences list", .options = {json, markdown}},
        {.name = "preferences get", .operands = {"KEY"}},
        {.name = "preferences set", .operands = {"KEY", "VALUE"}},
        {.name = "preferences reset", .operands = {"KEY"}},
        {.name = "destinations", .options = {json}},
        {.name = "destinations list", .options = {json}},
        {.name = "destinations add", .operands = {"DIR"}},
        {.name = "destinations remove", .operands = {"NAME"}}};
    return rules;
}

bool isGiven(const CommandLine& line, std::string_view option) {
    return line.options.contains(option);
}

/// The last value of several.
std::optional<std::string> valueOf(const CommandLine& line, std::string_view option) {
    const auto found = line.options.find(option);
    if (found == line.options.end()) return std::nullopt;
    if (found->second.back().empty()) {
        throw UsageError(makeString("The option '%@' needs a value.", option));
    }
    return found->second.back();
}

const PreferenceEntry& preferenceNamed(std::string_view key) {
    const auto* const entry = findPreference(key);
    if (entry != nullptr) return *entry;
    std::vector<std::string> keys;
    for (const auto& known : preferenceTable()) keys.emplace_back(known.key);
    throw UsageError(
        makeString("There is no preference named '%@'.%@", key, suggestion(key, keys)));
}

std::string preferenceValue(const PreferenceEntry& entry, std::string_view typed) {
    auto text = storedText(entry, typed);
    if (text) return *std::move(text);
    throw UsageError(makeString("'%@' is no value for the preference %@, which takes: %@.", typed,
                                entry.key, typeText(entry)));
}

PreferenceOverride preferenceOverride(std::string_view text) {
    const auto equals = text.find('=');
    if (equals == std::string_view::npos) {
        throw UsageError(makeString("'%@' is not of the form KEY=VALUE.", text));
    }
    const auto& entry = preferenceNamed(text.substr(0, equals));
    return {.key = std::string(entry.key), .text = preferenceValue(entry, text.substr(equals + 1))};
}

std::optional<std::size_t> audioTrackIndex(const CommandLine& line) {
    const auto text = valueOf(line, "--audio");
    if (!text) return std::nullopt;
    const auto* const end = text->data() + text->size();
    std::size_t index = 0;
    const auto [stop, error] = std::from_chars(text->data(), end, index);
    if (error == std::errc{} && stop == end) return index;
    throw UsageError(makeString(
        "'%@' is no index of an audio track: those count from 0 as 'inspect' shows them.", *text));
}

ConversionOptions conversionOptions(const CommandLine& line) {
    return {.toFolder = valueOf(line, "--to"),
            .toSaved = valueOf(line, "--to-saved"),
            .audioTrackIndex = audioTrackIndex(line),
            .subtitleFile = valueOf(line, "--subtitle")};
}

/// One subtitle file goes with one movie.
void checkSubtitle(const ConvertRequest& request) {
    if (!request.options.subtitleFile) return;
    const auto movies = std::ranges::count_if(request.files, isMovieFile);
    if (movies < 2) return;
    throw UsageError(std::string(kSubtitleForOneMovie));
}

DestinationsRequest destinationsRequest(const CommandLine& line) {
    using Action = DestinationsRequest::Action;
    DestinationsRequest request{.json = isGiven(line, "--json")};
    if (line.operands.empty()) return request;
    request.action = line.command == "destinations add" ? Action::Add : Action::Remove;
    request.name = line.operands.front();
    if (request.name.empty()) throw UsageError("A destination folder has a name.");
    return request;
}

PreferencesRequest preferencesRequest(const CommandLine& line) {
    using Action = PreferencesRequest::Action;
    using Form = PreferencesRequest::Form;
    PreferencesRequest request;
    if (isGiven(line, "--json")) request.form = Form::Json;
    if (isGiven(line, "--markdown")) request.form = Form::Markdown;
    if (line.operands.empty()) return request;

    const auto& entry = preferenceNamed(line.operands.front());
    request.key = entry.key;
    request.action = Action::Get;
    if (line.command == "preferences reset") request.action = Action::Reset;
    if (line.command == "preferences set") {
        request.action = Action::Set;
        request.value = preferenceValue(entry, line.operands.back());
    }
    return request;
}

Request requestOf(CommandLine& line) {
    Request result;
    if (const auto set = line.options.find("--set"); set != line.options.end()) {
        for (const auto& text : set->second) result.overrides.push_back(preferenceOverride(text));
    }
    const bool json = isGiven(line, "--json");
    if (line.command == "inspect") {
        result.action = InspectRequest{.files = std::move(line.operands), .json = json};
    } else if (line.command == "verify") {
        result.action = VerifyRequest{.files = std::move(line.operands), .json = json};
    } else if (line.command == "command") {
        result.action = CommandRequest{.file = std::move(line.operands.front()),
                                       .options = conversionOptions(line),
                                       .json = json};
    } else if (line.command == "convert") {
        ConvertRequest convert{.files = std::move(line.operands),
                               .options = conversionOptions(line),
                               .json = json,
                               .quiet = isGiven(line, "--quiet")};
        checkSubtitle(convert);
        result.action = std::move(convert);
    } else if (line.command.starts_with("destinations")) {
        result.action = destinationsRequest(line);
    } else {
        result.action = preferencesRequest(line);
    }
    return result;
}

/// The sentence, and where to read how it is done.
EarlyExit usageError(std::string_view sentence, std::string_view command) {
    return {.text = makeString("%@: %@ See '%@%@%@ --help'.\n", kProgramName, sentence,
                               kProgramName, command.empty() ? "" : " ", command),
            .exitStatus = kExitUsage};
}

}  // namespace

std::variant<Request, EarlyExit> parseArguments(const std::vector<std::string>& arguments) {
    auto read = readCommandLine(arguments, commandRules());
    if (const auto* const error = std::get_if<CommandLineError>(&read)) {
        return usageError(error->sentence, error->command);
    }
    auto& line = std::get<CommandLine>(read);
    if (line.wantsHelp) return EarlyExit{.text = helpText(line.command)};
    if (line.wantsVersion) return EarlyExit{.text = versionText()};
    try {
        return requestOf(line);
    } catch (const UsageError& error) {
        return usageError(error.what(), line.command);
    }
}

}  // namespace reelvane
