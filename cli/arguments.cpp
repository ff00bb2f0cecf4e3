#include "cli/arguments.h"

#include <algorithm>
#include <charconv>

#include "app/file_sorting.h"
#include "app/preference_table.h"
#include "cli/argument_errors.h"
#include "cli/argument_words.h"
#include "cli/help_text.h"
#include "cli/preference_arguments.h"
#include "cli/usage_error.h"
#include "support/make_string.h"
#include "support/paths.h"

namespace reelvane {
namespace {

constexpr int kManyFiles = 1 << 20;  // more than a command line holds

/// Where the parser leaves what it read, before it is checked.
struct Raw {
    std::vector<std::string> overrides{};
    std::vector<std::string> files{};
    std::string toFolder{};
    std::string toSaved{};
    std::string audio{};
    std::string subtitle{};
    std::string key{};
    std::string value{};
    std::string folder{};
    bool json = false;
    bool markdown = false;
    bool quiet = false;
};

CLI::App* command(CLI::App& parent, const char* name) {
    auto* const app = parent.add_subcommand(name);
    app->fallthrough();  // --set and --help may stand behind the command
    app->set_help_flag();
    return app;
}

void addFiles(CLI::App& app, std::vector<std::string>& files, int most) {
    app.add_option("FILE", files)->required()->expected(1, most)->allow_extra_args(most > 1);
}

CLI::Option* addValue(CLI::App& app, const char* name, std::string& value) {
    auto* const option = app.add_option(name, value);
    return option->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
}

void addConversionOptions(CLI::App& app, Raw& raw) {
    auto* const folder = addValue(app, "--to", raw.toFolder);
    addValue(app, "--to-saved", raw.toSaved)->excludes(folder);
    addValue(app, "--audio", raw.audio);
    addValue(app, "--subtitle", raw.subtitle);
    app.add_flag("--json", raw.json);
}

void addPreferences(CLI::App& program, Raw& raw) {
    auto* const preferences = command(program, "preferences");
    preferences->require_subcommand(0, 1);
    auto* const list = command(*preferences, "list");
    for (auto* const app : {preferences, list}) {
        auto* const json = app->add_flag("--json", raw.json);
        app->add_flag("--markdown", raw.markdown)->excludes(json);
    }
    command(*preferences, "get")->add_option("KEY", raw.key)->required();
    auto* const set = command(*preferences, "set");
    set->add_option("KEY", raw.key)->required();
    set->add_option("VALUE", raw.value)->required();
    command(*preferences, "reset")->add_option("KEY", raw.key)->required();
}

void addDestinations(CLI::App& program, Raw& raw) {
    auto* const destinations = command(program, "destinations");
    destinations->require_subcommand(0, 1);
    destinations->add_flag("--json", raw.json);
    command(*destinations, "list")->add_flag("--json", raw.json);
    command(*destinations, "add")->add_option("DIR", raw.folder)->required();
    command(*destinations, "remove")->add_option("NAME", raw.folder)->required();
}

void describe(CLI::App& program, Raw& raw) {
    program.require_subcommand(1);
    program.set_help_flag("-h,--help");
    program.set_version_flag("-V,--version", std::string());
    program.add_option("--set", raw.overrides)->allow_extra_args(false);

    for (const char* const name : {"inspect", "verify"}) {
        auto* const reading = command(program, name);
        reading->add_flag("--json", raw.json);
        addFiles(*reading, raw.files, kManyFiles);
    }

    auto* const print = command(program, "command");
    addConversionOptions(*print, raw);
    addFiles(*print, raw.files, 1);

    auto* const convert = command(program, "convert");
    addConversionOptions(*convert, raw);
    convert->add_flag("--quiet", raw.quiet);
    addFiles(*convert, raw.files, kManyFiles);

    addPreferences(program, raw);
    addDestinations(program, raw);
}

void unmarkAll(Raw& raw) {
    for (auto* const words : {&raw.overrides, &raw.files}) {
        for (auto& word : *words) unmark(word);
    }
    for (auto* const word : {&raw.toFolder, &raw.toSaved, &raw.audio, &raw.subtitle, &raw.key,
                             &raw.value, &raw.folder}) {
        unmark(*word);
    }
}

std::optional<std::string> whenGiven(const CLI::App& app, const char* option,
                                     const std::string& value) {
    if (app.count(option) == 0) return std::nullopt;
    if (value.empty()) throw UsageError(makeString("The option '%@' needs a value.", option));
    return value;
}

ConversionOptions conversionOptions(const CLI::App& app, const Raw& raw) {
    ConversionOptions options{.toFolder = whenGiven(app, "--to", raw.toFolder),
                              .toSaved = whenGiven(app, "--to-saved", raw.toSaved),
                              .subtitleFile = whenGiven(app, "--subtitle", raw.subtitle)};
    if (app.count("--audio") == 0) return options;
    const auto* const end = raw.audio.data() + raw.audio.size();
    std::size_t index = 0;
    const auto [stop, error] = std::from_chars(raw.audio.data(), end, index);
    if (error != std::errc{} || stop != end) {
        throw UsageError(makeString(
            "'%@' is no index of an audio track: those count from 0 as 'inspect' shows them.",
            raw.audio));
    }
    options.audioTrackIndex = index;
    return options;
}

/// One subtitle file goes with one movie.
void checkSubtitle(const ConvertRequest& request) {
    if (!request.options.subtitleFile) return;
    const auto movies = std::ranges::count_if(request.files, [](const std::string& file) {
        return std::ranges::find(kMovieFileTypes, Fennimar::lowercasedExtension(file)) !=
               kMovieFileTypes.end();
    });
    if (movies < 2) return;
    throw UsageError(
        "The option '--subtitle' is for one movie only. For several, name the subtitle files among "
        "the movies: each goes with the movie whose name it begins with.");
}

DestinationsRequest destinationsRequest(const std::string& command, const Raw& raw) {
    DestinationsRequest request{.name = raw.folder, .json = raw.json};
    if (command == "destinations add") {
        request.action = DestinationsRequest::Action::Add;
    } else if (command == "destinations remove") {
        request.action = DestinationsRequest::Action::Remove;
    } else {
        return request;
    }
    if (raw.folder.empty()) throw UsageError("A destination folder has a name.");
    return request;
}

PreferencesRequest preferencesRequest(const std::string& command, const Raw& raw) {
    using Action = PreferencesRequest::Action;
    using Form = PreferencesRequest::Form;
    PreferencesRequest request;
    if (raw.json) request.form = Form::Json;
    if (raw.markdown) request.form = Form::Markdown;
    if (command == "preferences" || command == "preferences list") return request;

    const auto& entry = preferenceNamed(raw.key);
    request.key = entry.key;
    request.action = Action::Get;
    if (command == "preferences reset") request.action = Action::Reset;
    if (command == "preferences set") {
        request.action = Action::Set;
        request.value = preferenceValue(entry, raw.value);
    }
    return request;
}

Request request(const std::vector<CLI::App*>& path, Raw& raw) {
    Request result;
    for (const auto& text : raw.overrides) result.overrides.push_back(preferenceOverride(text));
    const auto name = commandName(path);
    const auto& app = *path.back();
    if (name == "inspect") {
        result.action = InspectRequest{.files = std::move(raw.files), .json = raw.json};
    } else if (name == "verify") {
        result.action = VerifyRequest{.files = std::move(raw.files), .json = raw.json};
    } else if (name == "command") {
        result.action = CommandRequest{.file = std::move(raw.files.front()),
                                       .options = conversionOptions(app, raw),
                                       .json = raw.json};
    } else if (name == "convert") {
        ConvertRequest convert{.files = std::move(raw.files),
                               .options = conversionOptions(app, raw),
                               .json = raw.json,
                               .quiet = raw.quiet};
        checkSubtitle(convert);
        result.action = std::move(convert);
    } else if (name.starts_with("destinations")) {
        result.action = destinationsRequest(name, raw);
    } else {
        result.action = preferencesRequest(name, raw);
    }
    return result;
}

}  // namespace

std::variant<Request, Farewell> parseArguments(const std::vector<std::string>& arguments) {
    Raw raw;
    CLI::App program{std::string(), std::string(kProgramName)};
    describe(program, raw);
    try {
        program.parse(wordsForParser(arguments));
        unmarkAll(raw);
        return request(chosen(program), raw);
    } catch (const CLI::CallForHelp&) {
        const auto path = chosen(program);
        const auto unread = program.remaining();
        if (path.size() == 1 && !unread.empty()) {
            return usageError(unexpectedWord(unread.front(), path), "");
        }
        return Farewell{.text = helpText(commandName(path))};
    } catch (const CLI::CallForVersion&) {
        return Farewell{.text = versionText()};
    } catch (const CLI::ParseError& error) {
        return usageError(sentence(error, program), commandName(chosen(program)));
    } catch (const UsageError& error) {
        return usageError(error.what(), commandName(chosen(program)));
    }
}

}  // namespace reelvane
